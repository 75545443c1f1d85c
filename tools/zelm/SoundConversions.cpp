#include "SoundConversions.h"

#include "CarriedStatus.h"
#include "PacketUnits.h"
#include "WaveForm.h"

#include <MXF/Zelm/DataIO/BufferSliceSource.h>
#include <MXF/Zelm/Essence/AES3/S302M/PacketCutter.h>
#include <MXF/Zelm/Essence/AES3/S302M/PacketWriter.h>
#include <MXF/Zelm/Essence/Converters/PCMConverter.h>
#include <MXF/Zelm/Essence/Converters/PCMToAES3.h>
#include <MXF/Zelm/Essence/MPEG/TransportWriter.h>

namespace Zelm {

using namespace MXF::Zelm;
using Essence::PCMFormat;
using Essence::AES3::AES3Info;
using Essence::AES3::S302M::PacketCutter;
using Essence::Wave::WaveFormat;
using Shape = EssenceForm::Shape;

namespace {

/// Samples on their way into a file that is no Wave file.
class SampleFile : public WaveOutput {
public:
    explicit SampleFile(OutputNames names) : names_(std::move(names)), file_(names_.file(), names_.options) {}

    void complete() override {
        end();
        file_.complete();
        names_.whenComplete(file_);
    }
    void abandon(std::vector<std::string>& parts) override {
        parts.push_back(file_.partName());
        file_.abandon();
    }

protected:
    OutputFile& file() { return file_; }

    /// Writes what is left.
    virtual void end() {}

private:
    OutputNames names_;
    OutputFile file_;
};

class PcmFile : public SampleFile {
public:
    using SampleFile::SampleFile;
    void add(std::size_t, DataIO::Chain samples) override { file().write(samples); }
};

/// What a converter makes of the samples.
class ConvertedFile : public SampleFile {
public:
    using Source = Templates::SharedPtr<DataIO::SliceSource>;

    /// `convert` makes the converter of what reads the samples.
    template <class Convert>
    ConvertedFile(OutputNames names, Convert convert)
        : SampleFile(std::move(names)),
          input_(std::make_shared<DataIO::BufferSliceSource>(DataIO::Chain())),
          converted_(convert(Source(input_))) {}

    void add(std::size_t, DataIO::Chain samples) override {
        constexpr std::uint64_t all = ~std::uint64_t{0};
        input_->append(samples);
        DataIO::Chain made;
        converted_->read(all, made);
        take(std::move(made));
    }

protected:
    virtual void take(DataIO::Chain made) { file().write(made); }

private:
    std::shared_ptr<DataIO::BufferSliceSource> input_;
    Source converted_;
};

/// Bits of the formats of AES3; 0 for samples that it has none for.
unsigned bitsOf(WaveFormat const& format) {
    if (format.sampleBytes < 2 || format.validBits > 24)
        return 0;
    return format.sampleBytes == 2 ? 16 : format.validBits <= 20 ? 20 : 24;
}

/// Samples as they come: those of up to 24 bits may stand in the upper ones of 32.
PCMFormat storedFormat(WaveFormat const& format) {
    constexpr unsigned wholeWord = 4;
    return {format.channels, format.sampleBytes == wholeWord ? 8 * wholeWord : bitsOf(format)};
}

/// As many channels as SMPTE 302M has room for: an odd one is put beside a silent one.
unsigned evenChannels(WaveFormat const& format) { return (format.channels + 1u) / 2 * 2; }

ConvertedFile::Source toEvenChannels(ConvertedFile::Source source, WaveFormat const& format) {
    PCMFormat const from = storedFormat(format), to{evenChannels(format), bitsOf(format)};
    std::vector<unsigned> channels;
    for (unsigned i = 0; i < to.channels; ++i)
        channels.push_back(i < from.channels ? i : unsigned{Essence::Converters::PCMConverter::silence});
    return std::make_shared<Essence::Converters::PCMConverter>(std::move(source), from, to, channels);
}

AES3Info infoOf(WaveFormat const& format) {
    return {evenChannels(format), bitsOf(format), {static_cast<int>(format.samplingRate), 1}};
}

using Statuses = std::vector<Essence::AES3::ChannelStatus>;

/// A block of zeros alone says nothing.
bool found(Statuses const& statuses, unsigned channel) {
    return channel < statuses.size() && !(statuses[channel] == Essence::AES3::ChannelStatus());
}

/// The time of an instant in a transport stream.
std::uint64_t ticksAt(std::uint64_t instant) {
    constexpr std::uint64_t clockRate = 90000, samplingRate = 48000;
    return instant / samplingRate * clockRate + instant % samplingRate * clockRate / samplingRate;
}

/// SMPTE 302M packets in a transport stream, one a picture.
class TransportFile : public ConvertedFile {
public:
    TransportFile(OutputNames names, WaveFormat const& format, EditRate const& rate, Statuses const& statuses)
        : ConvertedFile(std::move(names),
                        [&](Source source) { return toEvenChannels(std::move(source), format); }),
          packets_(infoOf(format), rate),
          transport_(file().sink()),
          instantSize_(packets_.packing().pcmSize()) {
        for (unsigned channel = 0; channel < evenChannels(format); ++channel)
            packets_.channelStatus(channel, found(statuses, channel) ? statuses[channel]
                                                                     : packets_.info().channelStatus());
    }

private:
    void take(DataIO::Chain made) override {
        waiting_.append(std::move(made));
        while (waiting_.size() >= packets_.nextSampleCount() * instantSize_)
            writePacket(packets_.nextSampleCount() * instantSize_);
    }
    void end() override {
        if (waiting_.size() >= instantSize_)
            writePacket(waiting_.size() - waiting_.size() % instantSize_);
    }
    void writePacket(std::uint64_t size) {
        transport_.write(packets_.packet(waiting_.splitFront(size)), ticksAt(written_));
        written_ += size / instantSize_;
    }

