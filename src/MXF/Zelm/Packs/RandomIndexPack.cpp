#include "MXF/Zelm/Packs/RandomIndexPack.h"

#include "MXF/Zelm/Exceptions/Exceptions.h"
#include "MXF/Zelm/Packs/FieldCoding.h"
#include "MXF/Zelm/Templates/SafeCast.h"

namespace MXF::Zelm::Packs {

using namespace KLV::Literals;

namespace {

constexpr KLV::Key randomIndexPackKey = "060E2B34.02050101.0D010201.01110100"_key;
constexpr std::uint64_t entrySize = 12;
constexpr std::uint64_t finalLengthSize = 4;

} // namespace

struct RandomIndexPack::State {
    OffsetIndexedMap sids;
    SidIndexedMap offsets;
    unsigned char berLength = defaultBerLength;
};

KLV::Key const& RandomIndexPack::key() { return randomIndexPackKey; }

RandomIndexPack::RandomIndexPack() : state_(Templates::ValuePtr<State>::make()) {}

RandomIndexPack::RandomIndexPack(KLV::Packet& packet) : RandomIndexPack() {
    if (packet.key() != key())
        throw Exceptions::at(
            packet.keyAbsoluteOffset(),
            Exceptions::InvalidKey("Trying to create a RIP from a KLV with a invalid RIP Key."));
    KLV::Value& value = packet.value();
    state_->berLength = packet.berLength();
    while (value.remaining() > finalLengthSize) {
        auto const bodySID = readInteger<std::uint32_t>(value);
        add(bodySID, readInteger<std::uint64_t>(value));
    }
    if (value.remaining() < finalLengthSize)
        throw Exceptions::at(value.absoluteOffset(),
                             Exceptions::InvalidLength("Not enough data to read Pack"));
}

RandomIndexPack::RandomIndexPack(RandomIndexPack const&) = default;
RandomIndexPack& RandomIndexPack::operator=(RandomIndexPack const&) = default;
RandomIndexPack::~RandomIndexPack() = default;

void RandomIndexPack::add(std::uint32_t bodySID, std::uint64_t byteOffset) {
    state_->sids.emplace(byteOffset, bodySID);
    state_->offsets.emplace(bodySID, byteOffset);
}

Templates::vector<std::uint64_t> RandomIndexPack::find(std::uint32_t bodySID) const {
    Templates::vector<std::uint64_t> offsets;
    auto const [first, last] = state_->offsets.equal_range(bodySID);
    for (auto entry = first; entry != last; ++entry)
        offsets.push_back(entry->second);
    return offsets;
}

std::size_t RandomIndexPack::size() const { return state_->sids.size(); }
std::uint64_t RandomIndexPack::valueLength() const { return entrySize * size() + finalLengthSize; }
RandomIndexPack::OffsetIndexedMap const& RandomIndexPack::offsetIndexedMap() const { return state_->sids; }
RandomIndexPack::SidIndexedMap const& RandomIndexPack::sidIndexedMap() const { return state_->offsets; }
unsigned char RandomIndexPack::berLength() const { return state_->berLength; }
void RandomIndexPack::berLength(unsigned char size) { state_->berLength = size; }

void RandomIndexPack::serialize(DataIO::DataSink& sink) const {
    writeHeader(key(), state_->berLength, valueLength(), sink);
    for (auto const& [byteOffset, bodySID] : state_->sids) {
        writeInteger(bodySID, sink);
        writeInteger(byteOffset, sink);
    }
    writeInteger(Templates::safeCast<std::uint32_t>(serializedSize()), sink);
}

std::uint64_t RandomIndexPack::serializedSize() const {
    return KLV::Key::size() + state_->berLength + valueLength();
}

} // namespace MXF::Zelm::Packs
