/// SMPTE 302M packets as they are, with their validity, user and channel status bits, wrapped by frames.
///
/// SMPTE 381M has labels and keys for the streams of MPEG-2 systems by their stream_id, and 302M packets
/// travel in private stream 1 there, but it does not say what the elements of such a stream hold. The reading
/// taken here is that of an elementary stream, which has no PES headers:
///
///     element of an edit unit    packet | packet | …      each a header of 4 bytes and its payload
#pragma once

#include "MXF/Zelm/Essence/AES3/S302M/PacketCutter.h"
#include "MXF/Zelm/GenericContainer/Analyzers/BasicAnalyzer.h"
#include "MXF/Zelm/Utils/SampleCadence.h"

#include <optional>

namespace MXF::Zelm::GenericContainer {

/// The essence container of 302M packets that are wrapped by frames.
MXFZELM_EXPORT Types::UniversalLabel s302mLabel();

/// An edit unit has the packets whose middle lies within it, so that packets of one picture each stay one an
/// edit unit whatever cadence they follow. Its descriptor tells of the samples in the packets.
class MXFZELM_EXPORT S302MAnalyzer : public BasicAnalyzer<SoundAnalyzer> {
public:
    /// The first packet of `packets` begins `start` instants behind the first edit unit; below 0 it begins
    /// before, and packets whose middle lies there are left out.
    explicit S302MAnalyzer(Templates::SharedPtr<DataIO::SliceSource> packets, std::int64_t start = 0);
    ~S302MAnalyzer() override;

    /// Channels, bits and rate; zeros before `preload`.
    Essence::AES3::AES3Info const& info() const { return packets_.info(); }

    void editRate(Templates::Rational<int> const& rate) override;
    using BasicAnalyzer::editRate;

    /// False when there is no packet. Throws Exceptions::InvalidValue for an edit rate at which edit units
    /// would be without one: packets are longer than they, or begin behind the first.
    bool preload() override;

    Types::UniversalLabel universalLabel() const override { return s302mLabel(); }
    unsigned char itemTypeIdentifier() const override;
    unsigned char essenceElementType() const override;

    /// Also what is no packet, with which the sound ends.
    std::string fault() const override { return fault_; }

protected:
    Metadata::Structural::FileDescriptor& describe(Metadata::PartitionMetadata& metadata,
                                                   Metadata::Structural::FileDescriptor* present) override;
    bool hasMore() const override { return ahead_.has_value(); }

    /// Throws Exceptions::InvalidStructure when the next packet is not to begin in this edit unit.
    std::uint64_t read(EditUnit& unit) override;

private:
    void advance();
    std::int64_t middle() const { return begin_ + ahead_->instants / 2; }
    bool belongsTo(std::uint64_t unit) const;
    void requireFitting() const;

    Essence::AES3::S302M::PacketCutter packets_;
    std::optional<Essence::AES3::S302M::Packet> ahead_; // none at the end
    std::int64_t begin_;                                // of the packet ahead, in instants
    std::optional<Utils::SampleCadence> cadence_;
    std::string fault_;
    bool isLoaded_ = false;
};

} // namespace MXF::Zelm::GenericContainer
