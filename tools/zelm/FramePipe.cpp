/// `zelm frames -`: the edit units of standard input.
#include "FrameContainers.h"
#include "FrameList.h"
#include "FrameMaker.h"
#include "Input.h"
#include "StandardStreams.h"

#include <MXF/Zelm/Exceptions/Exceptions.h>
#include <MXF/Zelm/MXFIO/SequentialReader.h>

#include <algorithm>
#include <map>

namespace Zelm {

using namespace MXF::Zelm;
using MXFIO::EssenceUnit;

namespace {

class PipeList {
public:
    PipeList(FrameRequest const& request, FramePrinter& printer)
        : request_(request),
          printer_(printer),
          reader_(source_, loadDictionary(request.dictionaries), searchLimit, withoutValues(nullptr)) {}

    FrameListEnd list();

private:
    /// What is listed of one container.
    struct Chosen {
        FoundTrack what;
        FrameMaker maker;
        UnitRange range;
        std::int64_t found = 0; // edit units up to now
    };

    bool next(EssenceUnit& unit);
    void choose();
    void add(FoundTrack const& what);
    Chosen* chosen(std::uint32_t bodySID);
    void take(EssenceUnit const& unit, Chosen& chosen);
    void print(Chosen const& chosen);
    bool isBehindRanges() const;
    bool endsEarly() const;

    FrameRequest const& request_;
    FramePrinter& printer_;
    StandardInput source_;
    MXFIO::SequentialReader reader_;
    std::vector<EssenceContainer> containers_;
    std::map<std::uint32_t, EssenceContainer> unknown_; // to the metadata; by body SID
    std::map<std::uint32_t, Chosen> chosen_;            // the same
    std::optional<std::uint32_t> section_;              // the body SID of the rows that are being printed
    std::optional<Frame> frame_;                        // of which more may follow
    FrameListEnd end_;
};

FrameListEnd PipeList::list() {
    EssenceUnit unit;
    bool more = next(unit);
    choose();
    printer_.begin(request_.file);
    for (; more && !isBehindRanges(); more = next(unit))
        if (auto* const from = chosen(unit.bodySID))
            take(unit, *from);
    end_.endsEarly = !more && !end_.fault && endsEarly();
    printer_.end(end_);
    return end_;
}

bool PipeList::next(EssenceUnit& unit) {
    try {
        return reader_.next(unit);
    } catch (Exceptions::SystemError const&) {
        throw;
    } catch (Exceptions::BaseException const& failure) {
        end_.fault = Fault{failure.message(), failure.offset().value_or(source_.absoluteOffset())};
        return false;
    }
}

/// The header metadata stands before the essence.
void PipeList::choose() {
    containers_ = reader_.containers();
    for (auto const& what : chooseFrames(containers_, request_.track))
        add(what);
}

void PipeList::add(FoundTrack const& what) {
    FrameMaker const maker(packagesOf(reader_.metadata()), *what.container, what.track, nullptr);
    auto const range = maker.timecodes().units(request_.range);
    chosen_.emplace(what.container->bodySID, Chosen{what, maker, range});
}

/// Null for what is not listed. A container that the metadata does not know is.
PipeList::Chosen* PipeList::chosen(std::uint32_t bodySID) {
    auto found = chosen_.find(bodySID);
    if (found == chosen_.end() && request_.track.empty()) {
        auto& unknown = unknown_[bodySID];
        unknown.bodySID = bodySID;
        add({&unknown, nullptr});
        found = chosen_.find(bodySID);
    }
    return found != chosen_.end() ? &found->second : nullptr;
}

/// Clips are given one after another, their parts too.
void PipeList::take(EssenceUnit const& unit, Chosen& chosen) {
    auto const* const track = chosen.what.track;
    if (track != nullptr && chosen.what.container->wrapping() == GenericContainer::Wrapping::Clip &&
        unit.package.element(track->trackNumber) == nullptr)
        return;
    chosen.found = unit.position + 1;
    if (unit.position < chosen.range.first || unit.position >= chosen.range.last)
        return;
    if (frame_)
        *frame_->size += unit.package.length;
    else
        frame_ = chosen.maker.make(unit);
    if (!unit.isContinued)
        print(chosen);
}

void PipeList::print(Chosen const& chosen) {
    if (section_ != frame_->bodySID)
        printer_.section(sectionOf(*chosen.what.container, containers_.size() < 2));
    section_ = frame_->bodySID;
    printer_.frame(*frame_);
    frame_.reset();
}

bool PipeList::isBehindRanges() const {
    return !chosen_.empty() && std::all_of(chosen_.begin(), chosen_.end(), [](auto const& each) {
        return each.second.found >= each.second.range.last;
    });
}

/// Fewer edit units than the metadata says, or no footer partition where one should be. A single one may be a
/// clip with the label of frames.
bool PipeList::endsEarly() const {
    auto const* const pack = reader_.partitionPack();
    bool const footerMissing = pack != nullptr && pack->footerPartition() != 0 &&
                               pack->partitionKind() != Packs::PartitionPack::Footer;
    bool const isShort = std::any_of(chosen_.begin(), chosen_.end(), [](auto const& each) {
        auto const& container = *each.second.what.container;
        return container.wrapping() != GenericContainer::Wrapping::Clip && each.second.found != 1 &&
               each.second.found < declaredUnits(container);
    });
    return frame_ || footerMissing || isShort;
}

} // namespace

FrameListEnd listPipedFrames(FrameRequest const& request, FramePrinter& printer) {
    return PipeList(request, printer).list();
}

} // namespace Zelm
