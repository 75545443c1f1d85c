/// Reads index table segments one after the other, writes each and reads it again, gathers them in a table
/// and looks edit units up.
#include "MXF/Zelm/IndexTables/EditUnitLocator.h"
#include "MXF/Zelm/IndexTables/IndexTableSegmentWithGOPInfo.h"
#include "MXF/Zelm/KLV/Reader.h"
#include "support.h"

#include <limits>

using namespace MXF::Zelm;
using namespace IndexTables;

namespace {

/// What is written must be read again and written alike. (A short length field may not hold all.)
void writeAndRead(IndexTableSegment const& segment) {
    DataIO::Memory::MemoryDataSink once;
    DataIO::Memory::MemoryDataSink twice;
    segment.serialize(once);
    Fuzz::require(once.serializedSize() == segment.serializedSize());
    DataIO::Memory::MemoryViewDataSource source(once.rawBuffer(),
                                                static_cast<std::size_t>(once.serializedSize()));
    KLV::Reader reader(source);
    std::uint64_t skipped = 0;
    auto const packet = reader.nextKLV(skipped, 0);
    IndexTableSegmentWithGOPInfo(*packet, nullptr).serialize(twice);
    Fuzz::require(Fuzz::sameBytes(once, twice));
}

void lookUp(EditUnitLocator const& locator, std::int64_t position) {
    if (auto const unit = locator.locate(position)) {
        Fuzz::require(!unit->length || *unit->length <= ~std::uint64_t{0} - unit->streamOffset);
        for (std::size_t i = 0; i <= std::min<std::size_t>(locator.elementCount(position), 20); ++i)
            if (auto const element = locator.locateElement(position, i))
                Fuzz::require(element->streamOffset >= unit->streamOffset);
    }
    if (auto const stored = locator.storedPosition(position))
        Fuzz::require(locator.displayPosition(*stored).has_value());
    if (auto const range = locator.decodingRange(position))
        Fuzz::require(range->first <= range->last);
    locator.flags(position);
}

void lookUpAll(IndexTable const& table, EssenceExtent const& extent) {
    EditUnitLocator const locator(table, extent);
    for (auto const& [start, segment] : table)
        for (int const by : {-1, 0, 1, 2, 300}) {
            auto const position = static_cast<std::int64_t>(static_cast<std::uint64_t>(start) +
                                                            static_cast<std::uint64_t>(std::int64_t{by}));
            lookUp(locator, position);
            Fuzz::require(table.find(position) == nullptr ||
                          table.find(position)->indexStartPosition() <= position);
        }
    lookUp(locator, std::numeric_limits<std::int64_t>::max());
    lookUp(locator, std::numeric_limits<std::int64_t>::min());
    locator.end();
    table.firstGap(0);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size) {
    DataIO::Memory::MemoryViewDataSource source(data, size);
    KLV::Reader reader(source);
    IndexTable table(2, 1);
    std::unique_ptr<IndexTableSegmentWithGOPInfo> previous;
    Fuzz::passingOverBadInput([&] {
        while (!source.endOfStream()) {
            std::uint64_t skipped = 0;
            auto const packet = reader.nextKLV(skipped, 64);
            auto segment = std::make_unique<IndexTableSegmentWithGOPInfo>(*packet, nullptr);
            Fuzz::passingOverBadInput([&] { writeAndRead(*segment); });
            Fuzz::passingOverBadInput([&] { segment->updateMissingInfo(previous.get(), previous.get()); });
            if (previous)
                Fuzz::passingOverBadInput([&] { previous->updateMissingInfo(nullptr, segment.get()); });
            auto copy = std::make_unique<IndexTableSegment>(*segment);
            copy->bodySID(Types::UInt32(1));
            copy->resetIndexSID();
            table.add(std::move(copy), size % 2 == 0);
            previous = std::move(segment);
        }
    });
    lookUpAll(table, {});
    lookUpAll(table, {size * std::uint64_t{1000}, 20});
    return 0;
}
