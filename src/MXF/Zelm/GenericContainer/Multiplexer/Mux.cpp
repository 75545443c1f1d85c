#include "MXF/Zelm/GenericContainer/Multiplexer/Mux.h"

#include "MXF/Zelm/GenericContainer/ElementKey.h"
#include "MXF/Zelm/GenericContainer/Multiplexer/CommonLabel.h"
#include "MXF/Zelm/GenericContainer/Multiplexer/SystemItemGenerator.h"
#include "MXF/Zelm/GenericContainer/Multiplexer/Worker_impl.h"
#include "MXF/Zelm/Metadata/Structural/Building.h"
#include "MXF/Zelm/Metadata/Structural/Packages.h"
#include "MXF/Zelm/Templates/SafeCast.h"
#include "MXF/Zelm/Utils/Align.h"

#include <utility>

namespace MXF::Zelm::GenericContainer::Multiplexer {

namespace {

using Kind = EssenceAnalyzer::EssenceAnalyzerType;
using Structure = Exceptions::InvalidStructure;
using Format = Exceptions::InvalidFormat;

/// By analyzer type: what is said of the item that is full. The words are quoted as they stand.
struct ItemLimit {
    const char* condition;
    const char* message;
};
constexpr ItemLimit itemLimits[] = {
    {"system_.get () == 0", "Trying to add more than one SystemAnalyzer"},
    {"compound_.size () <= MAXIMUM_ITEM_COUNT", "Trying to add more CompoundAnalyzers than allowed"},
    {"picture_.size () <= MAXIMUM_ITEM_COUNT", "Trying to add more PictureAnalyzers than allowed"},
    {"sound_.size () <= MAXIMUM_ITEM_COUNT", "Trying to add more than SoundAnalyzers than allowed"},
    {"data_.size () <= MAXIMUM_ITEM_COUNT", "Trying to add more than DataAnalyzers than allowed"},
};

/// The items of a content package in their order (SMPTE 379M).
constexpr Kind itemOrder[] = {Kind::SystemAnalyzer, Kind::PictureAnalyzer, Kind::SoundAnalyzer,
                              Kind::DataAnalyzer, Kind::CompoundAnalyzer};

constexpr unsigned int firstTrackID = 256;
constexpr unsigned int trackIDStep = 256;

/// Most bytes that a length field of 4 bytes can tell.
constexpr std::uint64_t mostBytesOfShortLength = 0xFFFFFF;

template <class Exception>
void require(bool condition, const char* text, const char* message,
             Exceptions::SourceLocation where = Exceptions::SourceLocation::current()) {
    if (!condition)
        throw Exception(Exceptions::Condition{text}, message, where);
}

/// Bytes of a constant entry, its alignment included.
std::uint64_t entryByteCount(AnalyzerEntry const& entry, std::uint32_t kag) {
    std::uint64_t const head = entry.isSystem() ? 0 : KLV::Key::size() + entry.berLength;
    std::uint64_t const size = head + entry.analyzer->boundedEditUnitSize();
    return size + Utils::alignBytes(kag, size, MuxData::fillKLLength);
}

} // namespace

struct Mux::State {
    std::unique_ptr<MuxData> data = std::make_unique<MuxData>();
    std::array<Templates::vector<AnalyzerEntry>, 5> items = {}; // by analyzer type
    unsigned int trackID = firstTrackID;
    bool hasReordering = false;

