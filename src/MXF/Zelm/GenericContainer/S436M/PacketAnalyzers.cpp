#include "MXF/Zelm/GenericContainer/S436M/PacketAnalyzers.h"

#include "MXF/Zelm/Exceptions/Exceptions.h"
#include "MXF/Zelm/GenericContainer/ElementKey.h"
#include "MXF/Zelm/IndexTables/IndexEntry.h"
#include "MXF/Zelm/Metadata/Structural/Building.h"
#include "MXF/Zelm/Metadata/Structural/DataDescriptors.h"
#include "MXF/Zelm/Metadata/Structural/Packages.h"
#include "MXF/Zelm/Metadata/Structural/Tracks.h"
#include "MXF/Zelm/Utils/TimeBase.h"

#include <string>

namespace MXF::Zelm::GenericContainer::S436M {

using namespace Metadata::Structural;

namespace {

/// The element count and the element number.
constexpr int fixedKeyBytes[] = {13, 15};

bool isPositive(Templates::Rational<int> const& rate) { return rate.numerator > 0 && rate.denominator > 0; }

} // namespace

PacketProvider::~PacketProvider() = default;

PacketAnalyzer::PacketAnalyzer(ElementKind kind, PacketProviderPtr provider)
    : kind_(kind), provider_(std::move(provider)) {
    if (provider_ == nullptr)
        throw Exceptions::InvalidValue("An analyzer of VBI or ancillary data needs a provider of packets");
}

PacketAnalyzer::~PacketAnalyzer() = default;

bool PacketAnalyzer::preload() {
    if (!isPositive(editRate_))
        return false;
    start();
    return true;
}

void PacketAnalyzer::start() {
    if (!isStarted_)
        fetch();
    isStarted_ = true;
}

void PacketAnalyzer::fetch() {
    packets_.clear();
    hasNext_ = !isOver() && provider_->nextFrame(packets_);
}

GenericDataEssenceDescriptor& PacketAnalyzer::createDescriptor(Metadata::PartitionMetadata& metadata) const {
    if (kind_ == ElementKind::VBI)
        return create<VBIDataDescriptor>(metadata);
    return create<ANCPacketsDescriptor>(metadata);
}

bool PacketAnalyzer::setMetadata(Metadata::PartitionMetadata& metadata, SourcePackage* package,
                                 unsigned int trackNumber, unsigned int trackID) {
    if (package == nullptr)
        return false;
    KLV::Key key;
    ByteCoders::codeInteger(trackNumber, key.rawBuffer() + 12);
    auto const number = ElementKey(proposeKey(key)).trackNumber();
    if (track_ != nullptr) {
        track_->trackNumber(Types::UInt32(number));
        return true;
    }
    descriptor_ = &createDescriptor(metadata);
    descriptor_->sampleRate(Types::Rational(editRate_));
    descriptor_->essenceContainer(universalLabel());
    customizeDescriptor(*descriptor_);
    track_ = &addEssenceTrack(metadata, *package, *descriptor_,
                              {.dataDefinition = DataDefinitions::data,
                               .editRate = editRate_,
                               .trackNumber = number,
                               .trackID = trackID});
    return true;
}

/// Beyond the duration that was set.
bool PacketAnalyzer::isOver() const {
    auto const limit = getDuration();
    return limit.isKnown() && isPositive(editRate_) &&
           frames_ >= Utils::secondsToFrames({limit.numerator, limit.denominator}, editRate_);
}

bool PacketAnalyzer::nextEditUnit(EditUnit& unit) {
    unit.clear();
    start();
    if (!hasNext_)
        return false;
    unit.data = writeFrameElement(packets_);
    if (boundedSize_ != 0 && unit.data.size() > boundedSize_)
        throw Exceptions::InvalidLength("The packets of frame " + std::to_string(frames_) + " need " +
                                        std::to_string(unit.data.size()) + " bytes, bounded to " +
                                        std::to_string(boundedSize_));
    unit.duration = Utils::framesToSeconds(1, editRate_);
    unit.index.flags = IndexTables::IndexEntry::RandomAccess;
    ++frames_;
    fetch();
    return true;
}

bool PacketAnalyzer::finalize() {
    if (track_ == nullptr)
        return true;
    setTrackLength(*track_, static_cast<std::uint64_t>(frames_));
    descriptor_->containerDuration(Types::Length(frames_));
    return true;
}

Types::UniversalLabel PacketAnalyzer::universalLabel() const {
    return kind_ == ElementKind::VBI ? vbiContainer : ancContainer;
}

void PacketAnalyzer::boundedEditUnitSize(int bytes) {
    if (bytes < 0)
        throw Exceptions::InvalidValue("An edit unit cannot be bounded to " + std::to_string(bytes) +
                                       " bytes");
    boundedSize_ = static_cast<unsigned int>(bytes);
}

unsigned char PacketAnalyzer::itemTypeIdentifier() const { return ElementKey::Data; }

unsigned char PacketAnalyzer::essenceElementType() const {
    return ElementKey(kind_ == ElementKind::VBI ? vbiTrackNumber : ancTrackNumber).elementType();
}

KLV::Key PacketAnalyzer::proposeKey(KLV::Key const& key) const {
    KLV::Key changed = key;
    for (int const byte : fixedKeyBytes)
        changed[byte] = 0x01;
    return changed;
}

VBIAnalyzer::VBIAnalyzer(PacketProviderPtr provider)
    : PacketAnalyzer(ElementKind::VBI, std::move(provider)) {}
VBIAnalyzer::~VBIAnalyzer() = default;

ANCAnalyzer::ANCAnalyzer(PacketProviderPtr provider)
    : PacketAnalyzer(ElementKind::ANC, std::move(provider)) {}
ANCAnalyzer::~ANCAnalyzer() = default;

} // namespace MXF::Zelm::GenericContainer::S436M
