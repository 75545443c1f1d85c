#include "MXF/Zelm/DataIO/SyncWordFinder.h"

#include "MXF/Zelm/Exceptions/Exceptions.h"

#include <algorithm>
#include <cstring>
#include <string>
#include <utility>

namespace MXF::Zelm::DataIO {

namespace {

/// Places that are looked at together.
constexpr std::size_t stride = 64;

/// Whether first and last byte of the word stand at their places anywhere in a stride. The loop has neither
/// branch nor early end, so that compilers make vector instructions of it.
bool mayStandIn(const unsigned char* bytes, std::span<const unsigned char> word) {
    unsigned char const first = word.front(), last = word.back();
    const unsigned char* const ends = bytes + word.size() - 1;
    unsigned char found = 0;
    for (std::size_t i = 0; i < stride; ++i)
        found |= static_cast<unsigned char>((bytes[i] == first) & (ends[i] == last));
    return found != 0;
}

/// The first place from `from` on below `to` where the word stands; `to` if there is none. All bytes that a
/// word at these places has are there.
std::size_t find(const unsigned char* bytes, std::size_t from, std::size_t to,
                 std::span<const unsigned char> word) {
    while (from < to) {
        std::size_t const end = from + std::min(stride, to - from);
        if (end - from == stride && !mayStandIn(bytes + from, word)) {
            from = end;
            continue;
        }
        for (; from < end; ++from)
            if (bytes[from] == word.front() && bytes[from + word.size() - 1] == word.back() &&
                std::memcmp(bytes + from, word.data(), word.size()) == 0)
                return from;
    }
    return to;
}

} // namespace

SyncWordFinder::SyncWordFinder(std::span<const unsigned char> word, std::uint64_t position)
    : wordSize_(word.size()), position_(position) {
    if (word.empty() || word.size() > longestWord)
        throw Exceptions::InvalidValue("A sync word of " + std::to_string(word.size()) +
                                       " bytes, expected 1 to " + std::to_string(longestWord));
    std::copy(word.begin(), word.end(), word_);
}

void SyncWordFinder::push(Slice slice) {
    if (!slice.empty())
        pending_.append(std::move(slice));
}

void SyncWordFinder::push(Chain const& chain) {
    for (auto const& slice : chain)
        push(slice);
}

std::optional<std::uint64_t> SyncWordFinder::next() {
    for (; !pending_.empty(); leave(pending_.front())) {
        if (tailSearched_ < tailSize_)
            if (auto const found = searchBorder(pending_.front()))
                return found;
        if (auto const found = searchInside(pending_.front()))
            return found;
    }
    return std::nullopt;
}

/// Words that begin in the tail.
std::optional<std::uint64_t> SyncWordFinder::searchBorder(Slice const& slice) {
    unsigned char joint[2 * (longestWord - 1)];
    std::size_t const size = tailSize_ + std::min(wordSize_ - 1, slice.size());
    std::copy_n(tail_, tailSize_, joint);
    std::copy_n(slice.data(), size - tailSize_, joint + tailSize_);
    std::size_t const places = size < wordSize_ ? 0 : std::min(tailSize_, size - wordSize_ + 1);
    std::size_t const found = find(joint, tailSearched_, places, {word_, wordSize_});
    tailSearched_ = std::max(tailSearched_, found);
    if (found >= places)
        return std::nullopt;
    ++tailSearched_;
    return position_ - tailSize_ + found;
}

std::optional<std::uint64_t> SyncWordFinder::searchInside(Slice const& slice) {
    std::size_t const places = slice.size() < wordSize_ ? 0 : slice.size() - wordSize_ + 1;
    std::size_t const found = find(slice.data(), searched_, places, {word_, wordSize_});
    searched_ = found;
    if (found >= places)
        return std::nullopt;
    ++searched_;
    return position_ + found;
}

/// Keeps the last bytes of a slice that is searched as the tail before the next one.
void SyncWordFinder::leave(Slice const& slice) {
    std::size_t const fromSlice = std::min(slice.size(), wordSize_ - 1);
    std::size_t const fromTail = std::min(tailSize_, wordSize_ - 1 - fromSlice);
    std::copy(tail_ + tailSize_ - fromTail, tail_ + tailSize_, tail_);
    std::copy(slice.end() - fromSlice, slice.end(), tail_ + fromTail);
    tailSize_ = fromTail + fromSlice;
    tailSearched_ = 0; // fewer bytes than a word has: none begins here that was looked at as a whole
    position_ += slice.size();
    searched_ = 0;
    pending_.removeFront();
}

std::uint64_t SyncWordFinder::searchedTo() const {
    return tailSearched_ < tailSize_ ? position_ - tailSize_ + tailSearched_ : position_ + searched_;
}

void SyncWordFinder::reset(std::uint64_t position) {
    pending_.clear();
    position_ = position;
    searched_ = tailSize_ = tailSearched_ = 0;
}

} // namespace MXF::Zelm::DataIO