    Essence::AES3::S302M::PacketWriter packets_;
    Essence::MPEG::TransportWriter transport_;
    std::size_t instantSize_;
    std::uint64_t written_ = 0; // instants
    DataIO::Chain waiting_;
};

/// SMPTE 302M packets that come as such, in a transport stream.
class PacketTransport : public TrackOutput {
public:
    explicit PacketTransport(OutputNames names)
        : names_(std::move(names)), file_(names_.file(), names_.options), transport_(file_.sink()) {}

    void beginUnit(std::int64_t) override { unit_.clear(); }
    void take(DataIO::Chain const& data) override {
        if (unit_.size() < largestUnit)
            unit_.append(data);
    }
    void endUnit() override {
        PacketCutter packets(
            std::make_shared<DataIO::BufferSliceSource>(packetsOf(std::exchange(unit_, {}))));
        while (auto const packet = packets.next()) {
            transport_.write(packet->bytes.contiguous(), ticksAt(written_));
            written_ += packet->instants;
        }
    }
    void complete() override {
        file_.complete();
        names_.whenComplete(file_);
    }
    void abandon(std::vector<std::string>& parts) override {
        parts.push_back(file_.partName());
        file_.abandon();
    }

private:
    static constexpr std::uint64_t largestUnit = std::uint64_t{4} << 20;

    OutputNames names_;
    OutputFile file_;
    Essence::MPEG::TransportWriter transport_;
    DataIO::Chain unit_;
    std::uint64_t written_ = 0; // instants
};

/// The words of SMPTE 331M elements as they stand in the file, behind each other.
class ElementWords : public TrackOutput {
public:
    explicit ElementWords(std::unique_ptr<TrackOutput> file) : file_(std::move(file)) {}

    void beginUnit(std::int64_t) override { head_ = headSize; }
    void take(DataIO::Chain const& data) override {
        std::uint64_t const cut = std::min(head_, data.size());
        head_ -= cut;
        file_->take(data.part(cut, data.size() - cut));
    }
    void complete() override { file_->complete(); }
    void abandon(std::vector<std::string>& parts) override { file_->abandon(parts); }

private:
    static constexpr std::uint64_t headSize = 4;