    /// Throws Exceptions::InvalidChange when they were handed over.
    MuxData& settings() const;
    void gather();
    void prepare(AnalyzerEntry& entry);
    void requireReordering(AnalyzerEntry const& entry);
    void composeKey(AnalyzerEntry& entry);
    void tellSystemItem();
    void describe(AnalyzerEntry& entry);
    void resetSizes(PaddingKind padding);
    std::unique_ptr<TimecodeTrack> startTimecodeTrack() const;
};

MuxData& Mux::State::settings() const {
    if (!data)
        throw Exceptions::InvalidChange("The multiplexer was committed before");
    return *data;
}

Mux::Mux(PartitionMetadataPtr metadata, Types::UniversalLabel const& essenceContainer,
         Templates::Rational<int> const& packageRate)
    : Mux(metadata ? &Metadata::Structural::createFilePackage(*metadata, {}) : nullptr, essenceContainer,
          packageRate) {
    state_->data->metadata = std::move(metadata);
}

Mux::Mux(Metadata::Structural::SourcePackage* package, Types::UniversalLabel const& essenceContainer,
         Templates::Rational<int> const& packageRate)
    : state_(std::make_unique<State>()) {
    Utils::framesToSeconds(1, packageRate); // throws for a rate that is none
    state_->data->package = package;
    state_->data->essenceContainer = essenceContainer;
    state_->data->packageRate = packageRate;
    auto* const metadata =
        package != nullptr ? dynamic_cast<Metadata::PartitionMetadata*>(package->owner()) : nullptr;
    if (metadata != nullptr)
        state_->data->builder.emplace(*metadata, *package);
}

Mux::~Mux() = default;

void Mux::addAnalyzer(EssenceAnalyzerPtr analyzer, bool isTimecodeSource,
                      Templates::Rational<std::int64_t> const& temporalOffset) {
    addAnalyzer(std::move(analyzer), isTimecodeSource, temporalOffset, automaticElementNumber);
}

void Mux::addAnalyzer(EssenceAnalyzerPtr analyzer, bool isTimecodeSource,
                      Templates::Rational<std::int64_t> const& temporalOffset, unsigned char elementNumber) {
    auto& settings = state_->settings();
    if (!analyzer)
        throw Exceptions::InvalidValue("There is no analyzer to add");
    auto const kind = analyzer->essenceAnalyzerType();
    auto& item = state_->items.at(kind);
    auto const& limit = itemLimits[kind];
    require<Structure>(kind == Kind::SystemAnalyzer ? item.empty() : item.size() <= MAXIMUM_ITEM_COUNT,
                       limit.condition, limit.message);
    auto const kag = Utils::commonGrid(settings.kagSize, analyzer->requiredKAGSize());
    auto const number =
        elementNumber < automaticElementNumber ? elementNumber : static_cast<unsigned char>(item.size());
    item.push_back({.analyzer = std::move(analyzer),
                    .elementNumber = number,
                    .temporalOffset = temporalOffset,
                    .isTimecodeSource = isTimecodeSource});
    settings.kagSize = kag;
}

void Mux::kagSize(unsigned int bytes) {
    state_->settings().kagSize = Utils::commonGrid(state_->settings().kagSize, bytes);
}

unsigned int Mux::kagSize() const { return state_->settings().kagSize; }

void Mux::State::resetSizes(PaddingKind padding) {
    settings().padding = padding;
    settings().itemSizes.fill(MuxData::unset);
    settings().editUnitSize = MuxData::unset;
}

void Mux::paddToElement() { state_->resetSizes(PadToElement); }

void Mux::paddToItem(int system, int compound, int picture, int sound, int sizeOfData) {
    state_->resetSizes(PadToItem);
    state_->settings().itemSizes = {system, compound, picture, sound, sizeOfData};
}

void Mux::paddToEditUnit(unsigned int size) {
    auto const bytes = Templates::safeCast<std::int32_t>(size);
    state_->resetSizes(PadToEditUnit);
    state_->settings().editUnitSize = bytes;
}

Mux::PaddingKind Mux::paddingType() const { return state_->settings().padding; }

void Mux::trackID(unsigned int first) {
    state_->settings();
    state_->trackID = first;
}

void Mux::indexFillPackets(bool isIndexed) { state_->settings().indexFillPackets = isIndexed; }

/// Puts the entries of all items into one list, in the order of the content package.
void Mux::State::gather() {
    for (auto const kind : itemOrder) {
        if (!items[kind].empty())
            items[kind].back().padsToItem = data->padding == PadToItem;
        for (auto& entry : items[kind])
            data->entries.push_back(entry);
    }
    bool isFound = false;
    for (auto& entry : data->entries)
        entry.isTimecodeSource = entry.isTimecodeSource && !std::exchange(isFound, entry.isTimecodeSource);
}

void Mux::State::prepare(AnalyzerEntry& entry) {
    auto& analyzer = *entry.analyzer;
    analyzer.editRate(data->packageRate);
    bool const isValid = analyzer.preload();
    require<Format>(isValid, "isValid", "The essence format is invalid");
    requireReordering(entry);
    composeKey(entry);
    entry.position =
        entry.temporalOffset.isKnown() ? entry.temporalOffset : Templates::Rational<std::int64_t>{0, 1};
    if (!analyzer.isCBE() || analyzer.boundedEditUnitSize() == 0)
        return;
    entry.berLength = analyzer.boundedEditUnitSize() > mostBytesOfShortLength ? 9 : 4;
    entry.entryByteCount = entryByteCount(entry, data->kagSize);
    if (entry.isSystem() && data->systemItemMaximumSize() > 0)
        require<Structure>(
            entry.entryByteCount <= static_cast<std::uint64_t>(data->systemItemMaximumSize()),
            "static_cast <Platform::Int32> (entry.entryByteCount) <= systemItemMaximumSize",
            "Trying to force into the GC a system Item maximum value smaller then the system Item size. "
            "Please increate the system item maximum size");
}

void Mux::State::requireReordering(AnalyzerEntry const& entry) {
    if (!entry.analyzer->containsTemporalDependencies())
        return;
    require<Structure>(!hasReordering, "temporalReordoring_ == false",
                       "Trying to set two sources with temporal reordoring to the same generic container. "
                       "MXF only allows for one source with temporal reordoring.");
    hasReordering = true;
    require<Structure>(entry.analyzer->editRate() == data->packageRate,
                       "preEntry.analyzer -> editRate () == rate_",
                       "Trying to set an essence analyzer with temporal reordoring and with editRate "
                       "different from the content package.");
    require<Structure>(entry.temporalOffset.numerator == 0, "preEntry.temporalOffset.numerator () == 0",
                       "A source with temporal reordoring must start at offset zero to the essence "
                       "container.");
}

void Mux::State::composeKey(AnalyzerEntry& entry) {
    entry.key = ElementKey::makeKey(entry.analyzer->itemTypeIdentifier(),
                                    static_cast<unsigned char>(items[entry.kind()].size()),
                                    entry.analyzer->essenceElementType(), entry.elementNumber);
}

/// The system metadata pack tells which items there are.
void Mux::State::tellSystemItem() {
    if (items[Kind::SystemAnalyzer].empty())
        return;
    auto* const generator = dynamic_cast<SystemItemGenerator*>(items[Kind::SystemAnalyzer][0].analyzer.get());
    if (generator != nullptr)
        generator->items(!items[Kind::PictureAnalyzer].empty(), !items[Kind::SoundAnalyzer].empty(),
                         !items[Kind::DataAnalyzer].empty());
}

/// Makes the track and settles the key.
void Mux::State::describe(AnalyzerEntry& entry) {
    if (data->builder && !entry.isSystem()) {
        data->builder->create(*entry.analyzer, ElementKey(entry.key).trackNumber(), trackID);
        trackID += trackIDStep;
    }
    entry.key = entry.analyzer->proposeKey(entry.key);
}

/// The timecode track stands before those of the essence, when its start is known already.
std::unique_ptr<TimecodeTrack> Mux::State::startTimecodeTrack() const {
    for (auto const& entry : data->entries) {
        if (!entry.isTimecodeSource || !data->builder)
            continue;
        auto track = std::make_unique<TimecodeTrack>(data->builder->metadata(), data->builder->package(),
                                                     data->packageRate);
        track->checkTimeCode(0, entry.analyzer->currentTimeCode());
        return track;
    }
    return nullptr;
}

Templates::auto_ptr<Source> Mux::commit() {
    auto& state = *state_;
    state.settings();
    state.gather();
    for (auto& entry : state.data->entries)
        state.prepare(entry);
    state.tellSystemItem();
    auto timecodeTrack = state.startTimecodeTrack();
    for (auto& entry : state.data->entries)
        state.describe(entry);
    if (state.data->essenceContainer == Types::UniversalLabel())
        state.data->essenceContainer = commonLabel(state.data->entries);
    return std::make_unique<Worker_impl>(std::move(state.data), std::move(timecodeTrack));
}

} // namespace MXF::Zelm::GenericContainer::Multiplexer
