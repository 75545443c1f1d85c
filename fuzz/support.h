/// What the fuzz targets share. Bad input is to give the library's exceptions and nothing else.
#pragma once

#include "MXF/Zelm/DataIO/Memory/MemoryDataSink.h"
#include "MXF/Zelm/DataIO/Memory/MemoryViewDataSource.h"
#include "MXF/Zelm/Exceptions/Exceptions.h"
#include "MXF/ZelmDictionary/Dictionary.h"

#include <cstdlib>
#include <cstring>

namespace MXF::Zelm::Fuzz {

/// Ends the program, which is how a target reports a fault.
inline void require(bool holds) {
    if (!holds)
        std::abort();
}

/// The standard dictionary, made once.
inline ZelmDictionary::SharedDictionary const& dictionary() {
    static auto const standard = ZelmDictionary::standard();
    return standard;
}

template <class Action>
void passingOverBadInput(Action action) {
    try {
        action();
    } catch (Exceptions::BaseException const&) {
        // What bad input is to give.
    }
}

inline bool sameBytes(DataIO::Memory::MemoryDataSink const& a, DataIO::Memory::MemoryDataSink const& b) {
    return a.serializedSize() == b.serializedSize() &&
           (a.serializedSize() == 0 ||
            std::memcmp(a.rawBuffer(), b.rawBuffer(), static_cast<std::size_t>(a.serializedSize())) == 0);
}

} // namespace MXF::Zelm::Fuzz
