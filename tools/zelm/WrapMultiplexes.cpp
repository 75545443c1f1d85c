// The streams of program and transport streams (ISO/IEC 13818-1), as inputs of `zelm wrap`.
#include "StreamDamage.h"
#include "WrapCodedSound.h"
#include "WrapPictures.h"
#include "WrapRefusals.h"
#include "WrapStreams.h"

#include <MXF/Zelm/ByteCoders/Hexadecimal.h>
#include <MXF/Zelm/DataIO/BoundedSliceSource.h>
#include <MXF/Zelm/Essence/MPEG/Demultiplexer.h>

#include <algorithm>

namespace Zelm {

using namespace MXF::Zelm;
using namespace Essence::MPEG;

namespace {

using OpenedMultiplex = std::unique_ptr<Demultiplexer>;

constexpr unsigned char startCodePrefix[] = {0, 0, 1};
constexpr unsigned char sequenceHeaderCode = 0xB3, packHeaderCode = 0xBA;

const char* textOf(Coding coding) {
    static constexpr const char* texts[] = {
        "unknown coding", "MPEG-1 video", "MPEG-2 video", "MPEG-4 video", "AVC",       "HEVC",
        "JPEG 2000",      "MPEG audio",   "AAC",          "AC-3",         "SMPTE 302M"};
    return texts[static_cast<std::size_t>(coding)];
}

bool isMpegVideo(StreamInfo const& info) {
    return info.coding == Coding::MPEG1Video || info.coding == Coding::MPEG2Video;
}

/// Whether `times` start codes are there whose value has these bits under the mask.
bool hasStartCode(DataIO::Slice const& bytes, unsigned char value, unsigned char mask = 0xFF,
                  unsigned times = 1) {
    constexpr std::size_t prefixSize = std::size(startCodePrefix);
    auto const* const end = bytes.end();
    auto const* at = bytes.begin();
    while ((at = std::search(at, end, std::begin(startCodePrefix), std::end(startCodePrefix))) != end) {
        at += prefixSize;
        if (at != end && (*at & mask) == value && --times == 0)
            return true;
    }
    return false;
}

/// What analyzers wait for: a sequence header, of AVC a sequence parameter set.
bool hasBeginning(StreamInfo const& info, DataIO::Slice const& bytes) {
    constexpr unsigned char parameterSet = 0x07, typeMask = 0x9F;
    if (isMpegVideo(info))
        return hasStartCode(bytes, sequenceHeaderCode);
    return info.coding != Coding::AVC || hasStartCode(bytes, parameterSet, typeMask);
}

/// A file with several streams. Each is read by a demultiplexer of its own, so that none waits for another.
class Multiplex {
public:
    using Open = std::function<OpenedMultiplex(InputHead::Source)>;

    Multiplex(InputHead const& head, TrackMaking const& making, Open open)
        : head_(head), making_(making), open_(std::move(open)), infos_(demultiplexer()->streams()) {
        for (std::size_t i = 0; i < infos_.size(); ++i)
            if (isMpegVideo(infos_[i]))
                correct(i);
    }

    std::vector<InputHead> streams() const {
        std::vector<InputHead> found;
        auto const begin = beginning();
        for (std::size_t i = 0; i < infos_.size(); ++i)
            if (infos_[i].isVideo())
                found.push_back(video(i));
            else if (auto const head = sound(i, begin))
                found.push_back(*head);
            else
                note(i, ": cannot be wrapped and is left out");
        if (found.empty())
            throw CannotWrap(head_.name + ": has no stream that can be wrapped" + listed());
        return found;
    }

private:
    OpenedMultiplex demultiplexer() const { return open_(head_.open(making_.blocks)); }

    /// Without a map, video of a program stream is told to be MPEG-2, which it need not be.
    void correct(std::size_t stream) {
        InputHead const head(nameOf(stream), opening(stream, std::make_shared<StreamDamage>()));
        if (isHevc(head))
            infos_[stream].coding = Coding::HEVC;
        else if (isMpeg4Video(head))
            infos_[stream].coding = Coding::MPEG4Video;
        else if (!hasBeginning(infos_[stream], head.bytes) && isAvc(head, making_))
            infos_[stream].coding = Coding::AVC;
    }

