#include "MXF/Zelm/GenericContainer/ClipWrapper/Wrap.h"

#include "MXF/Zelm/Exceptions/Exceptions.h"
#include "MXF/Zelm/GenericContainer/ClipWrapper/Clip.h"
#include "MXF/Zelm/GenericContainer/ElementKey.h"
#include "MXF/Zelm/Metadata/PartitionMetadata.h"
#include "MXF/Zelm/Metadata/Structural/GenericPackage.h"
#include "MXF/Zelm/Utils/Align.h"

namespace MXF::Zelm::GenericContainer::ClipWrapper {

struct Wrap::State {
    ClipData data = {};
    Templates::Rational<int> editRate = {};
    unsigned char elementNumber = 0;
    unsigned int trackID = 256;
    bool isCommitted = false;

    KLV::Key elementKey() const;
    void describe();
};

Wrap::Wrap(Metadata::Structural::SourcePackage* package, Types::UniversalLabel const& essenceContainer,
           EssenceAnalyzerPtr analyzer, Templates::Rational<int> const& editRate)
    : state_(std::make_unique<State>()) {
    state_->editRate = editRate;
    auto& data = state_->data;
    data.package = package;
    data.essenceContainer = essenceContainer;
    data.analyzer = std::move(analyzer);
    auto* const metadata =
        package != nullptr ? dynamic_cast<Metadata::PartitionMetadata*>(package->owner()) : nullptr;
    if (metadata != nullptr)
        data.builder.emplace(*metadata, *package);
    kagSize(data.analyzer->requiredKAGSize());
}

Wrap::~Wrap() = default;

void Wrap::berLength(unsigned char bytes) {
    if (bytes != 8 && bytes != 9)
        throw Exceptions::InvalidValue("The length of a clip has 8 or 9 bytes, not " + std::to_string(bytes));
    state_->data.berLength = bytes;
}

void Wrap::kagSize(unsigned int bytes) {
    state_->data.kagSize = Utils::commonGrid(state_->data.kagSize, bytes);
}

void Wrap::elementNumber(unsigned char number) { state_->elementNumber = number; }

void Wrap::trackID(unsigned int id) { state_->trackID = id; }

void Wrap::mayEndEarly() { state_->data.mayEndEarly = true; }

KLV::Key Wrap::State::elementKey() const {
    return ElementKey::makeKey(data.analyzer->itemTypeIdentifier(), 1, data.analyzer->essenceElementType(),
                               elementNumber);
}

/// Makes the track and settles the key.
void Wrap::State::describe() {
    auto const key = elementKey();
    if (data.builder)
        data.builder->create(*data.analyzer, ElementKey(key).trackNumber(), trackID);
    data.key = data.analyzer->proposeKey(key);
    if (data.essenceContainer == Types::UniversalLabel())
        data.essenceContainer = data.analyzer->universalLabel();
}

Templates::auto_ptr<Source> Wrap::commit() {
    if (std::exchange(state_->isCommitted, true))
        throw Exceptions::InvalidChange("The clip was committed before");
    auto& analyzer = *state_->data.analyzer;
    if (state_->editRate.isKnown())
        analyzer.editRate(state_->editRate);
    bool const isValid = analyzer.preload();
    if (!isValid)
        throw Exceptions::InvalidFormat(Exceptions::Condition{"isValid"}, "The essence format is invalid");
    Utils::framesToSeconds(0, analyzer.editRate()); // throws for a rate that is none
    state_->describe();
    return std::make_unique<Clip>(std::move(state_->data));
}

} // namespace MXF::Zelm::GenericContainer::ClipWrapper
