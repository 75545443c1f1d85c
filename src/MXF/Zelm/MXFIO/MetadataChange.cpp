#include "MXF/Zelm/MXFIO/MetadataChange.h"

#include "MXF/Zelm/Platform/Text.h"

#include <algorithm>
#include <map>
#include <utility>

namespace MXF::Zelm::MXFIO {

using namespace Metadata;
using Kind = MetadataChange::Kind;

namespace {

std::string textOf(Element const* element) {
    auto const* const value = element != nullptr ? element->baseValue() : nullptr;
    return value != nullptr ? Platform::toUtf8(value->toString()) : std::string();
}

bool sameValue(Types::BaseType const* a, Types::BaseType const* b) {
    return a == nullptr || b == nullptr ? a == b : a->equals(*b);
}

Kind kindOf(const void* before, const void* after) {
    return before == nullptr  ? Kind::PropertyAdded
           : after == nullptr ? Kind::PropertyRemoved
                              : Kind::PropertyChanged;
}

/// What tells an element from the others of its set: its label, and for an invalid one the tag and how many
/// of that tag came before it.
using ElementName = std::pair<Types::UniversalLabel, std::pair<Types::LocalTag, std::size_t>>;

std::map<ElementName, Element const*> elementsOf(MetadataSet const& set) {
    std::map<ElementName, Element const*> elements;
    for (auto const& element : set)
        elements[{*element->universalLabel(), {}}] = element.get();
    std::map<Types::LocalTag, std::size_t> seen;
    for (auto at = set.invalidBegin(); at != set.invalidEnd(); ++at) {
        auto const& tag = static_cast<InvalidElement const&>(**at).tag();
        auto const* const label = (*at)->universalLabel();
        elements[{label != nullptr ? *label : Types::UniversalLabel(), {tag, ++seen[tag]}}] = at->get();
    }
    return elements;
}

class Comparison {
public:
    std::vector<MetadataChange> of(PartitionMetadata const& before, PartitionMetadata const& after) {
        for (auto const& [key, set] : before)
            compareSet(*set, counterpart(*set, after));
        for (auto const& [key, set] : after)
            if (counterpart(*set, before) == nullptr)
                add(Kind::SetAdded, *set);
        compareDark(before, after);
        return std::move(changes_);
    }

private:
    /// The set of the same class and instance UID.
    static MetadataSet const* counterpart(MetadataSet const& set, PartitionMetadata const& metadata) {
        auto const* const found = metadata.find(*set.instanceUID());
        return found != nullptr && found->key() == set.key() ? found : nullptr;
    }

    MetadataChange& add(Kind kind, MetadataSet const& set) {
        changes_.push_back(
            {kind, set.key(), Platform::toUtf8(set.name()), *set.instanceUID(), {}, {}, {}, {}});
        return changes_.back();
    }

    void compareSet(MetadataSet const& before, MetadataSet const* after) {
        if (after == nullptr) {
            add(Kind::SetRemoved, before);
            return;
        }
        auto const old = elementsOf(before), now = elementsOf(*after);
        for (auto const& [name, element] : old) {
            auto const found = now.find(name);
            compareElement(before, element, found != now.end() ? found->second : nullptr);
        }
        for (auto const& [name, element] : now)
            if (!old.contains(name))
                compareElement(before, nullptr, element);
    }

    void compareElement(MetadataSet const& set, Element const* before, Element const* after) {
        if (before != nullptr && after != nullptr && sameValue(before->baseValue(), after->baseValue()))
            return;
        Element const& either = before != nullptr ? *before : *after;
        auto& change = add(kindOf(before, after), set);
        if (auto const* const label = either.universalLabel())
            change.label = *label;
        change.propertyName = Platform::toUtf8(either.name());
        change.oldValue = textOf(before);
        change.newValue = textOf(after);
    }

    using Content = std::pair<KLV::Key, Types::Unknown const*>;

    struct LessByContent {
        bool operator()(Content const& a, Content const& b) const {
            auto const *const first = a.second->rawBuffer(), *const second = b.second->rawBuffer();
            return a.first != b.first ? a.first < b.first
                                      : std::lexicographical_compare(first, first + a.second->size(), second,
                                                                     second + b.second->size());
        }
    };

    /// Dark sets have no name: those of the same key and bytes are the same, and of the rest those that stood
    /// at the same place are one that was changed.
    void compareDark(PartitionMetadata const& before, PartitionMetadata const& after) {
        std::multimap<Content, DarkMetadataSet const*, LessByContent> old;
        for (auto at = before.darkBegin(); at != before.darkEnd(); ++at)
            old.emplace(Content((*at)->key(), &(*at)->value()), *at);
        std::vector<DarkMetadataSet const*> added;
        for (auto at = after.darkBegin(); at != after.darkEnd(); ++at)
            if (auto const same = old.find({(*at)->key(), &(*at)->value()}); same != old.end())
                old.erase(same);
            else
                added.push_back(*at);
        std::multimap<std::optional<std::uint64_t>, DarkMetadataSet const*> removed;
        for (auto const& [content, set] : old)
            removed.emplace(set->absoluteOffset(), set);
        for (auto const* const set : added) {
            auto const place = removed.find(set->absoluteOffset());
            addDark(place != removed.end() ? place->second : nullptr, set);
            if (place != removed.end())
                removed.erase(place);
        }
        for (auto const& [offset, set] : removed)
            addDark(set, nullptr);
    }

    void addDark(DarkMetadataSet const* before, DarkMetadataSet const* after) {
        MetadataChange change;
        change.kind = Kind::DarkSetChanged;
        change.setKey = (before != nullptr ? before : after)->key();
        if (before != nullptr)
            change.oldValue = Platform::toUtf8(before->value().toString());
        if (after != nullptr)
            change.newValue = Platform::toUtf8(after->value().toString());
        changes_.push_back(std::move(change));
    }

    std::vector<MetadataChange> changes_;
};

} // namespace

std::vector<MetadataChange> compareMetadata(PartitionMetadata const& before, PartitionMetadata const& after) {
    return Comparison().of(before, after);
}

} // namespace MXF::Zelm::MXFIO
