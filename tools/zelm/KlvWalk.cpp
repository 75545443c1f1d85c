#include "KlvWalk.h"

#include "Text.h"

#include <MXF/Zelm/Exceptions/Exceptions.h>

#include <algorithm>

namespace Zelm {

using namespace MXF::Zelm;

KlvWalk::KlvWalk(Input& input, std::uint64_t offset)
    : source_(input.source), reader_(input.reader.klvReader()), next_(offset) {}

/// Reads the packet at the source's position. Throws what the reader does.
void KlvWalk::read(Packet& packet) {
    std::uint64_t skipped = 0;
    auto const found = reader_.nextKLV(skipped, 0);
    packet.key = found->key();
    packet.offset = found->keyAbsoluteOffset();
    packet.berLength = found->berLength();
    packet.length = found->length();
    packet.present = std::min(packet.length, source_.remaining());
}

bool KlvWalk::next(Packet& packet) {
    if (fault_)
        return false;
    source_.seek(next_);
    if (source_.endOfStream())
        return false;
    try {
        read(packet);
    } catch (Exceptions::SystemError const&) {
        throw;
    } catch (Exceptions::BaseException const& failure) {
        fault_ = explain(failure);
        gapStart_ = next_;
        return false;
    }
    next_ = packet.end();
    if (packet.present < packet.length) {
        fault_ = Fault{"the file ends inside a value: " + grouped(packet.length) + " bytes announced, " +
                           grouped(packet.present) + " there",
                       packet.offset};
        gapStart_ = packet.valueOffset();
    }
    return true;
}

/// Why no packet could be read at the expected place.
Fault KlvWalk::explain(Exceptions::BaseException const& failure) {
    unsigned char start[4] = {};
    source_.seek(next_);
    std::uint64_t const left = source_.remaining();
    std::uint64_t const got = source_.read(start, sizeof start);
    if (!std::equal(start, start + got, KLV::groupKeyPattern))
        return {"no key where one is expected", next_};
    if (failure.message() == "Not enough data")
        return {"the file ends inside the key or the length of a packet, after " + grouped(left) + " bytes",
                next_};
    if (failure.message().starts_with("Exceeded"))
        return {"no key of a packet where one is expected, but another label", next_};
    return {failure.message(), failure.offset().value_or(next_)};
}

/// True when a packet that the file holds in full begins at `offset`.
bool KlvWalk::fits(std::uint64_t offset, Packet& packet) {
    source_.seek(offset);
    try {
        read(packet);
        return packet.present == packet.length;
    } catch (Exceptions::SystemError const&) {
        throw;
    } catch (Exceptions::BaseException const&) {
        return false;
    }
}

std::optional<KlvWalk::Gap> KlvWalk::resynchronise() {
    Packet packet;
    for (std::uint64_t at = gapStart_ + 1; at - gapStart_ <= searchLimit; ++at) {
        std::uint64_t skipped = 0;
        source_.seek(at);
        try {
            reader_.peekNextKey(skipped, searchLimit - (at - gapStart_));
        } catch (Exceptions::SystemError const&) {
            throw;
        } catch (Exceptions::BaseException const&) {
            return std::nullopt;
        }
        at += skipped;
        if (fits(at, packet)) {
            fault_.reset();
            next_ = at;
            return Gap{gapStart_, at - gapStart_};
        }
    }
    return std::nullopt;
}

} // namespace Zelm
