#include "Documents.h"

#include "EssenceForm.h"
#include "PartitionSurvey.h"
#include "SetValues.h"

#include <MXF/Zelm/Metadata/Structural/DescriptorKeys.h>
#include <MXF/Zelm/Platform/Text.h>
#include <MXF/Zelm/Types/UUID.h>

#include <algorithm>
#include <map>
#include <set>

namespace Zelm {

using namespace MXF::Zelm;
using Metadata::MetadataSet;

namespace {

/// Streams of one file; each becomes a file.
constexpr std::size_t mostDocuments = 4096;

/// Without "urn:uuid:".
std::string digits(Types::UUID const* uuid) {
    constexpr std::size_t prefix = 9;
    return uuid != nullptr ? Platform::toUtf8(uuid->toString()).substr(prefix) : std::string();
}

/// What a set tells of the stream that it leads to: text-based metadata (SMPTE RP 2057), resources of timed
/// text (SMPTE 429-5).
void takeSet(MetadataSet const& set, std::map<std::uint32_t, Document>& streams) {
    bool const isResource =
        set.key() == Metadata::Structural::DescriptorKeys::dcTimedTextResourceSubDescriptor;
    auto const stream = count(set.value<Types::UInt32>(isResource ? u"EssenceStreamID" : u"GenericStreamID"));
    auto const found = stream ? streams.find(*stream) : streams.end();
    if (found == streams.end())
        return;
    auto const* const type = set.findElement(isResource ? u"MIMEType" : u"TextMIMEMediaType");
    found->second.mimeType = type != nullptr ? text(type->baseValue()) : std::string();
    if (isResource)
        found->second.resourceID = digits(set.value<Types::UUID>(u"AncillaryResourceID"));
}

/// Calls `use` with the values of a stream, piece by piece, until it answers false.
template <class Use>
void forContent(Document const& document, Use use) {
    std::vector<unsigned char> piece(std::size_t{64} << 10);
    for (auto* const partition : document.partitions) {
        partition->rewind();
        while (auto const packet = partition->nextBodyKLV(searchLimit)) {
            if (KLV::isFillItem(packet->key()))
                continue;
            while (auto const got = packet->value().read(piece.data(), piece.size()))
                if (!use(piece.data(), static_cast<std::size_t>(got)))
                    return;
        }
    }
}

std::string suffixOf(Document const& document) {
    DataIO::Chain first;
    forContent(document, [&](const unsigned char* bytes, std::size_t size) {
        constexpr std::size_t enough = 64;
        first = DataIO::Slice::copyOf(bytes, std::min(size, enough));
        return false;
    });
    return documentSuffix(document.mimeType, first);
}

} // namespace

std::vector<Document> findDocuments(Input& input, Metadata::PartitionMetadata const* metadata,
                                    std::string const& base) {
    std::map<std::uint32_t, Document> streams;
    for (auto const& each : PartitionSurveyor(input, false).survey().partitions)
        if (each.partition->isGenericStream() && streams.size() < mostDocuments)
            streams[each.pack().bodySID()].partitions.push_back(each.partition);
    if (metadata != nullptr && !streams.empty())
        for (auto const& [uid, set] : *metadata)
            takeSet(*set, streams);
    std::vector<Document> documents;
    std::set<std::string> resources = {""};
    for (auto& [stream, document] : streams) {
        document.streamID = stream;
        document.name = "g" + std::to_string(stream);
        bool const isNew = resources.insert(document.resourceID).second;
        document.file = base + "_" + (isNew ? document.resourceID : document.name) + "." + suffixOf(document);
        documents.push_back(std::move(document));
    }
    return documents;
}

void writeDocument(Document& document, OutputFile& file) {
    forContent(document, [&](const unsigned char* bytes, std::size_t size) {
        file.write(bytes, size);
        document.bytes += size;
        return true;
    });
}

} // namespace Zelm
