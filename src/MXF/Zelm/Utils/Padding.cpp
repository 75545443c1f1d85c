#include "MXF/Zelm/Utils/Padding.h"

#include "MXF/Zelm/ByteCoders/BER.h"
#include "MXF/Zelm/Exceptions/Exceptions.h"
#include "MXF/Zelm/KLV/Key.h"

#include <algorithm>
#include <string>
#include <vector>

namespace MXF::Zelm::Utils {

namespace {

/// Key and length of a fill item with `length` bytes of fill.
DataIO::Slice fillHead(std::uint64_t length, unsigned char berLength) {
    if (berLength < ByteCoders::calculateBERSize(length))
        throw Exceptions::InvalidLength("A fill item's length of " + std::to_string(length) +
                                        " does not fit in " + std::to_string(berLength) + " bytes");
    unsigned char head[KLV::Key::size() + ByteCoders::maximumBERSize];
    std::copy_n(KLV::fillItemKey().rawBuffer(), KLV::Key::size(), head);
    ByteCoders::codeBER(length, berLength, head + KLV::Key::size());
    return DataIO::Slice::copyOf(head, KLV::Key::size() + berLength);
}

} // namespace

Padding::Padding(std::size_t blockSize)
    : zeros_(DataIO::Slice::adopt(std::vector<unsigned char>(std::max<std::size_t>(blockSize, 1)))) {}

void Padding::appendZeros(DataIO::Chain& chain, std::uint64_t size) const {
    for (; size > zeros_.size(); size -= zeros_.size())
        chain.append(zeros_);
    chain.append(zeros_.part(0, static_cast<std::size_t>(size)));
}

void Padding::appendFillItem(DataIO::Chain& chain, std::uint64_t size, unsigned char berLength) const {
    std::uint64_t const headSize = KLV::Key::size() + berLength;
    if (size < headSize)
        throw Exceptions::InvalidLength("A fill item of " + std::to_string(size) +
                                        " bytes, its key and length take " + std::to_string(headSize));
    chain.append(fillHead(size - headSize, berLength));
    appendZeros(chain, size - headSize);
}

} // namespace MXF::Zelm::Utils
