#include "MXF/Zelm/MXFIO/ConstantUnits.h"

#include "MXF/Zelm/Exceptions/Exceptions.h"
#include "MXF/Zelm/GenericContainer/ElementKey.h"

#include <algorithm>
#include <vector>

namespace MXF::Zelm::MXFIO {

using GenericContainer::ElementKey;

namespace {

constexpr std::uint64_t places = 32;

/// More packets than this in an edit unit are walked over.
constexpr std::size_t mostPackets = 1024;

using Keys = std::vector<ElementKey>;

/// The elements from one offset to another; empty when packets do not end there.
Keys elementsBetween(BodyStream& stream, std::uint64_t from, std::uint64_t to) {
    Keys keys;
    stream.seek(from);
    while (stream.absoluteOffset() < to) {
        auto const head = stream.nextPacket();
        if (!head || head->end() > to || keys.size() > mostPackets)
            return {};
        if (ElementKey::isContent(head->key))
            keys.emplace_back(head->key);
        else if (keys.empty())
            return {}; // an edit unit begins with an element
    }
    return keys;
}

bool isSame(Keys const& a, Keys const& b) {
    return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                      [](ElementKey x, ElementKey y) { return x.isSameElement(y); });
}

/// Whether no element follows; in a stream that may go on, one may.
bool endsAt(BodyStream& stream, std::uint64_t offset) {
    stream.seek(offset);
    if (stream.isOpenEnded())
        return true;
    while (auto const head = stream.nextPacket())
        if (ElementKey::isContent(head->key))
            return false;
    return true;
}

std::uint64_t checkPlaces(BodyStream& stream, std::uint64_t size) {
    std::uint64_t const units = stream.length() / size;
    Keys const first = elementsBetween(stream, 0, size);
    if (units < 2 || first.empty())
        return 0;
    for (std::uint64_t i = 0; i < places; ++i)
        if (auto const unit = units / places * i + units % places * i / places;
            !isSame(elementsBetween(stream, unit * size, (unit + 1) * size), first))
            return 0;
    for (std::uint64_t const unit : {units - 2, units - 1})
        if (!isSame(elementsBetween(stream, unit * size, (unit + 1) * size), first))
            return 0;
    return endsAt(stream, units * size) ? units : 0;
}

} // namespace

std::uint64_t constantUnits(BodyStream& stream, std::uint64_t size) {
    if (size == 0 || !stream.isContiguous())
        return 0;
    try {
        return checkPlaces(stream, size);
    } catch (Exceptions::SystemError const&) {
        throw;
    } catch (Exceptions::BaseException const&) {
        return 0; // no packet stands where one should
    }
}

} // namespace MXF::Zelm::MXFIO
