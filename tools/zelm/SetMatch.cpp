#include "SetMatch.h"

#include "Diff.h"

#include <MXF/Zelm/DataIO/Memory/MemoryDataSink.h>
#include <MXF/Zelm/Metadata/Structural/Properties.h>
#include <MXF/Zelm/Platform/Text.h>
#include <MXF/Zelm/Templates/SafeCast.h>
#include <MXF/Zelm/Types/Strings.h>

#include <algorithm>

namespace Zelm {

using namespace MXF::Zelm;
using Metadata::MetadataSet;

namespace {

/// Properties, by the registers' names, whose values only tell one set from another.
constexpr const char* ignoredIdentifiers[] = {"InstanceID", "GenerationID", "LinkedGenerationID"};

/// Properties that tie sets or files together by a UUID that a writer makes up.
constexpr const char* linkingIdentifiers[] = {"MCALinkID", "SoundfieldGroupLinkID",
                                              "GroupOfSoundfieldGroupsLinkID", "ResourceID",
                                              "AncillaryResourceID"};

/// What tells a set's role among others of its kind.
constexpr const char16_t* roleProperties[] = {u"PackageID", u"TrackID", u"EssenceStreamID", u"LinkedTrackID",
                                              u"MCALabelDictionaryID"};

template <std::size_t N>
bool isOneOf(Metadata::Element const& element, const char* const (&names)[N]) {
    auto const* const own =
        element.metaElement() != nullptr ? element.metaElement()->findProperty(u"name") : nullptr;
    return own != nullptr &&
           std::find(std::begin(names), std::end(names), Platform::toUtf8(*own)) != std::end(names);
}

bool isOfType(Metadata::Element const& element, Types::Identifiers::Identifier type) {
    auto const* const value = element.baseValue();
    return value != nullptr && value->identifier() == type;
}

bool isReference(Metadata::Element const& element) {
    return dynamic_cast<Metadata::ReferenceHolder const*>(&element) != nullptr;
}

/// True when the same roles stand in both lists, in any order, each once.
bool sameRoles(std::vector<std::string> a, std::vector<std::string> b) {
    std::sort(a.begin(), a.end());
    std::sort(b.begin(), b.end());
    bool const distinct = std::adjacent_find(a.begin(), a.end()) == a.end();
    return distinct && a == b;
}

std::vector<AlignedPair> matchByRole(std::vector<std::string> const& a, std::vector<std::string> const& b) {
    std::map<std::string, std::size_t> places;
    for (std::size_t i = 0; i < b.size(); ++i)
        places.emplace(b[i], i);
    std::vector<AlignedPair> pairs;
    for (std::size_t i = 0; i < a.size(); ++i)
        pairs.push_back({i, places.at(a[i])});
    return pairs;
}

} // namespace

Treatment treatmentOf(Metadata::Element const& element, DiffOptions const& options) {
    namespace Id = Types::Identifiers;
    if (isOfType(element, Id::Timestamp))
        return options.dates ? Treatment::Compare : Treatment::Ignore;
    if (options.identifiers)
        return Treatment::Compare;
    if (isOneOf(element, ignoredIdentifiers))
        return Treatment::Ignore;
    bool const isUMID = isOfType(element, Id::UMID32) || isOfType(element, Id::UMID64);
    return isUMID || isOneOf(element, linkingIdentifiers) ? Treatment::Rename : Treatment::Compare;
}

bool Renaming::pair(std::string const& a, std::string const& b) {
    bool const nullA = a.find_first_not_of('\0') == std::string::npos;
    bool const nullB = b.find_first_not_of('\0') == std::string::npos;
    if (nullA || nullB)
        return nullA == nullB;
    auto const known = toB_.find(a);
    if (known != toB_.end())
        return known->second == b;
    if (toA_.contains(b))
        return false;
    toB_.emplace(a, b);
    toA_.emplace(b, a);
    return true;
}

std::string comparableBytes(Types::BaseType const& value) {
    if (value.identifier() == Types::Identifiers::UTF16String ||
        value.identifier() == Types::Identifiers::ISO7String)
        return Platform::toUtf8(value.toString());
    if (value.identifier() == Types::Identifiers::Batch) { // in any order
        std::vector<std::string> members;
        auto const& batch = static_cast<Types::Collection const&>(value);
        for (std::size_t i = 0; i < batch.count(); ++i)
            members.push_back(comparableBytes(batch.at(i)));
        std::sort(members.begin(), members.end());
        std::string bytes;
        for (auto const& member : members)
            bytes += member;
        return bytes;
    }
    DataIO::Memory::MemoryDataSink sink;
    value.serialize(sink);
    return std::string(reinterpret_cast<const char*>(sink.rawBuffer()),
                       Templates::safeCast<std::size_t>(sink.serializedSize()));
}

std::vector<AlignedPair> SetMatcher::match(Sets const& a, Sets const& b) const {
    auto const rolesA = roles(a), rolesB = roles(b);
    if (sameRoles(rolesA, rolesB))
        return matchByRole(rolesA, rolesB);
    auto const contentsA = contents(a), contentsB = contents(b);
    auto const kindsA = kinds(a), kindsB = kinds(b);
    return align(
        a.size(), b.size(), [&](std::size_t i, std::size_t j) { return contentsA[i] == contentsB[j]; },
        [&](std::size_t i, std::size_t j) { return kindsA[i] == kindsB[j]; });
}

std::vector<std::string> SetMatcher::roles(Sets const& sets) const {
    std::vector<std::string> found;
    for (auto const* const set : sets) {
        std::string role = classes_.stepName(*set);
        for (auto const* const name : roleProperties)
            if (auto const* const element = set->findElement(std::u16string_view(name));
                element && element->baseValue())
                role += "/" + comparableBytes(*element->baseValue());
        found.push_back(std::move(role));
    }
    return found;
}

/// What each set is called in paths; of a track also what it carries.
std::vector<std::string> SetMatcher::kinds(Sets const& sets) const {
    std::vector<std::string> found;
    for (auto const* const set : sets) {
        std::string kind = classes_.stepName(*set);
        if (auto const* const segment = set->referencedSet(Metadata::Structural::Properties::sequence.label))
            if (auto const* const definition = segment->findElement(u"DataDefinition"))
                kind += "/" + comparableBytes(*definition->baseValue());
        found.push_back(std::move(kind));
    }
    return found;
}

/// Class and values of each set, what it refers to left out.
std::vector<std::string> SetMatcher::contents(Sets const& sets) const {
    std::vector<std::string> found;
    for (auto const* const set : sets) {
        std::string content(reinterpret_cast<const char*>(set->key().rawBuffer()), KLV::Key::size());
        for (auto const& element : *set)
            if (element->baseValue() != nullptr && !isReference(*element) &&
                treatmentOf(*element, options_) == Treatment::Compare)
                content += Platform::toUtf8(element->name()) + "=" + comparableBytes(*element->baseValue());
        found.push_back(std::move(content));
    }
    return found;
}

} // namespace Zelm
