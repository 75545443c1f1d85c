#include "WrapCodedSound.h"

#include <MXF/Zelm/GenericContainer/Analyzers/CodedSoundAnalyzer.h>

namespace Zelm {

using namespace MXF::Zelm;
using Essence::CodedSound::ac3;
using Essence::CodedSound::adts;
using Essence::CodedSound::Coding;
using Essence::CodedSound::Format;
using Essence::CodedSound::FrameCutter;
using Essence::CodedSound::FrameHeader;
using Essence::CodedSound::mpegAudio;
using GenericContainer::CodedSoundAnalyzer;
using GenericContainer::CodedSoundOptions;
using GenericContainer::Wrapping;

namespace {

/// The sampling rate where three frames follow each other, or fewer and nothing else, with `mostSearched`
/// bytes before them at most; else 0.
std::uint32_t samplingRateIn(InputHead const& head, TrackMaking const& making, Format const& format,
                             std::uint64_t mostSearched) {
    constexpr unsigned enough = 3;
    FrameCutter frames(head.open(making), format, mostSearched);
    for (unsigned count = 0; count < enough; ++count)
        if (!frames.next())
            return frames.passed().isAtEnd ? 0 : frames.first().samplingRate;
    return frames.first().samplingRate;
}

bool isFileOf(InputHead const& head, TrackMaking const& making, Format const& format) {
    return head.pcm.channels == 0 && samplingRateIn(head, making, format, 0) != 0;
}

/// Sound behind which pictures go on.
class CodedEnd : public OpenEnd {
public:
    explicit CodedEnd(std::shared_ptr<CodedSoundAnalyzer> analyzer) : analyzer_(std::move(analyzer)) {}
    void goOn() override { analyzer_->goOn(); }
    bool isExhausted() const override { return analyzer_->isExhausted(); }

private:
    std::shared_ptr<CodedSoundAnalyzer> analyzer_;
};

const char* textOf(Coding coding) {
    static constexpr const char* texts[] = {"MPEG-1 layer I", "MPEG-1 layer II", "MPEG-1 layer III",
                                            "MPEG-2 layer I", "MPEG-2 layer II", "MPEG-2 layer III",
                                            "AC-3",           "MPEG-2 AAC",      "MPEG-4 AAC"};
    return texts[static_cast<std::size_t>(coding)];
}

/// "MPEG-1 layer II, 2 channels, 48000 Hz"
std::string textOf(FrameHeader const& header) {
    std::string const channels = header.channels == 0 ? ""
                                 : header.channels == 1
                                     ? ", 1 channel"
                                     : ", " + std::to_string(header.channels) + " channels";
    return textOf(header.coding) + channels + ", " + std::to_string(header.samplingRate) + " Hz";
}

/// The stream_id that the next sound of a file has in its label.
std::uint8_t nextStreamId(TrackMaking& making) {
    constexpr unsigned first = 0xC0, count = 0x20;
    return static_cast<std::uint8_t>(first + making.codedSounds++ % count);
}

void add(InputHead const& head, TrackMaking& making, std::vector<WrapTrack>& tracks, Format const& format) {
    CodedSoundOptions options;
    options.wrapping = making.soundWrapping();
    options.start = head.shift;
    if (&format == &mpegAudio())
        options.streamId = head.streamId != 0 ? head.streamId : nextStreamId(making);
    auto const analyzer = std::make_shared<CodedSoundAnalyzer>(head.open(making), format, options);
    if (!analyzer->preload())
        throw CannotWrap(head.name + ": has no frames of " + std::string(format.name));
    making.isByFrames = !making.isRateTold && making.isAlone && !making.layout.systemItem() &&
                        options.wrapping == Wrapping::Frame;
    if (making.isByFrames)
        making.rate = analyzer->frameRate();
    analyzer->editRate(making.rate);
    analyzer->preload();
    addTrack(tracks, 'a', head, "", analyzer, making.sources++);
    tracks.back().essence = textOf(analyzer->header());
    tracks.back().wrapping = options.wrapping;
    tracks.back().openEnd = std::make_shared<CodedEnd>(analyzer);
}

} // namespace

std::optional<CodedSoundFacts> codedSoundIn(InputHead const& head, TrackMaking const& making) {
    for (auto const* const format : Essence::CodedSound::formats())
        if (auto const rate = samplingRateIn(head, making, *format, InputHead::size))
            return CodedSoundFacts{format, rate};
    return std::nullopt;
}

const char* kindOfCodedSound(Format const& format) {
    return &format == &mpegAudio() ? "mpeg-audio" : &format == &ac3() ? "ac3" : "aac";
}

bool isMpegAudio(InputHead const& head, TrackMaking const& making) {
    return isFileOf(head, making, mpegAudio());
}
bool isAc3(InputHead const& head, TrackMaking const& making) { return isFileOf(head, making, ac3()); }
bool isAac(InputHead const& head, TrackMaking const& making) { return isFileOf(head, making, adts()); }

void addMpegAudio(InputHead const& head, TrackMaking& making, std::vector<WrapTrack>& tracks) {
    add(head, making, tracks, mpegAudio());
}
void addAc3(InputHead const& head, TrackMaking& making, std::vector<WrapTrack>& tracks) {
    add(head, making, tracks, ac3());
}
void addAac(InputHead const& head, TrackMaking& making, std::vector<WrapTrack>& tracks) {
    add(head, making, tracks, adts());
}

} // namespace Zelm
