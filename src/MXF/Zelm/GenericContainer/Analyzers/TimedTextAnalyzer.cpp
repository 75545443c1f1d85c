#include "MXF/Zelm/GenericContainer/Analyzers/TimedTextAnalyzer.h"

#include "MXF/Zelm/Exceptions/Exceptions.h"
#include "MXF/Zelm/GenericContainer/ElementKey.h"
#include "MXF/Zelm/Metadata/Structural/DataDescriptors.h"
#include "MXF/Zelm/Metadata/Structural/DescriptorKeys.h"
#include "MXF/Zelm/Platform/Text.h"
#include "MXF/Zelm/Types/Strings.h"

#include <algorithm>
#include <cmath>

namespace MXF::Zelm::GenericContainer {

namespace {

using namespace KLV::Literals;
using Essence::TimedText::Document;
using Metadata::MetadataSet;
using Metadata::Structural::FileDescriptor;
namespace DescriptorKeys = Metadata::Structural::DescriptorKeys;

constexpr auto timedText = "060E2B34.0401010A.0D010301.02130101"_key;
constexpr unsigned char timedTextElement = 0x0B;

void put(MetadataSet& set, std::u16string_view property, Types::BaseType const& value) {
    set.value(set.labelOf(property), value);
}

void putText(MetadataSet& set, std::u16string_view property, std::string const& text) {
    put(set, property, Types::UTF16String(Platform::toUtf16(text)));
}

FileDescriptor& newDescriptor(Metadata::PartitionMetadata& metadata) {
    auto& set = metadata.createMetadataSet(DescriptorKeys::dcTimedTextDescriptor);
    auto* const descriptor = dynamic_cast<Metadata::Structural::GenericDataEssenceDescriptor*>(&set);
    if (descriptor == nullptr)
        Metadata::Structural::failUnregistered(set);
    return *descriptor;
}

void describeResource(MetadataSet& set, TimedTextResource const& resource) {
    put(set, u"AncillaryResourceID", resource.id);
    put(set, u"MIMEType", Types::UTF16String(resource.mediaType));
    put(set, u"EssenceStreamID", Types::UInt32(resource.streamID));
}

} // namespace

TimedTextAnalyzer::TimedTextAnalyzer(Templates::SharedPtr<DataIO::SliceSource> source,
                                     TimedTextOptions options)
    : source_(std::move(source)), options_(std::move(options)) {}

TimedTextAnalyzer::~TimedTextAnalyzer() = default;

bool TimedTextAnalyzer::preload() {
    if (document_)
        return true;
    source_->read(Document::largest + 1, bytes_);
    document_ = Document::read(bytes_);
    resourceID_ = options_.resourceID.value_or(document_->id.empty()
                                                   ? Types::UUID::generate()
                                                   : Types::UUID::fromText(Platform::toUtf16(document_->id)));
    return true;
}

Document const& TimedTextAnalyzer::document() const {
    if (!document_)
        throw Exceptions::InvalidStructure("The timed text has not been looked at yet");
    return *document_;
}

Templates::Rational<int> TimedTextAnalyzer::editRate() const {
    if (options_.editRate.isKnown())
        return options_.editRate;
    return document_ && document_->frameRate.isKnown() ? document_->frameRate : BasicAnalyzer::editRate();
}

Types::UniversalLabel TimedTextAnalyzer::universalLabel() const { return timedText; }
unsigned char TimedTextAnalyzer::itemTypeIdentifier() const { return ElementKey::Data; }
unsigned char TimedTextAnalyzer::essenceElementType() const { return timedTextElement; }

std::optional<std::uint64_t> TimedTextAnalyzer::byteCount() const {
    return document_ ? std::optional(bytes_.size()) : std::nullopt;
}

/// In edit units, the last one begun counting whole; at least one.
std::uint64_t TimedTextAnalyzer::length() const {
    constexpr double inaccuracy = 1e-6;
    if (options_.length != 0)
        return options_.length;
    double const units = std::ceil(document().duration * editRate().toDouble() - inaccuracy);
    return units > 1 ? static_cast<std::uint64_t>(units) : 1;
}

void TimedTextAnalyzer::describeDocument(MetadataSet& descriptor) const {
    auto const& known = document();
    put(descriptor, u"ResourceID", resourceID_);
    putText(descriptor, u"UCSEncoding", known.encoding);
    putText(descriptor, u"NamespaceURI", known.profile.empty() ? known.namespaceURI : known.profile);
    if (!known.language.empty())
        putText(descriptor, u"RFC5646LanguageTagList", known.language);
}

FileDescriptor& TimedTextAnalyzer::describe(Metadata::PartitionMetadata& metadata, FileDescriptor* present) {
    if (present != nullptr && present->key() != DescriptorKeys::dcTimedTextDescriptor)
        failDescriptorClass(*present);
    auto& descriptor = present != nullptr ? *present : newDescriptor(metadata);
    descriptor.sampleRate(Types::Rational(editRate()));
    descriptor.essenceContainer(universalLabel());
    describeDocument(descriptor);
    if (present != nullptr)
        return descriptor;
    for (auto const& resource : options_.resources) {
        auto& set = metadata.createMetadataSet(DescriptorKeys::dcTimedTextResourceSubDescriptor);
        describeResource(set, resource);
        descriptor.addSubDescriptor(set);
    }
    return descriptor;
}

bool TimedTextAnalyzer::hasMore() const { return !bytes_.empty(); }

std::uint64_t TimedTextAnalyzer::read(EditUnit& unit) {
    unit.data = std::move(bytes_);
    bytes_.clear();
    return length();
}

} // namespace MXF::Zelm::GenericContainer
