// The streams of AVI files, as inputs of `zelm wrap`.
#include "Faults.h"
#include "StreamDamage.h"
#include "WrapCodedSound.h"
#include "WrapPictures.h"
#include "WrapStreams.h"

#include "AviNames.h"

#include <MXF/Zelm/DataIO/File/FileDataSource.h>
#include <MXF/Zelm/Essence/AVI/Reader.h>

namespace Zelm {

using namespace MXF::Zelm;
using namespace Essence::AVI;
using Essence::Wave::WaveFormat;

namespace {

/// The format of a stream of PCM; none when its instants are not samples of whole bytes behind each other.
std::optional<WaveFormat> formatOf(SoundFormat const& sound) {
    constexpr unsigned mostBits = 32;
    unsigned const bytes = (sound.bitsPerSample + 7u) / 8;
    bool const isUsable = sound.channels != 0 && sound.samplingRate != 0 &&
                          sound.samplingRate <= 0x7FFFFFFF && bytes != 0 && sound.bitsPerSample <= mostBits &&
                          sound.blockAlign == sound.channels * bytes;
    if (!isUsable)
        return std::nullopt;
    WaveFormat format;
    format.channels = sound.channels;
    format.samplingRate = sound.samplingRate;
    format.sampleBytes = static_cast<std::uint16_t>(bytes);
    format.validBits = sound.bitsPerSample;
    return format;
}

/// When a stream begins, in seconds.
double beginningOf(StreamHeader const& header) {
    auto const& rate = header.rate;
    return rate.numerator > 0 && rate.denominator > 0
               ? static_cast<double>(header.start) * static_cast<double>(rate.denominator) /
                     static_cast<double>(rate.numerator)
               : 0;
}

/// A picture without bytes stands for the one before.
std::vector<Chunk> withRepeats(std::vector<Chunk> chunks) {
    for (std::size_t i = 1; i < chunks.size(); ++i)
        if (chunks[i].size == 0)
            chunks[i] = chunks[i - 1];
    return chunks;
}

class AviFile {
public:
    AviFile(InputHead const& head, TrackMaking const& making)
        : head_(head),
          making_(making),
          reader_(std::make_shared<DataIO::File::FileDataSource>(std::string_view(head.name))) {}

    std::vector<InputHead> streams() const {
        std::vector<InputHead> found;
        for (std::size_t i = 0; i < reader_.streams().size(); ++i)
            add(i, found);
        auto const damage = takeFaults();
        for (auto& stream : found)
            stream.damage = damage;
        if (found.empty())
            throw CannotWrap(head_.name + ": has no stream that can be wrapped");
        return found;
    }

private:
    /// What is missing; of faults that did no harm there are notes.
    std::shared_ptr<StreamDamage> takeFaults() const {
        auto const damage = std::make_shared<StreamDamage>();
        for (auto const& fault : reader_.faults())
            if (fault.isLoss)
                damage->add(fault.offset, fault.message);
            else
                making_.notes->insert(head_.name + ": " + faultText(fault.message, fault.offset));
        return damage;
    }

    void add(std::size_t stream, std::vector<InputHead>& found) const {
        auto const& header = headerOf(stream);
        switch (header.content()) {
        case Content::DV:
        case Content::InterleavedDV:
            found.emplace_back(nameOf(stream), opening(withRepeats(reader_.streams()[stream].chunks)));
            found.back().as = "dv";
            return;
        case Content::MJPEG:
            throw CannotWrap(nameOf(stream) + ": motion JPEG has no mapping into MXF");
        case Content::PCM:
            if (auto const format = formatOf(*header.sound)) {
                found.push_back(sound(stream, *format));
                return;
            }
            break;
        case Content::Unknown:
            if (header.isVideo()) {
                found.push_back(otherPictures(stream));
                return;
            }
            if (auto const head = codedSound(stream)) {
                found.push_back(*head);
                return;
            }
        }
        making_.notes->insert(nameOf(stream) + ": cannot be wrapped and is left out");
    }

    /// Of the many codes for MPEG and AVC none is looked at.
    InputHead otherPictures(std::size_t stream) const {
        InputHead head(nameOf(stream), opening(reader_.streams()[stream].chunks));
        if (!isVideo(head, making_) && !isAvc(head, making_))
            throw CannotWrap(head.name + ": pictures of a coding that cannot be wrapped");
        return head;
    }

    StreamHeader const& headerOf(std::size_t stream) const { return reader_.streams()[stream].header; }

    /// "clip.avi, stream 1 (PCM)"
    std::string nameOf(std::size_t stream) const {
        return head_.name + ", stream " + std::to_string(stream) + " (" + codeText(headerOf(stream)) + ")";
    }

    /// Streams are read in turn, each through a source that reads on where it stood.
    InputHead::Opening opening(std::vector<Chunk> chunks) const {
        return [name = head_.name,
                chunks = std::make_shared<std::vector<Chunk>>(std::move(chunks))](InputHead::Blocks const&) {
            return std::make_shared<ChunkSource>(
                std::make_shared<DataIO::File::FileDataSource>(std::string_view(name)), *chunks);
        };
    }

    InputHead sound(std::size_t stream, WaveFormat const& format) const {
        auto const shift =
            instantsBetween(beginning(), beginningOf(headerOf(stream)), format.samplingRate).value_or(0);
        return soundInput(nameOf(stream), opening(reader_.streams()[stream].chunks), format, shift, making_);
    }

    /// Frames that tell what they are; none where there are no such.
    std::optional<InputHead> codedSound(std::size_t stream) const {
        InputHead head(nameOf(stream), opening(reader_.streams()[stream].chunks));
        auto const coded = codedSoundIn(head, making_);
        if (!headerOf(stream).isSound() || !coded)
            return std::nullopt;
        head.as = kindOfCodedSound(*coded->format);
        head.shift =
            instantsBetween(beginning(), beginningOf(headerOf(stream)), coded->samplingRate).value_or(0);
        return head;
    }

    /// When the first pictures begin; else the file's own start.
    double beginning() const {
        for (auto const& stream : reader_.streams())
            if (stream.header.isVideo() || stream.header.content() == Content::InterleavedDV)
                return beginningOf(stream.header);
        return 0;
    }

    InputHead const& head_;
    TrackMaking const& making_;
    Reader reader_;
};

} // namespace

bool isAvi(InputHead const& head, TrackMaking const&) {
    auto const* const bytes = head.bytes.data();
    return head.bytes.size() >= 12 && std::equal(bytes, bytes + 4, "RIFF") &&
           std::equal(bytes + 8, bytes + 12, "AVI ");
}

std::vector<InputHead> aviStreams(InputHead const& head, TrackMaking& making) {
    if (!head.isFile())
        throw CannotWrap(head.name + ": an AVI file inside of another file cannot be read");
    return AviFile(head, making).streams();
}

} // namespace Zelm
