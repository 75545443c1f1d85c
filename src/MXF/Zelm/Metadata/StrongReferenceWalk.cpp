#include "MXF/Zelm/Metadata/StrongReferenceWalk.h"

#include "MXF/Zelm/Exceptions/Exceptions.h"

#include <unordered_set>

namespace MXF::Zelm::Metadata {

namespace {

[[noreturn]] void failCircular(const char16_t* beginning, MetadataSet const& set) {
    auto const* const uid = set.instanceUID();
    throw Exceptions::InvalidStructure(beginning + (uid != nullptr ? uid->toString() : std::u16string()));
}

} // namespace

Templates::vector<MetadataSet const*> strongChildren(MetadataSet const& set) {
    Templates::vector<MetadataSet const*> children;
    if (set.owner() == nullptr)
        return children;
    for (auto const& element : set) {
        auto const* const holder = dynamic_cast<ReferenceHolder const*>(element.get());
        if (holder == nullptr || !holder->isStrong())
            continue;
        for (auto const& target : holder->targets())
            if (auto const* const child = set.owner()->find(target))
                children.push_back(child);
    }
    return children;
}

void requireNoCircle(MetadataSet const& set,
                     Templates::multimap<MetadataSet const*, MetadataSet*> const& parentsOf) {
    std::unordered_set<MetadataSet const*> met;
    Templates::vector<MetadataSet const*> toVisit{&set};
    while (!toVisit.empty()) {
        auto const* const child = toVisit.back();
        toVisit.pop_back();
        for (auto [entry, last] = parentsOf.equal_range(child); entry != last; ++entry) {
            if (entry->second == &set)
                failCircular(u"Circular reference for this instanceUID: ", set);
            if (met.insert(entry->second).second)
                toVisit.push_back(entry->second);
        }
    }
}

void StrongReferenceWalk::enter(MetadataSet const& set) {
    states_[&set] = State::OnPath;
    if (parentsFirst_)
        sets_.push_back(&set);
    path_.push_back({&set, strongChildren(set)});
}

void StrongReferenceWalk::leave() {
    states_[path_.back().set] = State::Done;
    if (!parentsFirst_)
        sets_.push_back(path_.back().set);
    path_.pop_back();
}

void StrongReferenceWalk::from(MetadataSet const& root) {
    if (states_[&root] != State::New)
        return;
    enter(root);
    while (!path_.empty()) {
        Step& step = path_.back();
        if (step.next == step.children.size()) {
            leave();
            continue;
        }
        MetadataSet const& child = *step.children[step.next++];
        State const state = states_[&child];
        if (state == State::OnPath)
            failCircular(circle_, child);
        if (state == State::New)
            enter(child);
    }
}

} // namespace MXF::Zelm::Metadata
