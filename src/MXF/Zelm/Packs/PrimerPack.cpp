#include "MXF/Zelm/Packs/PrimerPack.h"

#include "MXF/Zelm/Exceptions/Exceptions.h"
#include "MXF/Zelm/Packs/FieldCoding.h"
#include "MXF/Zelm/Templates/SafeCast.h"
#include "MXF/Zelm/Types/LabelSearch.h"

#include <iterator>

namespace MXF::Zelm::Packs {

using namespace KLV::Literals;

namespace {

constexpr KLV::Key primerPackKey = "060E2B34.02050101.0D010201.01050100"_key;
constexpr std::uint32_t entrySize = 18;
constexpr std::uint64_t batchHeaderSize = 8;

} // namespace

struct PrimerPack::State {
    Templates::map<Types::LocalTag, Types::UniversalLabel> labels;
    Templates::map<Types::UniversalLabel, Types::LocalTag> tags;
    Templates::vector<Entry> duplicates;
    unsigned char berLength = defaultBerLength;
};

KLV::Key const& PrimerPack::key() { return primerPackKey; }

PrimerPack::PrimerPack() : state_(Templates::ValuePtr<State>::make()) {}

PrimerPack::PrimerPack(KLV::Packet& packet) : PrimerPack() {
    if (packet.key() != key())
        throw Exceptions::at(
            packet.keyAbsoluteOffset(),
            Exceptions::InvalidKey("Trying to create a Primer from a KLV with a invalid primerPack Key."));
    KLV::Value& value = packet.value();
    state_->berLength = packet.berLength();
    auto const count = readInteger<std::uint32_t>(value);
    readInteger<std::uint32_t>(value); // the item size is always 18, whatever a file says
    for (std::uint32_t i = 0; i < count; ++i) {
        Types::LocalTag const tag(value);
        add(tag, Types::UniversalLabel(value));
    }
}

PrimerPack::PrimerPack(PrimerPack const&) = default;
PrimerPack& PrimerPack::operator=(PrimerPack const&) = default;
PrimerPack::~PrimerPack() = default;

void PrimerPack::add(Types::LocalTag const& tag, Types::UniversalLabel const& label) {
    if (find(tag) != nullptr || find(label) != nullptr) {
        state_->duplicates.emplace_back(tag, label);
        return;
    }
    state_->labels.emplace(tag, label);
    state_->tags.emplace(label, tag);
}

Types::UniversalLabel const* PrimerPack::find(Types::LocalTag const& tag) const {
    auto const found = state_->labels.find(tag);
    return found != state_->labels.end() ? &found->second : nullptr;
}

Types::LocalTag const* PrimerPack::find(Types::UniversalLabel const& label) const {
    auto const found = state_->tags.find(label);
    return found != state_->tags.end() ? &found->second : nullptr;
}

Types::LocalTag const* PrimerPack::findOfAnyVersion(Types::UniversalLabel const& label) const {
    auto const found = Types::findOfAnyVersion(state_->tags, label);
    return found != state_->tags.end() ? &found->second : nullptr;
}

bool PrimerPack::remove(Types::UniversalLabel const& label) {
    auto const found = state_->tags.find(label);
    if (found == state_->tags.end())
        return false;
    state_->labels.erase(found->second);
    state_->tags.erase(found);
    return true;
}

std::size_t PrimerPack::count() const { return state_->labels.size(); }

PrimerPack::Entry PrimerPack::at(std::size_t index) const {
    if (index >= count())
        throw Exceptions::BaseException("Trying to access an element beyond the end of the data");
    auto const& [tag, label] = *std::next(state_->labels.begin(), static_cast<std::ptrdiff_t>(index));
    return {tag, label};
}

Templates::vector<PrimerPack::Entry> PrimerPack::entries() const {
    return {state_->labels.begin(), state_->labels.end()};
}

std::size_t PrimerPack::countDuplicates() const { return state_->duplicates.size(); }

PrimerPack::Entry PrimerPack::atDuplicates(std::size_t index) const {
    if (index >= countDuplicates())
        throw Exceptions::BaseException("Trying to access an element beyond the end of the data");
    return state_->duplicates[index];
}

unsigned char PrimerPack::berLength() const { return state_->berLength; }
void PrimerPack::berLength(unsigned char size) { state_->berLength = size; }

void PrimerPack::serialize(DataIO::DataSink& sink) const {
    writeHeader(key(), state_->berLength, batchHeaderSize + entrySize * std::uint64_t{count()}, sink);
    writeInteger(Templates::safeCast<std::uint32_t>(count()), sink);
    writeInteger(entrySize, sink);
    for (auto const& [tag, label] : state_->labels) {
        tag.serialize(sink);
        label.serialize(sink);
    }
}

std::uint64_t PrimerPack::serializedSize() const {
    return KLV::Key::size() + state_->berLength + batchHeaderSize + entrySize * std::uint64_t{count()};
}

} // namespace MXF::Zelm::Packs
