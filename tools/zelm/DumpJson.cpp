/// The JSON of `zelm dump`.
#include "DumpReport.h"
#include "Json.h"
#include "ValueText.h"

#include <MXF/Zelm/Exceptions/Exceptions.h>
#include <MXF/Zelm/Platform/Text.h>
#include <MXF/ZelmDictionary/Names.h>

#include <iostream>

namespace Zelm {

using namespace MXF::Zelm;
using Metadata::MetadataSet;

namespace {

Json hexBytes(const unsigned char* bytes, std::size_t size) { return bytesText(bytes, size, size); }

Json uidJson(MetadataSet const& set) {
    return toJson(static_cast<Types::BaseType const*>(set.instanceUID()));
}

/// What all properties have; `lengthWidth` is the bytes of their length fields.
Json placeJson(Metadata::Element const& element, unsigned lengthWidth) {
    Json property;
    property["name"] =
        element.metaElement() != nullptr ? Json(Platform::toUtf8(element.name())) : Json(nullptr);
    auto const* const label = element.universalLabel();
    property["label"] = toJson(static_cast<Types::BaseType const*>(label));
    property["offset"] = orNull(element.absoluteOffset());
    property["length"] = element.serializedSize(static_cast<int>(lengthWidth));
    return property;
}

Json typeJson(Types::BaseType const* value) {
    if (value == nullptr)
        return nullptr;
    std::string type(Types::Identifiers::toText(value->identifier()));
    if (Types::Identifiers::isCollection(value->identifier()))
        type +=
            " of " +
            std::string(Types::Identifiers::toText(static_cast<Types::Collection const*>(value)->subType()));
    return type;
}

/// Names of the labels in a collection, where there are any.
Json namesJson(Types::Collection const& collection) {
    Json names = Json::array();
    bool any = false;
    for (std::size_t i = 0; i < collection.count(); ++i) {
        auto const* const label = Types::valueCast<Types::UniversalLabel>(&collection.at(i));
        std::string const name = label != nullptr ? MXF::ZelmDictionary::labelName(*label) : std::string();
        any = any || !name.empty();
        names.push_back(name.empty() ? Json(nullptr) : Json(name));
    }
    return any ? names : Json(nullptr);
}

Json propertyJson(Metadata::Element const& element, unsigned lengthWidth) {
    Json property = placeJson(element, lengthWidth);
    auto const* const value = element.baseValue();
    property["type"] = typeJson(value);
    property["value"] = toJson(value);
    if (std::string const name = valueName(element); !name.empty())
        property["value_name"] = name;
    if (value != nullptr && Types::Identifiers::isCollection(value->identifier()))
        if (Json names = namesJson(static_cast<Types::Collection const&>(*value)); !names.is_null())
            property["value_names"] = std::move(names);
    if (Json content = indirectValue(element); !content.is_null())
        property["indirect_value"] = std::move(content);
    return property;
}

Json invalidJson(Metadata::InvalidElement const& element, unsigned lengthWidth) {
    Json property = placeJson(element, lengthWidth);
    property["tag"] = Platform::toUtf8(element.tag().toString());
    property["unknown"] = true;
    property["reason"] = invalidReason(element);
    property["value"] = hexBytes(element.value().rawBuffer(), element.value().size());
    return property;
}

Json setJson(MetadataSet const& set) {
    unsigned const lengthWidth = set.key().lengthFieldLength();
    Json json;
    json["class"] = Platform::toUtf8(set.name());
    json["key"] = toJson(set.key());
    json["instance_uid"] = uidJson(set);
    json["offset"] = orNull(set.absoluteOffset());
    json["length"] = set.serializedSize(true);
    json["dark"] = false;
    json["properties"] = Json::array();
    for (auto const& element : set)
        json["properties"].push_back(propertyJson(*element, lengthWidth));
    for (auto element = set.invalidBegin(); element != set.invalidEnd(); ++element)
        json["properties"].push_back(
            invalidJson(static_cast<Metadata::InvalidElement const&>(**element), lengthWidth));
    return json;
}

Json darkJson(Metadata::DarkMetadataSet const& set) {
    Json json;
    json["class"] = nullptr;
    json["key"] = toJson(set.key());
    json["instance_uid"] = nullptr;
    json["offset"] = orNull(set.absoluteOffset());
    json["length"] = set.serializedSize();
    json["dark"] = true;
    json["reason"] = set.reason().empty() ? "the dictionary does not define the class" : set.reason();
    json["value"] = hexBytes(set.value().rawBuffer(), set.value().size());
    json["properties"] = Json::array();
    return json;
}

/// Sets in the order of their references, or by key where those go in circles.
std::vector<MetadataSet const*> ordered(Metadata::PartitionMetadata const& metadata) {
    std::vector<MetadataSet const*> sets;
    try {
        metadata.calculateSerializationOrder(sets, true, true);
    } catch (Exceptions::BaseException const&) {
        sets.clear();
        for (auto const& [key, set] : metadata)
            sets.push_back(set);
    }
    return sets;
}

Json partitionJson(MXFIO::Partition const& partition) {
    Json json;
    json["offset"] = partition.partitionAbsoluteOffset();
    json["kind"] = partitionKindText(partition);
    json["status"] = partitionStatusText(partition);
    json["header_byte_count"] = partition.partitionPack().headerByteCount();
    return json;
}

Json primerJson(Packs::PrimerPack const& primer) {
    Json entries = Json::array();
    for (auto const& [tag, label] : primer.entries())
        entries.push_back(
            {{"tag", Platform::toUtf8(tag.toString())}, {"label", Platform::toUtf8(label.toString())}});
    return entries;
}

} // namespace

void printDumpJson(DumpReport const& report) {
    Json json = jsonReport();
    json["file"] = report.file;
    json["partition"] = report.partition != nullptr ? partitionJson(*report.partition) : Json(nullptr);
    json["sets"] = Json::array();
    if (report.metadata) {
        for (auto const* const set : ordered(*report.metadata))
            json["sets"].push_back(setJson(*set));
        for (auto dark = report.metadata->darkBegin(); dark != report.metadata->darkEnd(); ++dark)
            json["sets"].push_back(darkJson(**dark));
        json["primer"] = primerJson(report.metadata->partitionDictionary().primer());
    }
    json["faults"] = Json::array();
    for (auto const& fault : report.faults)
        json["faults"].push_back({{"message", fault.message}, {"offset", orNull(fault.offset)}});
    print(json);
}

} // namespace Zelm
