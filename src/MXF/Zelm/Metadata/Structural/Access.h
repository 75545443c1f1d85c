/// How the accessors of the structural classes reach the elements of their set: each is one line over a row.
#pragma once

#include "MXF/Zelm/Metadata/MetadataSet.h"
#include "MXF/Zelm/Metadata/Structural/Property.h"

namespace MXF::Zelm::Metadata::Structural {

/// Null when the set has no such property.
template <class T>
T const* get(MetadataSet const& set, Property<T> const& row) {
    return set.value<T>(row.label);
}

template <class T>
void put(MetadataSet& set, Property<T> const& row, T const& value) {
    set.value(row.label, value);
}

/// Appends a member to an array or batch.
template <class T>
void add(MetadataSet& set, Property<T> const& row, Types::SimpleDataType const& member) {
    set.add(row.label, member);
}

/// Null when the set has no such reference, or it leads to no set of the class.
template <class Target>
Target* get(MetadataSet const& set, Reference<Target> const& row) {
    return dynamic_cast<Target*>(set.referencedSet(row.label));
}

template <class Target>
void put(MetadataSet& set, Reference<Target> const& row, Target const& target) {
    set.reference(row.label, target);
}

/// The sets of the class that the references lead to, in their order.
template <class Target>
Templates::vector<Target*> get(MetadataSet const& set, References<Target> const& row) {
    Templates::vector<Target*> targets;
    for (auto* const referenced : set.referencedSets(row.label))
        if (auto* const target = dynamic_cast<Target*>(referenced))
            targets.push_back(target);
    return targets;
}

template <class Target>
void add(MetadataSet& set, References<Target> const& row, Target const& target) {
    set.addReference(row.label, target);
}

/// False when no reference leads to `target`.
template <class Target>
bool remove(MetadataSet& set, References<Target> const& row, Target const& target) {
    return set.removeReference(row.label, target);
}

/// Removes the property, whatever it holds; nothing happens when the set has none.
template <class Row>
void reset(MetadataSet& set, Row const& row) {
    set.removeElement(row.label);
}

} // namespace MXF::Zelm::Metadata::Structural
