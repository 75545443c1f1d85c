/// Analyzers that wrap VBI lines and ancillary data packets by SMPTE 436M, an element a frame. The host gives
/// the packets.
#pragma once

#include "MXF/Zelm/GenericContainer/EssenceAnalyzer.h"
#include "MXF/Zelm/GenericContainer/S436M/FrameElement.h"

namespace MXF::Zelm::Metadata::Structural {
class GenericDataEssenceDescriptor;
class TimelineTrack;
} // namespace MXF::Zelm::Metadata::Structural

namespace MXF::Zelm::GenericContainer::S436M {

/// Where an analyzer has its packets from: a class of the host's.
class MXFZELM_EXPORT PacketProvider {
public:
    virtual ~PacketProvider();

    /// Appends the packets of the next frame to `packets`, which is empty; a frame may be without any. False
    /// when there is no further frame.
    virtual bool nextFrame(Templates::vector<StoredPacket>& packets) = 0;
};

using PacketProviderPtr = Templates::SharedPtr<PacketProvider, Templates::LockedCounter>;

/// What the two kinds have in common. Both may stand in one container, one of each.
class MXFZELM_EXPORT PacketAnalyzer : public DataAnalyzer {
public:
    ~PacketAnalyzer() override;

    Templates::Rational<int> editRate() const override { return editRate_; }
    void editRate(Templates::Rational<int> const& rate) override { editRate_ = rate; }

    /// Nothing is passed over: there are no bytes in between.
    std::uint64_t maximumToSkip() const override { return 0; }
    void maximumToSkip(std::uint64_t) override {}

    /// Asks for the packets of the first frame. False without an edit rate above 0.
    bool preload() override;

    /// Makes the track with its descriptor, of `trackNumber` as `proposeKey` changes it; on another call sets
    /// the number. False for no package. Throws what Metadata::Structural::addEssenceTrack throws.
    bool setMetadata(Metadata::PartitionMetadata& metadata, Metadata::Structural::SourcePackage* package,
                     unsigned int trackNumber, unsigned int trackID) override;

    /// Asks for the packets of the frame behind, so that `done` is known. Throws what the provider throws,
    /// and what `writeFrameElement` throws; Exceptions::InvalidLength for an element beyond
    /// `boundedEditUnitSize`.
    bool nextEditUnit(EditUnit& unit) override;

    /// Sets the durations of the track and its descriptor.
    bool finalize() override;

    Types::UniversalLabel universalLabel() const override;

    /// Elements differ in size, unless they are bounded.
    bool isCBE() const override { return boundedSize_ != 0; }
    void boundedEditUnitSize(int bytes) override;
    unsigned int boundedEditUnitSize() const override { return boundedSize_; }

    bool containsTemporalDependencies() const override { return false; }
    Utils::TimeCode currentTimeCode() const override { return {}; }
    unsigned char itemTypeIdentifier() const override;
    unsigned char essenceElementType() const override;
    unsigned int requiredKAGSize() const override { return 1; }
    bool done() const override { return isStarted_ && !hasNext_; }

    /// Bytes 13 and 15 become 01, as the register of keys has them for these elements alone.
    KLV::Key proposeKey(KLV::Key const& key) const override;

protected:
    /// Throws Exceptions::InvalidValue when there is no provider.
    PacketAnalyzer(ElementKind kind, PacketProviderPtr provider);

private:
    bool isOver() const;
    void start();
    void fetch();
    Metadata::Structural::GenericDataEssenceDescriptor&
    createDescriptor(Metadata::PartitionMetadata& metadata) const;

    ElementKind kind_;
    PacketProviderPtr provider_;
    Templates::Rational<int> editRate_ = {};
    unsigned int boundedSize_ = 0;
    std::int64_t frames_ = 0; // given so far
    bool isStarted_ = false;
    bool hasNext_ = false;
    Templates::vector<StoredPacket> packets_;              // of the next frame
    Metadata::Structural::TimelineTrack* track_ = nullptr; // owned by the metadata
    Metadata::Structural::GenericDataEssenceDescriptor* descriptor_ = nullptr;
};

/// Lines of the vertical blanking interval.
class MXFZELM_EXPORT VBIAnalyzer : public PacketAnalyzer {
public:
    explicit VBIAnalyzer(PacketProviderPtr provider);
    ~VBIAnalyzer() override;
};

/// Ancillary data packets.
class MXFZELM_EXPORT ANCAnalyzer : public PacketAnalyzer {
public:
    explicit ANCAnalyzer(PacketProviderPtr provider);
    ~ANCAnalyzer() override;
};

} // namespace MXF::Zelm::GenericContainer::S436M
