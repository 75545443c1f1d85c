#include "MetadataEditor.h"

#include "FrameworkEdit.h"
#include "PropertyValue.h"
#include "Writer.h"

#include <MXF/Zelm/Exceptions/Exceptions.h>
#include <MXF/Zelm/KLV/Key.h>
#include <MXF/Zelm/Metadata/Structural/Properties.h>
#include <MXF/Zelm/Types/Strings.h>
#include <MXF/Zelm/Types/Timestamp.h>

#include <algorithm>

namespace Zelm {

using namespace MXF::Zelm;
using namespace MXF::Zelm::KLV::Literals;
using Exceptions::InvalidValue;
using Metadata::MetadataSet;

namespace {

constexpr auto identificationKey = "060E2B34.02530101.0D010101.01013000"_key;

/// Sets a property that the standard dictionary gives the class.
void setProperty(MetadataSet& set, const char* name, Types::BaseType const& value) {
    if (auto const* const attribute = findAttribute(*set.metaMetadataSet(), name))
        set.value(attribute->metaElement().universalLabel(), value);
}

MetadataSet& addIdentification(Metadata::PartitionMetadata& metadata, Types::UUID const& generation) {
    auto const product = thisProduct();
    auto& set = metadata.createMetadataSet(identificationKey);
    setProperty(set, "ThisGenerationUID", generation);
    setProperty(set, "CompanyName", Types::UTF16String(product.companyName));
    setProperty(set, "ProductName", Types::UTF16String(product.productName));
    setProperty(set, "VersionString", Types::UTF16String(product.versionString));
    setProperty(set, "ProductUID", product.productUID);
    setProperty(set, "ModificationDate", Types::Timestamp::now());
    return set;
}

void appendTo(MetadataSet& owner, const char* property, MetadataSet const& member) {
    auto const* const attribute = findAttribute(*owner.metaMetadataSet(), property);
    if (attribute == nullptr)
        return;
    auto const& label = attribute->metaElement().universalLabel();
    if (owner.findElement(label) == nullptr) {
        Types::Array const empty(Types::Identifiers::StrongReference);
        owner.value(label, empty);
    }
    dynamic_cast<Metadata::CollectionReferenceElement&>(owner.find(label)).addReference(member);
}

} // namespace

void MetadataEditor::apply(PropertyEdit const& edit) {
    try {
        for (auto const& target : resolver_.resolve(edit.path))
            change(target, edit.value);
    } catch (Exceptions::BaseException const& refusal) {
        throw InvalidValue(edit.path + ": " + refusal.message());
    }
}

void MetadataEditor::addFramework(std::string const& text) {
    try {
        auto& package = Zelm::addFramework(metadata_, parseFramework(text));
        touched_.emplace_back(&package, Metadata::Structural::Properties::tracks.label);
    } catch (Exceptions::BaseException const& refusal) {
        throw InvalidValue(text + ": " + refusal.message());
    }
}

void MetadataEditor::change(PathTarget const& target, std::optional<std::string> const& value) {
    auto const& definition = target.attribute->metaElement();
    if (isCalled(definition, "InstanceUID"))
        throw InvalidValue("other sets refer to this one by it: it cannot be changed");
    auto const* const old = target.element();
    auto const before = old != nullptr ? old->baseValue()->copy() : nullptr;
    if (!target.member) {
        if (value)
            target.set->value(target.label(), *parseValue(definition, *value));
        else if (!target.set->removeElement(target.label()))
            throw InvalidValue("the set has no such property");
    } else {
        auto& collection = dynamic_cast<Metadata::CollectionElement&>(*target.element());
        if (value)
            collection.set(*target.member, *parseMember(definition, *value));
        else
            collection.remove(*target.member);
    }
    named_.emplace_back(target.set, target.label());
    auto const* const now = target.element();
    if (!before || now == nullptr || !before->equals(*now->baseValue()))
        touched_.emplace_back(target.set, target.label());
}

bool MetadataEditor::isNamed(MetadataSet const& set, Types::UniversalLabel const& label) const {
    return std::any_of(named_.begin(), named_.end(),
                       [&](auto const& entry) { return entry.first == &set && entry.second == label; });
}

bool MetadataEditor::isTouchedBelow(std::size_t place) const {
    std::vector<std::size_t> open{place};
    while (!open.empty()) {
        auto const& at = paths_.places()[open.back()];
        open.pop_back();
        if (std::any_of(touched_.begin(), touched_.end(),
                        [&](auto const& entry) { return entry.first == at.set; }))
            return true;
        open.insert(open.end(), at.children.begin(), at.children.end());
    }
    return false;
}

void MetadataEditor::setDate(MetadataSet& set, const char* property) {
    auto const* const attribute = findAttribute(*set.metaMetadataSet(), property);
    if (attribute != nullptr && !isNamed(set, attribute->metaElement().universalLabel()))
        set.value(attribute->metaElement().universalLabel(), Types::Timestamp::now());
}

void MetadataEditor::addHistory() {
    auto const generation = Types::UUID::generate();
    auto& preface = metadata_.preface();
    setDate(preface, "LastModifiedDate");
    for (std::size_t i = 0; i < paths_.places().size(); ++i)
        if (auto& set = *paths_.places()[i].set; paths_.classes().isA(set, "Package") && isTouchedBelow(i))
            setDate(set, "PackageModifiedDate");
    for (auto const& [set, label] : touched_) // those that name the generation which changed them
        if (auto const* const attribute = findAttribute(*set->metaMetadataSet(), "GenerationUID");
            attribute != nullptr && set->findElement(attribute->metaElement().universalLabel()) != nullptr)
            set->value(attribute->metaElement().universalLabel(), generation);
    appendTo(preface, "Identifications", addIdentification(metadata_, generation));
}

} // namespace Zelm
