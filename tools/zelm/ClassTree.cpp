#include "ClassTree.h"

#include <MXF/Zelm/Platform/Text.h>

#include <algorithm>

namespace Zelm {

using namespace MXF::Zelm;

namespace {

constexpr std::size_t deepestInheritance = 32;

char lowerCase(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; }

} // namespace

std::string preferredName(MetaMetadata::PropertyMap const& definition) {
    for (auto const* const property : {u"name377", u"name"})
        if (auto const* const found = definition.findProperty(property))
            return Platform::toUtf8(*found);
    return {};
}

std::string preferredName(Metadata::Element const& element) {
    if (auto const* const definition = element.metaElement())
        if (auto name = preferredName(*definition); !name.empty())
            return name;
    if (auto const* const label = element.universalLabel())
        return Platform::toUtf8(label->toString());
    auto const* const invalid = dynamic_cast<Metadata::InvalidElement const*>(&element);
    return invalid != nullptr ? "tag " + Platform::toUtf8(invalid->tag().toString()) : std::string();
}

bool equalButForCase(std::string_view a, std::string_view b) {
    return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                      [](char x, char y) { return lowerCase(x) == lowerCase(y); });
}

bool isCalled(MetaMetadata::PropertyMap const& definition, std::string_view name) {
    for (auto const* const property : {u"name377", u"name"})
        if (auto const* const found = definition.findProperty(property))
            if (equalButForCase(Platform::toUtf8(*found), name))
                return true;
    return false;
}

ClassTree::ClassTree(MetaMetadata::Dictionary const& dictionary) {
    for (auto at = dictionary.metaMetadataSetBegin(); at != dictionary.metaMetadataSetEnd(); ++at)
        if (auto const* const name = at->second.findProperty(u"name"))
            byName_.emplace(*name, &at->second);
}

ClassTree::Entry const& ClassTree::entry(Metadata::MetadataSet const& set) const {
    auto const [at, added] = entries_.try_emplace(set.metaMetadataSet());
    if (!added)
        return at->second;
    auto& entry = at->second;
    entry.stepName = preferredName(*set.metaMetadataSet());
    for (Definition const* definition = set.metaMetadataSet();
         definition != nullptr && entry.lineage.size() < deepestInheritance;) {
        entry.lineage.push_back(definition);
        if (isCalled(*definition, "Track"))
            entry.stepName = "Track";
        auto const* const parent = definition->findProperty(u"parent");
        auto const found = parent != nullptr ? byName_.find(*parent) : byName_.end();
        definition = found != byName_.end() ? found->second : nullptr;
    }
    return entry;
}

std::vector<ClassTree::Definition const*> const& ClassTree::lineage(Metadata::MetadataSet const& set) const {
    return entry(set).lineage;
}

bool ClassTree::isA(Metadata::MetadataSet const& set, std::string_view name) const {
    auto const& classes = lineage(set);
    return std::any_of(classes.begin(), classes.end(),
                       [&](Definition const* definition) { return isCalled(*definition, name); });
}

std::string const& ClassTree::stepName(Metadata::MetadataSet const& set) const { return entry(set).stepName; }

} // namespace Zelm
