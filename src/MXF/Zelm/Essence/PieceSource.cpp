#include "MXF/Zelm/Essence/PieceSource.h"

#include <utility>

namespace MXF::Zelm::Essence {

PieceSource::~PieceSource() = default;

DataIO::Chain PieceSource::next(std::uint64_t size) {
    while (pending_.empty())
        if (!produce(pending_))
            break;
    auto front = pending_.splitFrontUpTo(size);
    position_ += front.size();
    return front;
}

DataIO::Chain PieceSource::takePending() {
    position_ += pending_.size();
    return std::exchange(pending_, {});
}

std::uint64_t PieceSource::read(std::uint64_t size, DataIO::Chain& chain) {
    std::uint64_t done = 0;
    while (done < size) {
        auto front = next(size - done);
        if (front.empty())
            break;
        done += front.size();
        chain.append(std::move(front));
    }
    return done;
}

std::uint64_t PieceSource::skip(std::uint64_t size) {
    std::uint64_t done = 0;
    while (done < size) {
        std::uint64_t const count = next(size - done).size();
        if (count == 0)
            break;
        done += count;
    }
    return done;
}

} // namespace MXF::Zelm::Essence
