/// An essence stream made up by a test: edit units of chosen sizes whose bytes tell where they belong.
#pragma once

#include "MXF/Zelm/GenericContainer/EssenceAnalyzer.h"
#include "MXF/Zelm/Metadata/Structural/Building.h"
#include "MXF/Zelm/Metadata/Structural/DataDescriptors.h"
#include "MXF/Zelm/Metadata/Structural/GenericPictureEssenceDescriptor.h"
#include "MXF/Zelm/Metadata/Structural/SoundDescriptors.h"
#include "support/Bytes.h"

#include <type_traits>

namespace MXF::Zelm::Test {

/// What a made-up stream is like; a test names what matters to it.
struct FakeEssence {
    /// Of edit unit i: sizes[i % sizes.size()] bytes.
    std::vector<std::size_t> sizes = {100};
    std::size_t count = 3; ///< edit units
    Templates::Rational<int> rate = {25, 1};
    bool hasRate = true;      ///< of its own; else it takes the one that is set
    unsigned boundedSize = 0; ///< above 0 for a constant size
    unsigned kag = 1;
    bool isReordered = false;
    unsigned char itemType = 0x15;
    unsigned char elementType = 0x05;
    unsigned char tag = 0xAA; ///< the bytes of all edit units but for their number
    bool isValid = true;
    KLV::Key label = {};

    /// Of edit unit i, where there is one.
    std::vector<GenericContainer::EditUnitIndex> index = {};
    std::vector<Utils::TimeCode> timecodes = {};

    /// Seconds of edit unit i; 1/rate where there is none.
    std::vector<Templates::Rational<std::int64_t>> durations = {};
};

/// The bytes of edit unit `unit`: its number modulo 256, then the tag.
inline Bytes fakeUnit(FakeEssence const& essence, std::size_t unit) {
    Bytes bytes = repeated(essence.sizes[unit % essence.sizes.size()], essence.tag);
    if (!bytes.empty())
        bytes.front() = static_cast<unsigned char>(unit);
    return bytes;
}

/// `Kind` is one of the five kinds of analyzers. Describes itself by a track with a plain descriptor.
template <class Kind>
class FakeAnalyzer : public Kind {
public:
    explicit FakeAnalyzer(FakeEssence essence = {}) : essence_(std::move(essence)) {}

    Templates::Rational<int> editRate() const override { return essence_.rate; }
    void editRate(Templates::Rational<int> const& rate) override {
        if (!essence_.hasRate)
            essence_.rate = rate;
    }
    std::uint64_t maximumToSkip() const override { return 0; }
    void maximumToSkip(std::uint64_t) override {}
    bool preload() override { return essence_.isValid; }
    bool setMetadata(Metadata::PartitionMetadata& metadata, Metadata::Structural::SourcePackage* package,
                     unsigned trackNumber, unsigned trackID) override {
        using namespace Metadata::Structural;
        auto& descriptor = createDescriptor(metadata);
        descriptor.essenceContainer(essence_.label);
        descriptor.sampleRate(Types::Rational(essence_.rate));
        addEssenceTrack(metadata, *package, descriptor,
                        {.dataDefinition = dataDefinition(),
                         .editRate = essence_.rate,
                         .trackNumber = trackNumber,
                         .trackID = trackID});
        return true;
    }
    bool nextEditUnit(GenericContainer::EditUnit& unit) override {
        unit.clear();
        if (done())
            return false;
        auto bytes = fakeUnit(essence_, given_);
        unit.data.append(DataIO::Slice::adopt(std::move(bytes)));
        unit.duration =
            given_ < essence_.durations.size()
                ? essence_.durations[given_]
                : Templates::Rational<std::int64_t>{essence_.rate.denominator, essence_.rate.numerator};
        if (given_ < essence_.index.size())
            unit.index = essence_.index[given_];
        if (given_ < essence_.timecodes.size() && essence_.timecodes[given_].isDefined())
            unit.timecode = std::make_shared<Utils::TimeCode>(essence_.timecodes[given_]);
        ++given_;
        return true;
    }
    bool finalize() override { return isFinalized_ = true; }
    Types::UniversalLabel universalLabel() const override { return essence_.label; }
    bool isCBE() const override { return essence_.boundedSize != 0; }
    void boundedEditUnitSize(int bytes) override { essence_.boundedSize = static_cast<unsigned>(bytes); }
    unsigned boundedEditUnitSize() const override { return essence_.boundedSize; }
    bool containsTemporalDependencies() const override { return essence_.isReordered; }
    Utils::TimeCode currentTimeCode() const override { return {}; }
    unsigned char itemTypeIdentifier() const override { return essence_.itemType; }
    unsigned char essenceElementType() const override { return essence_.elementType; }
    unsigned requiredKAGSize() const override { return essence_.kag; }
    bool done() const override { return given_ >= essence_.count; }

    bool isFinalized() const { return isFinalized_; }

private:
    static constexpr bool isPicture = std::is_same_v<Kind, GenericContainer::PictureAnalyzer>;
    static constexpr bool isSound = std::is_same_v<Kind, GenericContainer::SoundAnalyzer>;

    static Metadata::Structural::FileDescriptor& createDescriptor(Metadata::PartitionMetadata& metadata) {
        using namespace Metadata::Structural;
        if constexpr (isPicture)
            return create<GenericPictureEssenceDescriptor>(metadata);
        else if constexpr (isSound)
            return create<GenericSoundEssenceDescriptor>(metadata);
        else
            return create<GenericDataEssenceDescriptor>(metadata);
    }
    static Types::UniversalLabel dataDefinition() {
        using namespace Metadata::Structural;
        return isPicture ? DataDefinitions::picture
               : isSound ? DataDefinitions::sound
                         : DataDefinitions::data;
    }

    FakeEssence essence_;
    std::size_t given_ = 0;
    bool isFinalized_ = false;
};

using FakePicture = FakeAnalyzer<GenericContainer::PictureAnalyzer>;
using FakeSound = FakeAnalyzer<GenericContainer::SoundAnalyzer>;
using FakeData = FakeAnalyzer<GenericContainer::DataAnalyzer>;
using FakeCompound = FakeAnalyzer<GenericContainer::CompoundAnalyzer>;

} // namespace MXF::Zelm::Test
