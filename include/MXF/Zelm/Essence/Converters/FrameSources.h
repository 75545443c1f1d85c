/// PCM as a stream of packets or elements, one for each picture.
#pragma once

#include "MXF/Zelm/Essence/AES3/EightChannelWriter.h"
#include "MXF/Zelm/Essence/AES3/S302M/PacketWriter.h"
#include "MXF/Zelm/Essence/PieceSource.h"
#include "MXF/Zelm/Templates/Memory.h"

namespace MXF::Zelm::Essence::Converters {

/// SMPTE 302M packets, one behind the other; AES3::S302M::Source is the way back. The last packet may have
/// fewer samples. Bytes behind the last whole instant are left out.
class MXFZELM_EXPORT PCMToS302M : public PieceSource {
public:
    /// Reads PCM as `writer` takes it.
    PCMToS302M(Templates::SharedPtr<DataIO::SliceSource> source, AES3::S302M::PacketWriter writer);
    ~PCMToS302M() override;

    /// The writer, to set channel status on the way.
    AES3::S302M::PacketWriter& writer() { return writer_; }

private:
    bool produce(DataIO::Chain& chain) override;
    bool nothingLeft() const override { return source_->endOfStream(); }

    Templates::SharedPtr<DataIO::SliceSource> source_;
    AES3::S302M::PacketWriter writer_;
};

/// Values of SMPTE 331M elements, one behind the other; S331MToPCM is the way back. The last element may have
/// fewer samples. Bytes behind the last whole instant are left out.
class MXFZELM_EXPORT PCMToS331M : public PieceSource {
public:
    /// Reads PCM as `writer` takes it.
    PCMToS331M(Templates::SharedPtr<DataIO::SliceSource> source, AES3::EightChannelWriter writer);
    ~PCMToS331M() override;

    AES3::EightChannelWriter& writer() { return writer_; }

private:
    bool produce(DataIO::Chain& chain) override;
    bool nothingLeft() const override { return source_->endOfStream(); }

    Templates::SharedPtr<DataIO::SliceSource> source_;
    AES3::EightChannelWriter writer_;
};

/// PCM out of values of SMPTE 331M elements, one behind the other.
class MXFZELM_EXPORT S331MToPCM : public PieceSource {
public:
    /// Gives `format`, the first 1 to 8 channels in 16, 20 or 24 bits, little-endian; lower bits are cut off,
    /// and channels that an element does not flag, where it flags any, are silent. Throws
    /// Exceptions::InvalidValue for another format. Reading throws Exceptions::InvalidLength, with its
    /// offset, for an element that is cut off.
    S331MToPCM(Templates::SharedPtr<DataIO::SliceSource> source, PCMFormat const& format);
    ~S331MToPCM() override;

private:
    bool produce(DataIO::Chain& chain) override;
    bool nothingLeft() const override { return source_->endOfStream(); }
    DataIO::Slice readExactly(std::uint64_t size, std::uint64_t start);

    Templates::SharedPtr<DataIO::SliceSource> source_;
    PCMFormat format_;
    DataIO::Memory::MemoryBlockFactory blocks_;
};

} // namespace MXF::Zelm::Essence::Converters