    std::unique_ptr<TrackOutput> file_;
    std::uint64_t head_ = headSize; // what is left of it
};

/// One a picture: the edit rate of the essence, or of pictures usual where that is of samples.
EditRate packetRateOf(ExtractTrack const& track) {
    constexpr EditRate usual{25, 1};
    constexpr double slowest = 23, fastest = 61;
    auto const rate = track.track != nullptr ? track.track->editRate : EditRate{};
    return rate.isKnown() && rate.toDouble() > slowest && rate.toDouble() < fastest ? rate : usual;
}

/// Why samples cannot be written as AES3 has them; empty when they can.
std::string refusalOf(WaveFormat const& format, bool is302m) {
    constexpr unsigned mostChannels = 8, onlyRate = 48000;
    if (bitsOf(format) == 0)
        return "has samples of " + std::to_string(format.validBits) + " bits; AES3 has 16 to 24";
    if (is302m && format.samplingRate != onlyRate)
        return "has " + std::to_string(format.samplingRate) + " Hz; SMPTE 302M has 48000";
    if (is302m && format.channels > mostChannels)
        return "has " + std::to_string(format.channels) + " channels; SMPTE 302M has 8 at most";
    return {};
}

class SoundConversion : public TrackConversion {
public:
    explicit SoundConversion(std::string kind) : kind_(std::move(kind)) {}

    std::string choose(ExtractTrack& track, GenericContainer::Element const& element) override {
        auto& form = track.form;
        statuses_[track.name] = carriedStatuses(form, element);
        if (track.kind() != 'a')
            return "is no sound, which --as " + kind_ + " takes";
        if (form.isPackets() && kind_ == "302m") {
            form.suffix = "ts";
            return {};
        }
        if (form.isPackets())
            form = {Shape::PacketSamples, kind_, form.wave};
        if (!form.isWave())
            return "is no uncompressed sound, which --as " + kind_ + " takes";
        if (kind_ == "aes3" && form.shape == Shape::EightChannels) {
            form = {Shape::Stream, kind_, form.wave};
            return {};
        }
        bool const is302m = kind_ == "302m";
        if (is302m || kind_ == "aes3")
            if (auto const why = refusalOf(form.wave, is302m); !why.empty())
                return why;
        form.suffix = is302m ? "ts" : kind_;
        return {};
    }

    std::unique_ptr<TrackOutput> open(ExtractTrack const& track, OutputNames const& names) override {
        if (kind_ == "wav")
            return nullptr; // as without a conversion
        if (track.form.shape == Shape::Stream && kind_ == "302m")
            return std::make_unique<PacketTransport>(names);
        if (track.form.shape == Shape::Stream)
            return std::make_unique<ElementWords>(makeStreamOutput(names));
        return makeSoundOutput(track.form, makeFile(track, names), 0);
    }

private:
    std::shared_ptr<WaveOutput> makeFile(ExtractTrack const& track, OutputNames const& names) const {
        WaveFormat const& format = track.form.wave;
        auto statuses = statuses_.at(track.name);
        if (statuses.empty() && track.track != nullptr)
            statuses = channelStatuses(*track.track);
        if (kind_ == "pcm")
            return std::make_shared<PcmFile>(names);
        if (kind_ == "302m")
            return std::make_shared<TransportFile>(names, format, packetRateOf(track), statuses);
        return std::make_shared<ConvertedFile>(names, [&](ConvertedFile::Source source) {
            return makeWords(std::move(source), format, statuses);
        });
    }

    /// With the channel status that the file has, else one that is made where it can say the rate.
    static ConvertedFile::Source makeWords(ConvertedFile::Source source, WaveFormat const& format,
                                           Statuses const& statuses) {
        constexpr unsigned wordSize = 4;
        AES3Info info = infoOf(format);
        info.channels = format.channels;
        std::optional<Essence::AES3::ChannelStatus> status;
        if (Essence::AES3::ChannelStatus::hasCode(info.samplingRate))
            status = info.channelStatus();
        PCMFormat const from = storedFormat(format), to{format.channels, info.bitsPerSample};
        if (from.sampleSize() != to.sampleSize())
            source = std::make_shared<Essence::Converters::PCMConverter>(std::move(source), from, to);
        auto words =
            std::make_shared<Essence::Converters::PCMToAES3>(std::move(source), to, wordSize, status);
        for (unsigned channel = 0; channel < format.channels; ++channel)
            if (found(statuses, channel))
                words->channelStatus(channel, statuses[channel]);
        return words;
    }

    std::string kind_;
    std::map<std::string, Statuses> statuses_; ///< in the essence, by track
};

} // namespace

std::shared_ptr<TrackConversion> makeConversion(std::string const& kind) {
    bool const isData = kind == "anc-json" || kind == "vbi-json" || kind == "captions";
    return isData ? makeAncillaryConversion(kind) : std::make_shared<SoundConversion>(kind);
}

} // namespace Zelm
