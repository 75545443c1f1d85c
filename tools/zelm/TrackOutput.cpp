#include "TrackOutput.h"

#include "PacketUnits.h"

#include <MXF/Zelm/DataIO/BufferSliceSource.h>
#include <MXF/Zelm/Essence/AES3/EightChannelElement.h>
#include <MXF/Zelm/Essence/AES3/S302M/Source.h>
#include <MXF/Zelm/Essence/Converters/SampleConverters.h>
#include <MXF/Zelm/Essence/Wave/WaveWriter.h>
#include <MXF/Zelm/Exceptions/Exceptions.h>

#include <cstdio>

namespace Zelm {

using namespace MXF::Zelm;
using Essence::Wave::WaveWriter;

namespace {

/// Sounds that are mixed may stand this far from each other in the file, in bytes.
constexpr std::uint64_t mostWaiting = std::uint64_t{64} << 20;

/// More than any element of eight AES3 channels has.
constexpr std::uint64_t largestSoundElement = std::uint64_t{4} << 20;

/// One file.
class StreamOutput : public TrackOutput {
public:
    explicit StreamOutput(OutputNames names)
        : names_(std::move(names)), file_(names_.file(), names_.options) {}

    void take(DataIO::Chain const& data) override { file_.write(data); }
    void complete() override {
        file_.complete();
        names_.whenComplete(file_);
    }
    void abandon(std::vector<std::string>& parts) override {
        parts.push_back(file_.partName());
        file_.abandon();
    }

private:
    OutputNames names_;
    OutputFile file_;
};

/// A file for each edit unit.
class FramesOutput : public TrackOutput {
public:
    explicit FramesOutput(OutputNames names) : names_(std::move(names)) {}

    void beginUnit(std::int64_t position) override {
        file_ = std::make_unique<OutputFile>(names_.frame(position), names_.options);
    }
    void take(DataIO::Chain const& data) override { file_->write(data); }
    void endUnit() override {
        file_->complete();
        names_.whenComplete(*file_);
        file_.reset();
    }
    void complete() override {}
    void abandon(std::vector<std::string>& parts) override {
        if (!file_)
            return;
        parts.push_back(file_->partName());
        file_->abandon();
        file_.reset();
    }

private:
    OutputNames names_;
    std::unique_ptr<OutputFile> file_;
};

class SingleWaveOutput : public WaveOutput {
public:
    SingleWaveOutput(OutputNames names, WaveSetup const& setup)
        : names_(std::move(names)),
          file_(names_.file(), names_.options),
          writer_(file_.sink(), setup.format, setup.broadcast, setup.dataBytes, setup.chunks) {}

    void add(std::size_t, DataIO::Chain samples) override { writer_.write(samples); }
    void complete() override {
        writer_.finish();
        file_.complete();
        names_.whenComplete(file_);
    }
    void abandon(std::vector<std::string>& parts) override {
        parts.push_back(file_.partName());
        writer_.finish();
        file_.abandon();
    }

protected:
    WaveWriter& writer() { return writer_; }

private:
    OutputNames names_;
    OutputFile file_;
    WaveWriter writer_;
};

class MixOutput : public SingleWaveOutput {
public:
    MixOutput(OutputNames names, WaveSetup const& setup, std::vector<std::uint32_t> instantSizes)
        : SingleWaveOutput(std::move(names), setup),
          interleaver_(std::move(instantSizes)),
          silence_(setup.format.sampleBytes == 1 ? 0x80 : 0x00) {}

    void add(std::size_t sound, DataIO::Chain samples) override {
        interleaver_.add(sound, std::move(samples));
        writeReady();
        if (interleaver_.waiting() > mostWaiting)
            throw Exceptions::InvalidStructure(
                "the sounds stand too far from each other to be mixed: extract them without --mix");
    }
    void complete() override {
        interleaver_.fill(silence_);
        writeReady();
        SingleWaveOutput::complete();
    }

private:
    void writeReady() {
        scratch_.clear();
        interleaver_.takeInto(scratch_);
        writer().write(scratch_.data(), scratch_.size());
    }

    Essence::Converters::Interleaver interleaver_;
    unsigned char silence_;
    std::vector<unsigned char> scratch_;
};

/// Samples as they are.
class SoundOutput : public TrackOutput {
public:
    SoundOutput(std::shared_ptr<WaveOutput> wave, std::size_t sound)
        : wave_(std::move(wave)), sound_(sound) {}

    void take(DataIO::Chain const& data) override { put(data); }
    void complete() override {
        if (sound_ == 0)
            wave_->complete();
    }
    void abandon(std::vector<std::string>& parts) override {
        if (sound_ == 0)
            wave_->abandon(parts);
    }

protected:
    void put(DataIO::Chain data) { wave_->add(sound_, std::move(data)); }
    void put(std::vector<unsigned char> samples) { put(DataIO::Slice::adopt(std::move(samples))); }

private:
    std::shared_ptr<WaveOutput> wave_;
    std::size_t sound_;
};

/// AES3 samples with something else in their lowest bits; they may be cut anywhere.
class AES3Output : public SoundOutput {
public:
    using SoundOutput::SoundOutput;

