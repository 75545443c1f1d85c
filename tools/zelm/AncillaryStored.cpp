#include "AncillaryStored.h"

#include <algorithm>

namespace Zelm {

using namespace MXF::Zelm;
using namespace Essence::Ancillary;
using namespace GenericContainer::S436M;

namespace {

/// The same bytes but for zeros that fill up to a multiple of four.
bool isSamePayload(DataIO::Slice const& a, DataIO::Slice const& b) {
    auto const& longer = a.size() < b.size() ? b : a;
    auto const& shorter = a.size() < b.size() ? a : b;
    auto const end = longer.begin() + shorter.size();
    return (shorter.size() + 3) / 4 == (longer.size() + 3) / 4 &&
           std::equal(longer.begin(), end, shorter.begin()) &&
           std::all_of(end, longer.end(), [](unsigned char byte) { return byte == 0; });
}

} // namespace

StoredPacket storeWithChecksum(Packet const& packet, SampleCoding coding, std::optional<Word> checksum) {
    auto words = wordsOf(packet, bitsOf(coding) == 10 ? Precision::Bits10 : Precision::Bits8, false);
    if (checksum)
        words.push_back(*checksum);
    StoredPacket stored{.coding = coding};
    stored.samples(words);
    return stored;
}

bool isTold(StoredPacket const& stored, ReadPacket const& read) {
    if (!isKnown(stored.coding, ElementKind::ANC))
        return false;
    auto const made = storeWithChecksum(read.packet, stored.coding, read.checksum);
    return made.sampleCount == stored.sampleCount && isSamePayload(made.payload, stored.payload);
}

} // namespace Zelm
