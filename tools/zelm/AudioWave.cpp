/// `zelm audio` of Wave and AVI files.
#include "AudioInfo.h"
#include "AviNames.h"
#include "Interruption.h"
#include "Progress.h"

#include <MXF/Zelm/DataIO/File/FileDataSource.h>
#include <MXF/Zelm/DataIO/File/FileSliceSource.h>
#include <MXF/Zelm/Essence/AVI/Reader.h>
#include <MXF/Zelm/Essence/Wave/WaveReader.h>
#include <MXF/Zelm/Exceptions/Exceptions.h>

#include <algorithm>
#include <bit>

namespace Zelm {

using namespace MXF::Zelm;
using Essence::Wave::LevelMeter;
using Essence::Wave::WaveReader;

namespace {

constexpr std::uint64_t pieceSize = std::uint64_t{1} << 20;

/// Fields of the format chunk and of `fact` and `chna`.
std::uint32_t number(DataIO::Slice const& bytes, std::size_t at, std::size_t size) {
    std::uint32_t value = 0;
    for (std::size_t i = 0; i < size && at + i < bytes.size(); ++i)
        value |= std::uint32_t{bytes.data()[at + i]} << (8 * i);
    return value;
}

void measure(DataIO::SliceSource& samples, AudioTrack& track, AudioOptions const& options,
             Progress& progress) {
    InterruptionGuard const guard;
    track.levels = std::make_shared<LevelMeter>(track.format, options.meter);
    DataIO::Chain piece;
    for (std::uint64_t done = 0; std::uint64_t const count = samples.read(pieceSize, piece); done += count) {
        InterruptionGuard::check();
        track.levels->take(piece);
        piece.clear();
        progress.update(done);
    }
    track.levels->finish();
}

/// The number in `<NAME>12</NAME>`; none when it is not there.
std::optional<std::uint32_t> numberIn(DataIO::Slice const& document, std::string const& name) {
    std::string const text(document.begin(), document.end()), tag = "<" + name + ">";
    auto const at = text.find(tag);
    if (at == std::string::npos)
        return std::nullopt;
    std::uint32_t value = 0;
    for (std::size_t i = at + tag.size();
         i < text.size() && text[i] >= '0' && text[i] <= '9' && value < 100000; ++i)
        value = 10 * value + static_cast<std::uint32_t>(text[i] - '0');
    return value;
}

/// The audio IDs of ADM (ITU-R BS.2088): each record names a channel, counted from 1.
void compareAudioIDs(DataIO::Slice const& bytes, AudioTrack& track) {
    constexpr std::size_t headSize = 4, recordSize = 40;
    std::uint32_t const tracks = number(bytes, 0, 2), ids = number(bytes, 2, 2);
    if (tracks != track.format.channels)
        track.odd.push_back("the chna chunk has " + std::to_string(tracks) + " tracks for " +
                            std::to_string(track.format.channels) + " channels");
    if (bytes.size() < headSize + ids * recordSize)
        track.odd.push_back("the chna chunk is too short for its " + std::to_string(ids) + " records");
    for (std::size_t at = headSize; at + recordSize <= bytes.size() && at / recordSize < ids;
         at += recordSize)
        if (std::uint32_t const channel = number(bytes, at, 2); channel > track.format.channels) {
            track.odd.push_back("the chna chunk names channel " + std::to_string(channel));
            break;
        }
}

void compareChunk(Essence::Wave::Chunk const& chunk, AudioTrack& track) {
    auto const& format = track.format;
    if (chunk.id == "fmt ") {
        std::uint64_t const rate = number(chunk.content, 8, 4);
        std::uint64_t const right = std::uint64_t{format.samplingRate} * format.blockAlign();
        if (rate != right)
            track.odd.push_back("the format says " + std::to_string(rate) + " bytes a second, it makes " +
                                std::to_string(right));
    } else if (chunk.id == "fact" && chunk.size >= 4) {
        std::uint32_t const count = number(chunk.content, 0, 4);
        if (count != 0xFFFFFFFF && track.instants && *track.instants != count && *track.instants < 0xFFFFFFFF)
            track.odd.push_back("the fact chunk says " + std::to_string(count) + " samples, there are " +
                                std::to_string(*track.instants));
    } else if (chunk.id == "chna") {
        compareAudioIDs(chunk.content, track);
    } else if (chunk.id == "iXML") {
        auto const count = numberIn(chunk.content, "TRACK_COUNT");
        if (count && *count != format.channels)
            track.odd.push_back("the iXML chunk has " + std::to_string(*count) + " tracks for " +
                                std::to_string(format.channels) + " channels");
    }
}

/// The samples begin at `dataOffset`.
void compareWave(WaveReader const& reader, AudioFile const& file, std::uint64_t dataOffset,
                 AudioTrack& track) {
    for (auto const& chunk : reader.chunks())
        compareChunk(chunk, track);
    auto const speakers = static_cast<unsigned>(std::popcount(track.format.channelMask));
    if (speakers != 0 && speakers != track.format.channels)
        track.odd.push_back("the channel mask has " + std::to_string(speakers) + " loudspeakers for " +
                            std::to_string(track.format.channels) + " channels");
    if (!reader.dataSize())
        track.odd.push_back("the file was not closed: it does not say how long it is");
    else if (*reader.dataSize() > file.size - std::min(file.size, dataOffset))
        track.odd.push_back("the file ends early: the samples have " + std::to_string(*reader.dataSize()) +
                            " bytes, " + std::to_string(file.size - std::min(file.size, dataOffset)) +
                            " are there");
    else if (*reader.dataSize() % track.format.blockAlign() != 0)
        track.odd.push_back("the samples end amid an instant");
}

std::string idOf(DataIO::Chain const& start) {
    unsigned char bytes[4] = {};
    start.copyTo(bytes, sizeof bytes);
    return {bytes, bytes + sizeof bytes};
}

/// The format of samples as the stream header has it; no channels when they are no PCM that makes sense.
Essence::Wave::WaveFormat formatOf(Essence::AVI::StreamHeader const& header) {
    Essence::Wave::WaveFormat format;
    if (header.content() != Essence::AVI::Content::PCM || !header.sound)
        return format;
    auto const& sound = *header.sound;
    format.sampleBytes = static_cast<std::uint16_t>((sound.bitsPerSample + 7) / 8);
    bool const isRight = sound.channels != 0 && sound.samplingRate != 0 && format.sampleBytes >= 1 &&
                         format.sampleBytes <= 4 && sound.samplingRate <= 0x7FFFFFFF;
    format.channels = isRight ? sound.channels : std::uint16_t{0};
    format.samplingRate = sound.samplingRate;
    format.validBits = sound.bitsPerSample;
    return format;
}

void compareStream(Essence::AVI::Reader::Stream const& stream, AudioTrack& track) {
    auto const& header = stream.header;
    std::uint32_t const align = track.format.blockAlign();
    if (align == 0)
        return;
    if (header.sound->blockAlign != align)
        track.odd.push_back("the format says blocks of " + std::to_string(header.sound->blockAlign) +
                            " bytes, channels and bits make " + std::to_string(align));
    if (header.sampleSize != 0 && header.sampleSize != align)
        track.odd.push_back("the stream header says samples of " + std::to_string(header.sampleSize) +
                            " bytes, channels and bits make " + std::to_string(align));
    if (header.rate.denominator != 0 && header.sampleSize != 0 &&
        header.rate.numerator != std::int64_t{track.format.samplingRate} * header.rate.denominator)
        track.odd.push_back("the stream header has another rate than the format");
    std::uint64_t bytes = 0;
    for (auto const& chunk : stream.chunks)
        bytes += chunk.size;
    if (bytes / align != header.length && header.sampleSize != 0)
        track.odd.push_back("the stream header says " + std::to_string(header.length) +
                            " samples, the chunks hold " + std::to_string(bytes / align));
    track.instants = bytes / align;
}

/// "pictures, MJPG".
std::string streamText(Essence::AVI::StreamHeader const& header) {
    return (header.isVideo() ? "pictures, " : header.isSound() ? "sound, " : "data, ") + codeText(header);
}

} // namespace

void readWaveAudio(AudioFile& file, AudioOptions const& options) {
    auto const source = std::make_shared<DataIO::File::FileSliceSource>(std::string_view(file.file));
    DataIO::Chain start;
    source->read(4, start);
    file.kind = idOf(start);
    source->seek(0);
    WaveReader reader(source);
    std::uint64_t const dataOffset = source->absoluteOffset();
    AudioTrack& track = file.tracks.emplace_back();
    track.name = "a1";
    track.coding = "PCM";
    track.format = reader.format();
    track.instants = reader.sampleCount();
    if (options.levels) {
        Progress progress("measuring", reader.dataSize().value_or(file.size), true);
        measure(*reader.samples(), track, options, progress);
    }
    reader.readRest();
    compareWave(reader, file, dataOffset, track);
    if (!track.odd.empty() && track.levels && track.instants &&
        track.levels->instants() < *track.instants) // which was told
        track.instants = track.levels->instants();
    file.broadcast = reader.broadcast();
    for (auto const& chunk : reader.chunks())
        file.chunks.push_back({chunk.id, chunk.size});
}

void readAviAudio(AudioFile& file, AudioOptions const& options) {
    file.kind = "AVI";
    auto const source = std::make_shared<DataIO::File::FileDataSource>(std::string_view(file.file));
    Essence::AVI::Reader const reader(source);
    Progress progress("measuring", file.size, true);
    for (std::size_t i = 0; i < reader.streams().size(); ++i) {
        auto const& stream = reader.streams()[i];
        if (stream.header.content() == Essence::AVI::Content::InterleavedDV)
            file.notes.push_back("stream " + std::to_string(i) +
                                 " has its sound within DV, which is not read");
        if (!stream.header.isSound())
            continue;
        AudioTrack& track = file.tracks.emplace_back();
        track.name = "a" + std::to_string(file.tracks.size());
        track.id = static_cast<std::uint32_t>(i);
        track.format = formatOf(stream.header);
        track.coding = track.format.channels != 0 ? "PCM" : codeText(stream.header);
        compareStream(stream, track);
        if (options.levels && track.format.channels != 0)
            measure(*reader.open(i), track, options, progress);
    }
    if (file.tracks.empty() && file.notes.empty())
        for (std::size_t i = 0; i < reader.streams().size(); ++i)
            file.notes.push_back("stream " + std::to_string(i) + ": " +
                                 streamText(reader.streams()[i].header));
    for (auto const& fault : reader.faults())
        file.faults.push_back({fault.message, fault.offset});
}

} // namespace Zelm