    void take(DataIO::Chain const& data) override {
        constexpr std::uint64_t sampleBytes = 3;
        waiting_.append(data);
        std::vector<unsigned char> samples;
        Essence::Converters::appendWithoutAuxiliaryBits(
            waiting_.splitFront(waiting_.size() - waiting_.size() % sampleBytes), samples);
        put(std::move(samples));
    }

private:
    DataIO::Chain waiting_;
};

class EightChannelOutput : public SoundOutput {
public:
    EightChannelOutput(EssenceForm const& form, std::shared_ptr<WaveOutput> wave, std::size_t sound)
        : SoundOutput(std::move(wave), sound), format_(form.wave) {}

    void beginUnit(std::int64_t) override { element_.clear(); }
    void take(DataIO::Chain const& data) override {
        if (element_.size() < largestSoundElement)
            element_.append(data);
    }
    void endUnit() override {
        std::vector<unsigned char> samples;
        Essence::AES3::EightChannelElement(element_).appendSamples(format_.channels, format_.sampleBytes,
                                                                   samples);
        element_.clear();
        put(std::move(samples));
    }

private:
    Essence::Wave::WaveFormat format_;
    DataIO::Chain element_;
};

/// SMPTE 302M packets, whole ones in each edit unit.
class PacketOutput : public SoundOutput {
public:
    PacketOutput(EssenceForm const& form, std::shared_ptr<WaveOutput> wave, std::size_t sound)
        : SoundOutput(std::move(wave), sound), format_(form.wave) {}

    void beginUnit(std::int64_t) override { packets_.clear(); }
    void take(DataIO::Chain const& data) override {
        if (packets_.size() < largestSoundElement)
            packets_.append(data);
    }
    void endUnit() override {
        using Essence::AES3::S302M::Source;
        Source source(std::make_shared<DataIO::BufferSliceSource>(packetsOf(std::move(packets_))),
                      Source::TwentyBits::In24Bits);
        packets_.clear();
        DataIO::Chain samples;
        source.read(~std::uint64_t{0}, samples);
        if (!samples.empty() && source.sampleSize() != format_.blockAlign())
            throw Exceptions::InvalidStructure(
                "packets of SMPTE 302M with " + std::to_string(source.info().channels) + " channels of " +
                std::to_string(source.info().bitsPerSample) + " bits, the first were of another format");
        put(std::move(samples));
    }

private:
    Essence::Wave::WaveFormat format_;
    DataIO::Chain packets_;
};

} // namespace

std::string OutputNames::file() const {
    return toStandardOutput ? OutputFile::standardOutput : base + "." + suffix;
}

std::string OutputNames::frame(std::int64_t position) const {
    if (toStandardOutput)
        return OutputFile::standardOutput;
    char number[32];
    std::snprintf(number, sizeof number, "_%08lld.", static_cast<long long>(position));
    return base + number + suffix;
}

std::unique_ptr<TrackOutput> makeStreamOutput(OutputNames names) {
    return std::make_unique<StreamOutput>(std::move(names));
}

std::unique_ptr<TrackOutput> makeFramesOutput(OutputNames names) {
    return std::make_unique<FramesOutput>(std::move(names));
}

std::shared_ptr<WaveOutput> makeWaveOutput(OutputNames names, WaveSetup const& setup) {
    return std::make_shared<SingleWaveOutput>(std::move(names), setup);
}

std::shared_ptr<WaveOutput> makeMixOutput(OutputNames names, WaveSetup const& setup,
                                          std::vector<unsigned> const& channels) {
    std::vector<std::uint32_t> instantSizes;
    for (unsigned const count : channels)
        instantSizes.push_back(std::uint32_t{count} * setup.format.sampleBytes);
    return std::make_shared<MixOutput>(std::move(names), setup, std::move(instantSizes));
}

std::unique_ptr<TrackOutput> makeSoundOutput(EssenceForm const& form, std::shared_ptr<WaveOutput> wave,
                                             std::size_t sound) {
    switch (form.shape) {
    case EssenceForm::Shape::EightChannels:
        return std::make_unique<EightChannelOutput>(form, std::move(wave), sound);
    case EssenceForm::Shape::AES3Samples:
        return std::make_unique<AES3Output>(std::move(wave), sound);
    case EssenceForm::Shape::PacketSamples:
        return std::make_unique<PacketOutput>(form, std::move(wave), sound);
    default:
        return std::make_unique<SoundOutput>(std::move(wave), sound);
    }
}

} // namespace Zelm
