#include "SetPaths.h"

#include <map>

namespace Zelm {

using namespace MXF::Zelm;
using Metadata::MetadataSet;

namespace {

/// A set so deep begins a path of its own: a broken file may nest its sets without end.
constexpr std::size_t deepestLevel = 24;

std::string numbered(std::string const& name, std::size_t number, std::size_t count) {
    return count > 1 ? name + "[" + std::to_string(number) + "]" : name;
}

} // namespace

Metadata::ReferenceHolder const* strongHolder(Metadata::Element const& element) {
    auto const* const holder = dynamic_cast<Metadata::ReferenceHolder const*>(&element);
    return holder != nullptr && holder->isStrong() ? holder : nullptr;
}

std::vector<MetadataSet*> targetsOf(Metadata::Element const& element,
                                    Metadata::PartitionMetadata const& metadata) {
    std::vector<MetadataSet*> sets;
    if (auto const* const holder = dynamic_cast<Metadata::ReferenceHolder const*>(&element))
        for (auto const& target : holder->targets())
            sets.push_back(metadata.find(target));
    return sets;
}

SetPaths::SetPaths(Metadata::PartitionMetadata const& metadata, ClassTree const& classes)
    : metadata_(metadata), classes_(classes) {
    for (auto const& [key, set] : metadata)
        if (set->name() == u"Preface")
            visitFrom(*set);
    for (auto const& [key, set] : metadata)
        if (!numbers_.contains(set))
            visitFrom(*set);
    nameRoots();
    nameOthers();
}

void SetPaths::visitFrom(MetadataSet& root) {
    std::vector<Step> steps{{&root, none, nullptr}};
    while (!steps.empty()) {
        Step const step = steps.back();
        steps.pop_back();
        if (!numbers_.emplace(step.set, places_.size()).second)
            continue;
        if (step.parent != none)
            places_[step.parent].children.push_back(places_.size());
        levels_.push_back(step.parent == none ? 0 : levels_[step.parent] + 1);
        steps_.push_back(step);
        places_.push_back({step.set, {}, step.parent == none, {}});
        pushChildren(places_.size() - 1, steps);
    }
}

/// The last child first, so that the first is visited next.
void SetPaths::pushChildren(std::size_t place, std::vector<Step>& steps) const {
    auto const first = static_cast<std::ptrdiff_t>(steps.size());
    for (auto const& element : *places_[place].set)
        if (strongHolder(*element) != nullptr)
            for (auto* const child : targetsOf(*element, metadata_))
                if (child != nullptr && !numbers_.contains(child))
                    steps.push_back({child, place, element.get()});
    std::reverse(steps.begin() + first, steps.end());
}

bool SetPaths::isRoot(std::size_t place) const {
    std::size_t const parent = steps_[place].parent;
    if (parent == none || levels_[place] % deepestLevel == 0)
        return true;
    auto const& name = classes_.stepName(*places_[parent].set);
    return name == "Preface" || name == "ContentStorage";
}

void SetPaths::nameRoots() {
    std::map<std::string, std::size_t> counts, seen;
    for (auto const& place : places_)
        ++counts[classes_.stepName(*place.set)];
    for (std::size_t i = 0; i < places_.size(); ++i) {
        auto const& name = classes_.stepName(*places_[i].set);
        std::size_t const number = ++seen[name];
        if (isRoot(i))
            places_[i].path = numbered(name, number, counts[name]);
    }
}

void SetPaths::nameOthers() {
    for (auto const& parent : places_) {
        std::map<std::string, std::size_t> counts, seen;
        for (auto const child : parent.children)
            ++counts[classes_.stepName(*places_[child].set)];
        for (auto const child : parent.children) {
            auto const& name = classes_.stepName(*places_[child].set);
            std::size_t const number = ++seen[name];
            if (isRoot(child))
                continue;
            bool const single =
                dynamic_cast<Metadata::ReferenceElement const*>(steps_[child].reference) != nullptr;
            places_[child].path =
                parent.path + "/" +
                (single ? preferredName(*steps_[child].reference) : numbered(name, number, counts[name]));
        }
    }
}

} // namespace Zelm
