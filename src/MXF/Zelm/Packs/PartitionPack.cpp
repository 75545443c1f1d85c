#include "MXF/Zelm/Packs/PartitionPack.h"

#include "MXF/Zelm/Exceptions/Exceptions.h"
#include "MXF/Zelm/Packs/FieldCoding.h"

#include <algorithm>

namespace MXF::Zelm::Packs {

namespace {

constexpr unsigned char keyPrefix[13] = {0x06, 0x0E, 0x2B, 0x34, 0x02, 0x05, 0x01,
                                         0x01, 0x0D, 0x01, 0x02, 0x01, 0x01};
constexpr int kindByte = 13;
constexpr int statusByte = 14;
constexpr unsigned char genericStreamStatus = 0x11;

/// Bytes of the value before the batch.
constexpr std::uint64_t fixedPartSize = 80;

bool hasPrefix(KLV::Key const& key) {
    return std::equal(std::begin(keyPrefix), std::end(keyPrefix), key.rawBuffer());
}

bool isKnownKind(unsigned char kind) {
    return kind >= PartitionPack::Header && kind <= PartitionPack::Footer;
}

bool isKnownStatus(unsigned char status) {
    return status >= PartitionPack::OpenIncomplete && status <= PartitionPack::ClosedComplete;
}

KLV::Key const& validated(KLV::Key const& key) {
    if (!hasPrefix(key))
        throw Exceptions::InvalidKey("The key is not a PartitionPack key");
    if (!isKnownKind(key[kindByte]))
        throw Exceptions::InvalidPartitionKind("The key defines an invalid partition kind");
    if (!isKnownStatus(key[statusByte]))
        throw Exceptions::InvalidPartitionStatus("The key defines an invalid partition status");
    return key;
}

} // namespace

struct PartitionPack::State {
    KLV::Key key;
    unsigned char berLength = defaultBerLength;
    std::uint16_t majorVersion = 1;
    std::uint16_t minorVersion = 2;
    std::uint32_t kagSize = 0;
    std::uint64_t thisPartition = 0;
    std::uint64_t previousPartition = 0;
    std::uint64_t footerPartition = 0;
    std::uint64_t headerByteCount = 0;
    std::uint64_t indexByteCount = 0;
    std::uint32_t indexSID = 0;
    std::uint64_t bodyOffset = 0;
    std::uint32_t bodySID = 0;
    Types::UniversalLabel operationalPattern;
    Types::Batch essenceContainers{Types::Identifiers::UniversalLabel};
};

PartitionPack::PartitionPack(KLV::Packet& packet) : state_(Templates::ValuePtr<State>::make()) {
    KLV::Value& value = packet.value();
    try {
        state_->key = validated(packet.key());
        state_->berLength = packet.berLength();
        state_->majorVersion = readInteger<std::uint16_t>(value);
        state_->minorVersion = readInteger<std::uint16_t>(value);
        state_->kagSize = readInteger<std::uint32_t>(value);
        state_->thisPartition = readInteger<std::uint64_t>(value);
        state_->previousPartition = readInteger<std::uint64_t>(value);
        state_->footerPartition = readInteger<std::uint64_t>(value);
        state_->headerByteCount = readInteger<std::uint64_t>(value);
        state_->indexByteCount = readInteger<std::uint64_t>(value);
        state_->indexSID = readInteger<std::uint32_t>(value);
        state_->bodyOffset = readInteger<std::uint64_t>(value);
        state_->bodySID = readInteger<std::uint32_t>(value);
        state_->operationalPattern = Types::UniversalLabel(value);
        state_->essenceContainers.load(value);
    } catch (Exceptions::BaseException& failure) {
        failure.offset(packet.keyAbsoluteOffset());
        throw;
    }
}

PartitionPack::PartitionPack(KLV::Key const& key, std::uint32_t kagSize, std::uint64_t thisPartition,
                             std::uint64_t bodyOffset, Types::UniversalLabel const& operationalPattern,
                             Templates::auto_ptr<Types::Batch> essenceContainers)
    : state_(Templates::ValuePtr<State>::make()) {
    state_->key = validated(key);
    state_->kagSize = kagSize;
    state_->thisPartition = thisPartition;
    state_->bodyOffset = bodyOffset;
    state_->operationalPattern = operationalPattern;
    this->essenceContainers(std::move(essenceContainers));
}

PartitionPack::PartitionPack(PartitionPack const&) = default;
PartitionPack& PartitionPack::operator=(PartitionPack const&) = default;
PartitionPack::~PartitionPack() = default;

KLV::Key const& PartitionPack::key() const { return state_->key; }
void PartitionPack::key(KLV::Key const& key) { state_->key = key; }
unsigned char PartitionPack::berLength() const { return state_->berLength; }
void PartitionPack::berLength(unsigned char size) { state_->berLength = size; }
std::uint16_t PartitionPack::majorVersion() const { return state_->majorVersion; }
void PartitionPack::majorVersion(std::uint16_t version) { state_->majorVersion = version; }
std::uint16_t PartitionPack::minorVersion() const { return state_->minorVersion; }
void PartitionPack::minorVersion(std::uint16_t version) { state_->minorVersion = version; }
std::uint32_t PartitionPack::kagSize() const { return state_->kagSize; }
void PartitionPack::kagSize(std::uint32_t size) { state_->kagSize = size; }
std::uint64_t PartitionPack::thisPartition() const { return state_->thisPartition; }
void PartitionPack::thisPartition(std::uint64_t offset) { state_->thisPartition = offset; }
std::uint64_t PartitionPack::previousPartition() const { return state_->previousPartition; }
void PartitionPack::previousPartition(std::uint64_t offset) { state_->previousPartition = offset; }
std::uint64_t PartitionPack::footerPartition() const { return state_->footerPartition; }
void PartitionPack::footerPartition(std::uint64_t offset) { state_->footerPartition = offset; }
std::uint64_t PartitionPack::headerByteCount() const { return state_->headerByteCount; }
void PartitionPack::headerByteCount(std::uint64_t count) { state_->headerByteCount = count; }
std::uint64_t PartitionPack::indexByteCount() const { return state_->indexByteCount; }
void PartitionPack::indexByteCount(std::uint64_t count) { state_->indexByteCount = count; }
std::uint32_t PartitionPack::indexSID() const { return state_->indexSID; }
void PartitionPack::indexSID(std::uint32_t sid) { state_->indexSID = sid; }
std::uint64_t PartitionPack::bodyOffset() const { return state_->bodyOffset; }
void PartitionPack::bodyOffset(std::uint64_t offset) { state_->bodyOffset = offset; }
std::uint32_t PartitionPack::bodySID() const { return state_->bodySID; }
void PartitionPack::bodySID(std::uint32_t sid) { state_->bodySID = sid; }
Types::UniversalLabel const& PartitionPack::operationalPattern() const { return state_->operationalPattern; }
void PartitionPack::operationalPattern(Types::UniversalLabel const& label) {
    state_->operationalPattern = label;
}
Types::Batch const& PartitionPack::essenceContainers() const { return state_->essenceContainers; }

void PartitionPack::essenceContainers(Templates::auto_ptr<Types::Batch> labels) {
    if (!labels || labels->subType() != Types::Identifiers::UniversalLabel)
        throw Exceptions::InvalidType("The essence containers of a partition pack are a batch of labels");
    state_->essenceContainers = std::move(*labels);
}

PartitionPack::PartitionKind PartitionPack::partitionKind() const {
    unsigned char const kind = state_->key[kindByte];
    return kind == Header || kind == Body ? static_cast<PartitionKind>(kind) : Footer;
}

bool PartitionPack::isOpen() const {
    unsigned char const status = state_->key[statusByte];
    return status == OpenIncomplete || status == OpenComplete;
}

bool PartitionPack::isComplete() const {
    unsigned char const status = state_->key[statusByte];
    return status == OpenComplete || status == ClosedComplete;
}

void PartitionPack::serialize(DataIO::DataSink& sink) const {
    writeHeader(state_->key, state_->berLength, fixedPartSize + state_->essenceContainers.serializedSize(),
                sink);
    writeInteger(state_->majorVersion, sink);
    writeInteger(state_->minorVersion, sink);
    writeInteger(state_->kagSize, sink);
    writeInteger(state_->thisPartition, sink);
    writeInteger(state_->previousPartition, sink);
    writeInteger(state_->footerPartition, sink);
    writeInteger(state_->headerByteCount, sink);
    writeInteger(state_->indexByteCount, sink);
    writeInteger(state_->indexSID, sink);
    writeInteger(state_->bodyOffset, sink);
    writeInteger(state_->bodySID, sink);
    state_->operationalPattern.serialize(sink);
    state_->essenceContainers.serialize(sink);
}

std::uint64_t PartitionPack::serializedSize() const {
    return KLV::Key::size() + state_->berLength + fixedPartSize + state_->essenceContainers.serializedSize();
}

KLV::Key buildPartitionPackKey(PartitionPack::PartitionKind kind, PartitionPack::PartitionStatus status) {
    KLV::Key key;
    std::copy(std::begin(keyPrefix), std::end(keyPrefix), key.rawBuffer());
    key[kindByte] = kind;
    key[statusByte] = status;
    return key;
}

KLV::Key buildPartitionPackKey(PartitionPack::PartitionKind kind, bool open, bool complete) {
    if (complete)
        return buildPartitionPackKey(kind,
                                     open ? PartitionPack::OpenComplete : PartitionPack::ClosedComplete);
    return buildPartitionPackKey(kind,
                                 open ? PartitionPack::OpenIncomplete : PartitionPack::ClosedIncomplete);
}

bool isPartitionPack(KLV::Key const& key) { return hasPrefix(key) && isKnownKind(key[kindByte]); }

bool isGenericStreamPartitionPack(KLV::Key const& key) {
    return hasPrefix(key) && key[kindByte] == PartitionPack::Body && key[statusByte] == genericStreamStatus;
}

} // namespace MXF::Zelm::Packs