    /// ": MPEG audio, AC-3"
    std::string listed() const {
        std::string text;
        for (auto const& info : infos_)
            text += (text.empty() ? ": " : ", ") + std::string(textOf(info.coding));
        return text;
    }

    /// "clip.ts, stream 0x101 (AC-3)"
    std::string nameOf(std::size_t stream) const {
        auto const& info = infos_[stream];
        std::string const part = info.subStream == 0 ? "" : "/0x" + ByteCoders::toHexadecimal(info.subStream);
        return head_.name + ", stream 0x" + ByteCoders::toHexadecimal(info.id) + part + " (" +
               textOf(info.coding) + ")";
    }

    void note(std::size_t stream, const char* what) const { making_.notes->insert(nameOf(stream) + what); }

    InputHead::Opening opening(std::size_t stream, std::shared_ptr<StreamDamage> const& damage) const {
        return [head = head_, open = open_, stream, damage](InputHead::Blocks const& blocks) {
            return std::make_shared<WatchedStream>(open(head.open(blocks))->take(stream), damage);
        };
    }

    /// What begins amid a group of pictures may have no header of the sequence among its first bytes.
    InputHead video(std::size_t stream) const {
        auto const& info = infos_[stream];
        if (info.coding == Coding::HEVC || info.coding == Coding::MPEG4Video)
            throw CannotWrap(nameOf(stream) + ": pictures of this coding cannot be wrapped");
        auto const damage = std::make_shared<StreamDamage>();
        InputHead head(nameOf(stream), opening(stream, damage));
        head.damage = damage;
        if (!hasBeginning(info, head.bytes))
            head.as = info.coding == Coding::AVC ? "avc" : "mpeg2";
        return head;
    }

    /// None for what can be no sound, or is of a coding that is not known.
    std::optional<InputHead> sound(std::size_t stream, std::optional<double> begin) const {
        constexpr std::uint32_t samplingRateOf302M = 48000;
        auto const damage = std::make_shared<StreamDamage>();
        if (infos_[stream].coding == Coding::S302M) {
            auto const packets = [head = head_, open = open_, stream,
                                  damage](InputHead::Blocks const& blocks) {
                return std::make_shared<MendedPackets>(open(head.open(blocks))->take(stream), damage);
            };
            auto found =
                s302mInput(nameOf(stream), packets, shiftOf(stream, begin, samplingRateOf302M), making_);
            found.damage = damage;
            return found;
        }
        InputHead head(nameOf(stream), opening(stream, damage));
        head.damage = damage;
        auto const coded = codedSoundIn(head, making_);
        if (!coded)
            return std::nullopt;
        head.as = kindOfCodedSound(*coded->format);
        constexpr std::uint16_t firstSound = 0xC0, lastSound = 0xDF;
        if (infos_[stream].id >= firstSound && infos_[stream].id <= lastSound)
            head.streamId = static_cast<std::uint8_t>(infos_[stream].id);
        head.shift = shiftOf(stream, begin, coded->samplingRate);
        return head;
    }

    /// Instants by which a sound begins behind the pictures.
    std::int64_t shiftOf(std::size_t stream, std::optional<double> begin, std::uint32_t samplingRate) const {
        auto const own = beginningOf(stream);
        std::optional<std::int64_t> shift = 0;
        if (begin && own)
            shift = instantsBetween(0, secondsBetween(*begin, *own), samplingRate);
        if (!shift)
            note(stream, ": its times have nothing to do with those of the pictures, and are not kept");
        return shift.value_or(0);
    }

    /// When the first pictures, else the earliest sound begins, in seconds of the file's clock.
    std::optional<double> beginning() const {
        std::optional<double> earliest;
        for (std::size_t i = 0; i < infos_.size(); ++i) {
            if (infos_[i].isVideo())
                return beginningOf(i);
            auto const own = infos_[i].isSound() ? beginningOf(i) : std::nullopt;
            if (own && (!earliest || secondsBetween(*earliest, *own) < 0))
                earliest = own;
        }
        return earliest;
    }

