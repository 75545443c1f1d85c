#include "MXF/Zelm/GenericContainer/Multiplexer/SystemItemGenerator.h"

namespace MXF::Zelm::GenericContainer::Multiplexer {

namespace {

std::shared_ptr<SequentialTimeCode> countingFrom(Utils::TimeCode const& start,
                                                 Templates::Rational<int> const& packageRate) {
    auto timecodes = std::make_shared<SequentialTimeCode>(start);
    timecodes->roundedFrameRate(Utils::TimeBase::ofEditRate(packageRate, false).framesPerSecond());
    return timecodes;
}

} // namespace

SystemItemGenerator::SystemItemGenerator(Templates::Rational<int> const& packageRate,
                                         Utils::TimeCode const& start,
                                         Types::UniversalLabel const& essenceContainer)
    : SystemItemGenerator(packageRate, countingFrom(start, packageRate), essenceContainer) {}

SystemItemGenerator::SystemItemGenerator(Templates::Rational<int> const& packageRate,
                                         TimeCodeProviderPtr timecodes,
                                         Types::UniversalLabel const& essenceContainer)
    : packageRate_(packageRate),
      timecodes_(std::move(timecodes)),
      label_(essenceContainer),
      pack_(packageRate) {
    pack_.universalLabel(essenceContainer);
}

SystemItemGenerator::~SystemItemGenerator() = default;

void SystemItemGenerator::items(bool picture, bool sound, bool data) {
    pack_.pictureItem(picture);
    pack_.soundItem(sound);
    pack_.dataItem(data);
}

void SystemItemGenerator::editRate(Templates::Rational<int> const& /*rate*/) {}

void SystemItemGenerator::takeTimeCode() {
    timecode_ = std::make_shared<Utils::TimeCodeExtended const>(timecodes_->nextTimeCode());
    pack_.userTimecode(*timecode_);
}

bool SystemItemGenerator::preload() {
    if (!timecode_) {
        takeTimeCode();
        isTimeCodeTaken_ = true;
    }
    return true;
}

bool SystemItemGenerator::setMetadata(Metadata::PartitionMetadata& /*metadata*/,
                                      Metadata::Structural::SourcePackage* /*package*/,
                                      unsigned int /*trackNumber*/, unsigned int /*trackID*/) {
    return true;
}

unsigned int SystemItemGenerator::boundedEditUnitSize() const {
    auto const emptySet = static_cast<unsigned int>(packageMetadataSet({}).size());
    return static_cast<unsigned int>(SystemMetadataPack::serializedSize()) + emptySet +
           (metadata_ ? metadata_->maximumSize() : 0);
}

bool SystemItemGenerator::nextEditUnit(EditUnit& unit) {
    if (!std::exchange(isTimeCodeTaken_, false))
        takeTimeCode();
    unit.clear();
    unit.duration = {packageRate_.denominator, packageRate_.numerator};
    if (timecode_->isDefined())
        unit.timecode = timecode_;
    unit.data.append(*pack_.serialize());
    unit.data.append(
        packageMetadataSet(metadata_ ? metadata_->nextItems() : SystemItemMetadataProvider::Items()));
    pack_.incrementContinuityCount();
    return true;
}

} // namespace MXF::Zelm::GenericContainer::Multiplexer
