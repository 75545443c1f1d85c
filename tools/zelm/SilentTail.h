/// Samples of a sound, and silence behind them.
#pragma once

#include <MXF/Zelm/DataIO/SliceSource.h>
#include <MXF/Zelm/Essence/Wave/WaveFormat.h>
#include <MXF/Zelm/Templates/Memory.h>
#include <MXF/Zelm/Utils/SampleCadence.h>

#include <optional>

namespace Zelm {

class SilentTail : public MXF::Zelm::DataIO::SliceSource {
public:
    /// How far the silence goes.
    enum class Extent {
        Endless,
        LastUnit ///< it fills up the edit unit that the sound ends in
    };

    /// `cadence` tells how many instants edit units have; absent for single ones, which need no filling.
    SilentTail(MXF::Zelm::Templates::SharedPtr<MXF::Zelm::DataIO::SliceSource> samples,
               MXF::Zelm::Essence::Wave::WaveFormat const& format,
               std::optional<MXF::Zelm::Utils::SampleCadence> cadence, Extent extent);

    std::uint64_t absoluteOffset() const override { return given_; }
    bool endOfStream() const override;
    std::uint64_t read(std::uint64_t size, MXF::Zelm::DataIO::Chain& chain) override;
    std::uint64_t skip(std::uint64_t size) override;

    /// To be called before anything is read.
    void extent(Extent extent) { extent_ = extent; }

    /// Bytes of the sound that were read, without silence.
    std::uint64_t soundBytes() const { return given_ - silence_; }

    /// All of the sound was read.
    bool isExhausted() const { return samples_->endOfStream(); }

private:
    std::uint64_t silenceWanted(std::uint64_t size) const;

    MXF::Zelm::Templates::SharedPtr<MXF::Zelm::DataIO::SliceSource> samples_;
    MXF::Zelm::Essence::Wave::WaveFormat format_;
    std::optional<MXF::Zelm::Utils::SampleCadence> cadence_;
    Extent extent_;
    std::uint64_t given_ = 0;   // bytes
    std::uint64_t silence_ = 0; // the same
};

} // namespace Zelm
