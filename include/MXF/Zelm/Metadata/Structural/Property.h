/// Rows that tie the accessors of the structural classes to the properties of a set: one row a property.
///
/// A row holds the property's label and, in its type, what the property holds. How required a property is,
/// its limits and its distinguished value stand in the dictionary alone.
#pragma once

#include "MXF/Zelm/KLV/Key.h"

namespace MXF::Zelm::Metadata::Structural {

/// A value of the class `T` (of `Types`), arrays and batches of values among them.
template <class T>
struct Property {
    KLV::Key label;
};

/// A strong or weak reference to a set of the class `Target`.
template <class Target>
struct Reference {
    KLV::Key label;
};

/// Strong or weak references to sets of the class `Target`.
template <class Target>
struct References {
    KLV::Key label;
};

} // namespace MXF::Zelm::Metadata::Structural
