/// The analyzer of a system item (SMPTE 385M): for each content package a system metadata pack with the next
/// timecode, and a package metadata set.
#pragma once

#include "MXF/Zelm/GenericContainer/EssenceAnalyzer.h"
#include "MXF/Zelm/GenericContainer/SystemItemMetadataProvider.h"
#include "MXF/Zelm/GenericContainer/SystemMetadataPack.h"
#include "MXF/Zelm/GenericContainer/TimeCodeProvider.h"

namespace MXF::Zelm::GenericContainer::Multiplexer {

/// Gives as many system items as asked for and never keeps a container going: `done` is always true.
class MXFZELM_EXPORT SystemItemGenerator : public SystemAnalyzer {
public:
    using TimeCodeProviderPtr = Templates::SharedPtr<TimeCodeProvider, Templates::LockedCounter>;
    using MetadataProviderPtr = Templates::SharedPtr<SystemItemMetadataProvider, Templates::LockedCounter>;

    /// Timecode counts on from `start`, in frames of the package rate, which is in content packages a second.
    /// Undefined for no timecode.
    SystemItemGenerator(Templates::Rational<int> const& packageRate, Utils::TimeCode const& start,
                        Types::UniversalLabel const& essenceContainer);
    SystemItemGenerator(Templates::Rational<int> const& packageRate, TimeCodeProviderPtr timecodes,
                        Types::UniversalLabel const& essenceContainer);
    ~SystemItemGenerator() override;

    /// What the package metadata set holds; null, as at first, for an empty set. To be called before
    /// `preload`.
    void metadataProvider(MetadataProviderPtr provider) { metadata_ = std::move(provider); }

    /// Which items stand behind the system item. The multiplexer tells.
    void items(bool picture, bool sound, bool data);

    /// The pack of the next system item, for a host that knows more of it.
    SystemMetadataPack& pack() { return pack_; }

    Templates::Rational<int> editRate() const override { return packageRate_; }

    /// Passed over: the rate is that of the constructor.
    void editRate(Templates::Rational<int> const& rate) override;
    std::uint64_t maximumToSkip() const override { return 0; }
    void maximumToSkip(std::uint64_t /*bytes*/) override {}

    /// Takes the first timecode, which `currentTimeCode` then tells.
    bool preload() override;
    bool setMetadata(Metadata::PartitionMetadata& metadata, Metadata::Structural::SourcePackage* package,
                     unsigned int trackNumber, unsigned int trackID) override;
    bool nextEditUnit(EditUnit& unit) override;
    bool finalize() override { return true; }
    Types::UniversalLabel universalLabel() const override { return label_; }
    bool isCBE() const override { return true; }
    void boundedEditUnitSize(int /*bytes*/) override {}
    unsigned int boundedEditUnitSize() const override;
    bool containsTemporalDependencies() const override { return false; }

    /// The one stamped last, or to be stamped first.
    Utils::TimeCode currentTimeCode() const override { return pack_.userTimecode(); }
    unsigned char itemTypeIdentifier() const override { return 0x04; }
    unsigned char essenceElementType() const override { return 0; }
    unsigned int requiredKAGSize() const override { return 1; }
    bool done() const override { return true; }

private:
    void takeTimeCode();

    Templates::Rational<int> packageRate_;
    TimeCodeProviderPtr timecodes_;
    MetadataProviderPtr metadata_;
    Types::UniversalLabel label_;
    SystemMetadataPack pack_;
    std::shared_ptr<Utils::TimeCodeExtended const> timecode_;
    bool isTimeCodeTaken_ = false; // the first one, before the first pack
};

} // namespace MXF::Zelm::GenericContainer::Multiplexer
