#include "PathResolver.h"

#include <MXF/Zelm/Exceptions/Exceptions.h>
#include <MXF/Zelm/Platform/Text.h>

#include <algorithm>

namespace Zelm {

using namespace MXF::Zelm;
using Exceptions::InvalidValue;
using Metadata::MetadataSet;
using Choice = PathStep::Choice;

namespace {

/// Candidates that an error lists.
constexpr std::size_t mostCandidates = 8;

std::string listed(std::vector<std::string> const& names) {
    std::string text;
    for (std::size_t i = 0; i < std::min(names.size(), mostCandidates); ++i)
        text += (i == 0 ? "" : ", ") + names[i];
    return names.size() <= mostCandidates ? text : text + "… (" + std::to_string(names.size()) + ")";
}

std::vector<std::string> propertyNames(MetaMetadata::MetaMetadataSet const& definition) {
    std::vector<std::string> names;
    for (auto at = definition.metaAttributesBegin(); at != definition.metaAttributesEnd(); ++at)
        for (auto const* const property : {u"name377", u"name"})
            if (auto const* const name = (*at)->metaElement().findProperty(property))
                names.push_back(Platform::toUtf8(*name));
    return names;
}

bool isReference(MetaMetadata::MetaElement const& element) {
    return dynamic_cast<MetaMetadata::MetaReferenceHolder const*>(&element) != nullptr;
}

/// The place in a list of `count` that a step chooses.
std::size_t placeOf(PathStep const& step, std::size_t count, std::string const& what) {
    std::size_t const number = step.choice == Choice::Last ? count : step.number;
    if (number == 0 || number > count)
        throw InvalidValue("there is no " + step.text() + ": " + what + " " + std::to_string(count));
    return number - 1;
}

} // namespace

MetaMetadata::MetaAttribute const* findAttribute(MetaMetadata::MetaMetadataSet const& definition,
                                                 std::string const& name) {
    std::vector<MetaMetadata::MetaAttribute const*> found;
    std::vector<std::string> names;
    for (auto at = definition.metaAttributesBegin(); at != definition.metaAttributesEnd(); ++at) {
        auto const& element = (*at)->metaElement();
        if (!isCalled(element, name) &&
            !equalButForCase(Platform::toUtf8(element.universalLabel().toString()), name))
            continue;
        found.push_back(at->get());
        names.push_back(preferredName(element) + " (" +
                        Platform::toUtf8(element.universalLabel().toString()) + ")");
    }
    if (found.size() > 1)
        throw InvalidValue("'" + name + "' is the name of several properties: " + listed(names) +
                           "; give the label");
    return found.empty() ? nullptr : found.front();
}

std::vector<PathTarget> PathResolver::resolve(std::string const& path) const {
    auto const steps = parsePath(path);
    if (steps.size() == 1)
        return propertyAnywhere(steps.front());
    auto sets = roots(steps.front());
    for (std::size_t i = 1; i + 1 < steps.size(); ++i) {
        Sets next;
        for (auto* const set : sets)
            for (auto* const found : choose(below(*set, steps[i]), steps[i]))
                next.push_back(found);
        sets = std::move(next);
    }
    std::vector<PathTarget> targets;
    for (auto* const set : sets)
        targets.push_back(property(*set, steps.back()));
    return targets;
}

std::string PathResolver::pathOf(PathTarget const& target) const {
    std::string path = paths_.path(*target.set) + "/" + preferredName(target.attribute->metaElement());
    return target.member ? path + "[" + std::to_string(*target.member + 1) + "]" : path;
}

PathResolver::Sets PathResolver::roots(PathStep const& step) const {
    Sets all;
    for (auto const& place : paths_.places())
        all.push_back(place.set);
    auto found = ofClass(all, step.name);
    for (auto const& place : paths_.places())
        if (found.empty() && place.set->name() == u"Preface")
            found = byProperty(*place.set, step.name).value_or(Sets());
    if (found.empty())
        refuseRoot(step.name);
    return choose(found, step);
}

void PathResolver::refuseRoot(std::string const& name) const {
    std::vector<std::string> names;
    for (auto const& place : paths_.places())
        for (auto const* const definition : paths_.classes().lineage(*place.set))
            names.push_back(preferredName(*definition));
    throw InvalidValue("the metadata has no set '" + name + "'" + suggestion(nearMisses(name, names)));
}

/// What a step leads to from a set: by a reference of that name, or by the class of sets below.
PathResolver::Sets PathResolver::below(MetadataSet& set, PathStep const& step) const {
    if (auto const found = byProperty(set, step.name))
        return *found;
    auto found = ofClass(children(set), step.name);
    if (found.empty())
        found = ofClass(descendants(set), step.name);
    if (!found.empty())
        return found;
    auto names = propertyNames(*set.metaMetadataSet());
    for (auto const* const child : descendants(set))
        names.push_back(paths_.classes().stepName(*child));
    throw InvalidValue(paths_.path(set) + " has no '" + step.name + "'" +
                       suggestion(nearMisses(step.name, names)));
}

/// None when the set's class has no property of that name.
std::optional<PathResolver::Sets> PathResolver::byProperty(MetadataSet& set, std::string const& name) const {
    auto const* const attribute = findAttribute(*set.metaMetadataSet(), name);
    if (attribute == nullptr || !isReference(attribute->metaElement()))
        return std::nullopt;
    auto const* const element = set.findElement(attribute->metaElement().universalLabel());
    if (element == nullptr)
        return std::nullopt; // a class below may have the name too
    auto targets = targetsOf(*element, metadata_);
    std::erase(targets, nullptr);
    return targets;
}

PathResolver::Sets PathResolver::children(MetadataSet const& set) const {
    Sets sets;
    for (auto const child : paths_.place(set).children)
        sets.push_back(paths_.places()[child].set);
    return sets;
}

PathResolver::Sets PathResolver::descendants(MetadataSet const& set) const {
    Sets sets;
    auto open = paths_.place(set).children; // a tree: each set has one place
    std::reverse(open.begin(), open.end());
    while (!open.empty()) {
        auto const& place = paths_.places()[open.back()];
        open.pop_back();
        sets.push_back(place.set);
        open.insert(open.end(), place.children.rbegin(), place.children.rend());
    }
    return sets;
}

PathResolver::Sets PathResolver::ofClass(Sets const& sets, std::string const& name) const {
    Sets exact, inherited;
    for (auto* const set : sets) {
        if (isCalled(*set->metaMetadataSet(), name) || equalButForCase(paths_.classes().stepName(*set), name))
            exact.push_back(set);
        else if (paths_.classes().isA(*set, name))
            inherited.push_back(set);
    }
    return exact.empty() ? inherited : exact;
}

PathResolver::Sets PathResolver::choose(Sets const& sets, PathStep const& step) const {
    if (step.choice == Choice::All)
        return sets;
    if (step.choice == Choice::Only && sets.size() > 1) {
        std::vector<std::string> candidates;
        for (auto const* const set : sets)
            candidates.push_back(paths_.path(*set));
        throw InvalidValue("'" + step.name + "' may be one of " + listed(candidates));
    }
    if (step.choice == Choice::Only && sets.empty())
        throw InvalidValue("'" + step.name + "' is empty");
    std::size_t const place =
        step.choice == Choice::Only ? 0 : placeOf(step, sets.size(), "the number of sets is");
    return {sets[place]};
}

/// A path of one step: a property of the Preface, or one that a single set has.
std::vector<PathTarget> PathResolver::propertyAnywhere(PathStep const& step) const {
    std::vector<PathTarget> found;
    std::vector<std::string> candidates, without;
    for (auto const& place : paths_.places()) {
        auto const* const attribute = findAttribute(*place.set->metaMetadataSet(), step.name);
        if (attribute == nullptr || isReference(attribute->metaElement()))
            continue;
        if (place.set->name() == u"Preface")
            return {property(*place.set, step)};
        if (place.set->findElement(attribute->metaElement().universalLabel()) == nullptr) {
            without.push_back(place.path);
            continue;
        }
        found.push_back(property(*place.set, step));
        candidates.push_back(pathOf(found.back()));
    }
    if (found.size() > 1)
        throw InvalidValue("'" + step.name + "' may be one of " + listed(candidates));
    if (found.empty() && !without.empty())
        throw InvalidValue("no set has a '" + step.name + "'; " + listed(without) + " may have one");
    if (found.empty()) {
        auto const sets = roots(step); // throws when there is no such set either
        throw InvalidValue("'" + step.name + "' is a set (" + paths_.path(*sets.front()) +
                           "): name one of its properties");
    }
    return found;
}

PathTarget PathResolver::property(MetadataSet& set, PathStep const& step) const {
    PathTarget target{&set, findAttribute(*set.metaMetadataSet(), step.name), std::nullopt};
    if (target.attribute == nullptr)
        throw InvalidValue(paths_.path(set) + " has no property '" + step.name + "'" +
                           suggestion(nearMisses(step.name, propertyNames(*set.metaMetadataSet()))));
    if (isReference(target.attribute->metaElement()))
        throw InvalidValue(pathOf(target) + " refers to other sets: name a property of one of those");
    if (step.choice == Choice::Only || step.choice == Choice::All)
        return target;
    auto const* const element = target.element();
    auto const* const collection =
        element != nullptr ? dynamic_cast<Types::Collection const*>(element->baseValue()) : nullptr;
    target.member =
        placeOf(step, collection != nullptr ? collection->count() : 0, "the number of members is");
    return target;
}

} // namespace Zelm
