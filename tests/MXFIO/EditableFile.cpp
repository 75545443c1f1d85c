#include "MXFIO/EditableFile.h"

#include "MXF/Zelm/DataIO/File/FileDataSource.h"
#include "MXF/Zelm/Types/Strings.h"
#include "MXF/ZelmDictionary/Dictionary.h"

namespace MXF::Zelm::Test {

using namespace MXFIO;

MXFIO::Reader::DictionaryPtr editingDictionary() {
    static auto const dictionary = ZelmDictionary::standard();
    return dictionary;
}

Bytes editableMetadata(std::size_t fillSize, unsigned char packageUID) {
    auto const pattern = hex("060E2B34 04010101 0D010201 01010900"); // what makeFile writes into packs
    Bytes const entry = hex("3C0A 060E2B34 01010101 01011502 00000000");
    Bytes const duplicate = hex("3C0A 060E2B34 01010101 01011503 00000000");
    return klv(Packs::PrimerPack::key(),
               number(std::uint32_t{2}) + number(std::uint32_t{18}) + entry + duplicate) +
           klv(prefaceKey, uidItem(1) + item(0x8123, hex("AB")) + item(0x3B09, pattern) +
                               item(0x3B0A, hex("00000000 00000010"))) +
           klv(privateKey, hex("010203")) +
           klv(thingKey, uidItem(packageUID) + item(0x4402, hex("006F 006C 0064"))) +
           (fillSize != 0 ? fill(fillSize) : Bytes());
}

std::vector<Part> editableParts() {
    auto const grid = [](PartitionPack& pack) { pack.kagSize(32); };
    auto const stream = [](PartitionPack& pack) {
        auto key = pack.key();
        key[14] = 0x11;
        pack.key(key);
    };
    return {{.metadata = editableMetadata(300),
             .index = indexSegment(),
             .body = essence(100, 0x11),
             .indexSID = 2,
             .bodySID = 1,
             .fillAfterPack = 20,
             .change = grid},
            {.kind = PartitionPack::Body, .body = essence(3000, 0x22), .bodySID = 1, .change = grid},
            {.kind = PartitionPack::Body, .body = essence(40, 0x33), .bodySID = 3, .change = stream},
            {.kind = PartitionPack::Footer, .metadata = editableMetadata(100), .index = indexSegment(40)}};
}

Bytes editableFile(std::vector<Part> const& parts, Layout const& layout) {
    return makeFile(parts, layout).bytes;
}

std::unique_ptr<Updater> EditableFile::open(FileOperations* operations) const {
    return std::make_unique<Updater>(name, editingDictionary(), 65536, operations);
}

void rename(Updater& updater, std::size_t length) {
    updater.metadata().find(thingKey).value(packageName, Types::UTF16String(std::u16string(length, u'n')));
}

FileState::FileState(std::string const& fileName) {
    auto const lengthIn = [](Metadata::PartitionMetadata const& metadata) {
        return metadata.find(thingKey).value<Types::UTF16String>(packageName)->value().size();
    };
    DataIO::File::FileDataSource source(fileName);
    Reader2 reader(source, editingDictionary(), 65536);
    auto const chosen = reader.backwardFirstPartitionWithFinalMetadata()->metadata();
    nameLength = lengthIn(*chosen);
    for (auto at = chosen->darkBegin(); at != chosen->darkEnd(); ++at)
        darkSets.push_back(written(**at));
    for (auto* at = reader.headerPartition(); at != nullptr; at = reader.nextPartition(at)) {
        if (at->metadata())
            nameLengths.push_back(lengthIn(*at->metadata()));
        grid.push_back((at->bodyAbsoluteOffset() - at->partitionAbsoluteOffset()) %
                       at->partitionPack().kagSize());
        while (auto const packet = at->nextIndexTableSegmentsKLV())
            essence = essence + packet->value().readRemaining();
        at->rewind();
        while (auto const packet = at->nextBodyKLV(0))
            essence = essence + packet->value().readRemaining();
    }
}

} // namespace MXF::Zelm::Test