    /// The earliest time among the first packets: pictures are shown in another order than they are sent.
    /// Video before its first sequence header or parameter set is not wrapped.
    std::optional<double> beginningOf(std::size_t stream) const {
        constexpr std::uint64_t searched = std::uint64_t{64} << 20;
        constexpr unsigned enough = 8;
        auto const packets =
            open_(std::make_shared<DataIO::BoundedSliceSource>(head_.open(making_.blocks), searched))
                ->take(stream);
        std::optional<double> earliest;
        bool hasBegun = false;
        unsigned times = 0;
        for (PESPacket packet; times < enough && packets->nextPacket(packet);) {
            hasBegun = hasBegun || hasBeginning(infos_[stream], packet.payload.contiguous());
            if (!hasBegun || !packet.timestamps.presentation)
                continue;
            ++times;
            auto const time = static_cast<double>(*packet.timestamps.presentation) / ticksPerSecond;
            if (!earliest || secondsBetween(*earliest, time) < 0)
                earliest = time;
        }
        return earliest;
    }

    /// On a clock that starts anew.
    static double secondsBetween(double from, double to) {
        constexpr double day = 8589934592.0 / ticksPerSecond; // 2^33 ticks
        double const between = to - from;
        return between > day / 2 ? between - day : between < -day / 2 ? between + day : between;
    }

    static constexpr double ticksPerSecond = 90000;

    InputHead const& head_;
    TrackMaking const& making_;
    Open open_;
    std::vector<StreamInfo> infos_;
};

} // namespace

/// A packet of a stream opens a file of packets alone, with a stream_id that no start code of video has. A
/// recording may begin amid a pack.
bool isProgramStream(InputHead const& head, TrackMaking const&) {
    auto const* const bytes = head.bytes.data();
    constexpr unsigned char firstSound = 0xC0, lastVideo = 0xEF;
    if (head.bytes.size() < 4 || !std::equal(std::begin(startCodePrefix), std::end(startCodePrefix), bytes))
        return hasStartCode(head.bytes, packHeaderCode, 0xFF, 2);
    return bytes[3] == packHeaderCode || bytes[3] == PrivateStream1 ||
           (bytes[3] >= firstSound && bytes[3] <= lastVideo);
}

std::vector<InputHead> programStreams(InputHead const& head, TrackMaking& making) {
    return Multiplex(head, making,
                     [](InputHead::Source source) {
                         return std::make_unique<ProgramStreamDemultiplexer>(std::move(source));
                     })
        .streams();
}

/// Sync bytes stand at the same distance; a recording may begin amid a packet.
bool isTransportStream(InputHead const& head, TrackMaking const&) {
    constexpr unsigned char syncByte = 0x47;
    constexpr std::size_t packets = 5;
    for (std::size_t const distance : {188u, 192u, 204u})
        for (std::size_t first = 0; first < distance; ++first) {
            std::size_t count = 0;
            while (count < packets && first + count * distance < head.bytes.size() &&
                   head.bytes.data()[first + count * distance] == syncByte)
                ++count;
            if (count == packets)
                return true;
        }
    return false;
}

namespace {

/// Says which program is taken where there are several.
void notePrograms(InputHead const& head, TrackMaking& making) {
    TransportStreamDemultiplexer const stream(head.open(making), making.options.program);
    std::string others;
    for (auto const program : stream.programs())
        if (program != stream.program())
            others += (others.empty() ? "" : ", ") + std::to_string(program);
    if (making.options.program == 0 && !others.empty())
        making.notes->insert(head.name + ": program " + std::to_string(stream.program()) +
                             " is taken; there are others, for --program: " + others);
}

} // namespace

std::vector<InputHead> transportStreams(InputHead const& head, TrackMaking& making) {
    making.hasPrograms = true;
    notePrograms(head, making);
    return Multiplex(head, making,
                     [program = making.options.program](InputHead::Source source) {
                         return std::make_unique<TransportStreamDemultiplexer>(std::move(source), program);
                     })
        .streams();
}

} // namespace Zelm
