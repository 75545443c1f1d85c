#include "WrapVerify.h"

#include "MetadataChoice.h"
#include "Progress.h"

#include <MXF/Zelm/MXFIO/EssenceReader.h>

#include <algorithm>

namespace Zelm {

using namespace MXF::Zelm;
using GenericContainer::EssenceAnalyzer;

namespace {

/// Tracks as a multiplexer puts them.
std::vector<WrapTrack*> inPackageOrder(std::vector<WrapTrack*> tracks) {
    auto const placeOf = [](WrapTrack const* track) {
        auto const type = track->tap->essenceAnalyzerType();
        return type == EssenceAnalyzer::CompoundAnalyzer ? int{EssenceAnalyzer::DataAnalyzer} + 1 : int{type};
    };
    std::stable_sort(tracks.begin(), tracks.end(),
                     [&](auto const* a, auto const* b) { return placeOf(a) < placeOf(b); });
    return tracks;
}

class ContainerCheck {
public:
    ContainerCheck(MXFIO::Reader2& reader, MXFIO::EssenceContainer container, WrapContainer const& written,
                   EditRate const& rate)
        : container_(container),
          written_(inPackageOrder(written.tracks)),
          isClip_(written.isClip()),
          essence_(reader, std::move(container), optionsFor(rate)),
          units_(written_.size()),
          streams_(written_.size()) {}

    std::vector<std::string> run() {
        if (container_.tracks.size() != written_.size())
            return {"the file has " + std::to_string(container_.tracks.size()) + " tracks of " +
                    std::to_string(written_.size())};
        if (essence_.seeker().index() == nullptr)
            return {"the file has no index"};
        readAll();
        for (std::size_t i = 0; i < written_.size(); ++i)
            compare(i);
        return differences_;
    }

private:
    static MXFIO::EssenceOptions optionsFor(EditRate const& rate) {
        MXFIO::EssenceOptions options;
        options.editRate = rate;
        return options;
    }

    void readAll() {
        Progress progress("verifying", longest());
        MXFIO::EssenceUnit unit;
        for (std::int64_t position = 0; essence_.read(position, unit); ++position) {
            progress.at(static_cast<std::uint64_t>(position));
            if (!isClip_)
                checkPlace(unit);
            for (std::size_t i = 0; i < written_.size(); ++i)
                if (auto const* const element = unit.package.element(container_.tracks[i].trackNumber))
                    take(i, *element, static_cast<std::uint64_t>(position));
        }
    }

    std::uint64_t longest() const {
        std::uint64_t most = 0;
        for (auto const* const track : written_)
            most = std::max(most, track->tap->units());
        return isClip_ ? 0 : most;
    }

    /// The index leads to the edit unit.
    void checkPlace(MXFIO::EssenceUnit const& unit) {
        auto const place = essence_.seeker().index()->locate(unit.position);
        if (isPlaced_ && (!place || place->streamOffset != unit.streamOffset)) {
            isPlaced_ = false;
            differences_.push_back("edit unit " + std::to_string(unit.position) +
                                   ": the index does not lead to it");
        }
    }

    void take(std::size_t track, GenericContainer::Element const& element, std::uint64_t position) {
        if (isClip_)
            streams_[track].add(element.data);
        else
            units_[track].add(position, hashOf(element.data));
    }

    void compare(std::size_t track) {
        auto const found = isClip_ ? streams_[track].finish() : units_[track];
        auto const difference = UnitHashes::firstDifference(written_[track]->tap->hashes(), found);
        if (!difference)
            return;
        auto const& [first, end] = *difference;
        std::string const what = isClip_ ? "64 KiB from " + std::to_string(first * StreamHashes::pieceSize)
                                         : "edit unit " + std::to_string(first);
        differences_.push_back(written_[track]->name + ": differs from what was wrapped, " + what +
                               (end - first > 1 ? " or one behind it" : "") + " on");
    }

    MXFIO::EssenceContainer container_;
    std::vector<WrapTrack*> written_;
    bool isClip_;
    MXFIO::EssenceReader essence_;
    std::vector<UnitHashes> units_;
    std::vector<StreamHashes> streams_;
    bool isPlaced_ = true;
    std::vector<std::string> differences_;
};

} // namespace

std::vector<std::string> verify(WrapFile const& file, SharedDictionary const& dictionary,
                                EditRate const& rate) {
    Input input(file.name, dictionary);
    auto containers = MXFIO::essenceContainers(chooseFinal(input, false).partition->metadata());
    std::sort(containers.begin(), containers.end(),
              [](auto const& a, auto const& b) { return a.bodySID < b.bodySID; });
    std::vector<std::string> differences;
    std::size_t i = 0;
    for (auto const& item : file.items)
        for (auto const& written : item) {
            if (i >= containers.size())
                return {"the file lacks essence containers"};
            auto const found = ContainerCheck(input.reader, containers[i++], written, rate).run();
            differences.insert(differences.end(), found.begin(), found.end());
        }
    return differences;
}

} // namespace Zelm
