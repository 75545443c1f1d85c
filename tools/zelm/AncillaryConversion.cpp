/// `zelm extract --as anc-json`, `vbi-json` and `captions`: what `zelm ancillary` prints of a track, in a
/// file.
#include "AncillaryReport.h"
#include "SoundConversions.h"

namespace Zelm {

using namespace MXF::Zelm;
using namespace GenericContainer::S436M;

namespace {

/// No element of packets comes near this.
constexpr std::uint64_t largestElement = std::uint64_t{16} << 20;

/// Takes elements, and has their packets printed.
class PacketOutput : public TrackOutput {
public:
    PacketOutput(OutputNames names, ElementKind kind, ExtractTrack const& track, std::string const& what)
        : names_(std::move(names)),
          file_(names_.file(), names_.options),
          printer_(makePrinter(what)),
          lines_(mostLines) {
        FileInfo info;
        if (track.container != nullptr && track.container->metadata)
            gatherPackages(*track.container->metadata, info);
        lines_ = linesOf(info);
        track_.kind = kind;
        track_.bodySID = track.bodySID;
        track_.number = track.element.trackNumber();
        if (track.track != nullptr) {
            track_.id = track.track->trackID;
            track_.editRate = track.track->editRate;
            track_.timecodes = UnitTimecodes(info, track.track->editRate, track.track->origin);
        }
        printer_->begin(names_.file());
        printer_->track(track_);
    }

    void place(std::uint64_t offset) override { element_.offset = offset; }
    void beginUnit(std::int64_t position) override {
        position_ = position;
        element_.data.clear();
        element_.length = 0;
    }
    void take(DataIO::Chain const& data) override {
        element_.length += data.size();
        if (element_.length <= largestElement)
            element_.data.append(data);
    }
    void endUnit() override { giveElement(track_, position_, element_, lines_, *printer_); }
    void complete() override {
        printer_->end({});
        file_.complete();
        names_.whenComplete(file_);
    }
    void abandon(std::vector<std::string>& parts) override {
        printer_->end({});
        parts.push_back(file_.partName());
        file_.abandon();
    }

private:
    std::unique_ptr<AncillaryPrinter> makePrinter(std::string const& what) {
        auto const write = [this](std::string_view text) {
            file_.write(reinterpret_cast<const unsigned char*>(text.data()), text.size());
        };
        return what == "captions" ? makeAncillaryCaptions(false, write) : makeAncillaryDump(true, write);
    }

    OutputNames names_;
    OutputFile file_;
    std::unique_ptr<AncillaryPrinter> printer_;
    unsigned lines_;
    AncillaryTrack track_;
    std::int64_t position_ = 0;
    GenericContainer::Element element_;
};

class AncillaryConversion : public TrackConversion {
public:
    explicit AncillaryConversion(std::string kind) : kind_(std::move(kind)) {}

    std::string choose(ExtractTrack& track, GenericContainer::Element const&) override {
        auto const kind = ancillaryKind(track.track, track.element);
        if (!kind || (*kind == ElementKind::VBI) != (kind_ == "vbi-json"))
            return std::string("has no ") + (kind_ == "vbi-json" ? "VBI lines" : "ancillary data packets") +
                   ", which --as " + kind_ + " takes";
        track.form = {EssenceForm::Shape::Stream, kind_ == "captions" ? "txt" : "json"};
        return {};
    }

    std::unique_ptr<TrackOutput> open(ExtractTrack const& track, OutputNames const& names) override {
        return std::make_unique<PacketOutput>(names, *ancillaryKind(track.track, track.element), track,
                                              kind_);
    }

private:
    std::string kind_;
};

} // namespace

std::shared_ptr<TrackConversion> makeAncillaryConversion(std::string const& kind) {
    return std::make_shared<AncillaryConversion>(kind);
}

} // namespace Zelm
