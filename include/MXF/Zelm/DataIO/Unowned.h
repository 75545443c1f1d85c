/// A shared pointer to what somebody else owns.
#pragma once

#include "MXF/Zelm/Templates/Memory.h"

namespace MXF::Zelm::DataIO {

/// For classes that share a source or sink, when the caller keeps it: `object` must outlive them.
template <class T>
Templates::SharedPtr<T> unowned(T& object) {
    return {Templates::SharedPtr<void>(), &object};
}

} // namespace MXF::Zelm::DataIO
