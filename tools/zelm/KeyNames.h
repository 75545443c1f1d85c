/// Names of KLV keys in words, each looked up once.
#pragma once

#include "Input.h"

#include <MXF/Zelm/KLV/Key.h>

#include <cstring>
#include <string>
#include <unordered_map>

namespace Zelm {

/// For hash tables: keys differ in the bytes after the prefix that they all share.
struct KeyHash {
    std::size_t operator()(MXF::Zelm::KLV::Key const& key) const {
        std::uint64_t halves[2];
        std::memcpy(halves, key.rawBuffer(), sizeof halves);
        std::uint64_t const mixed = (halves[0] ^ (halves[1] * 0x9E3779B97F4A7C15u)) * 0xD6E8FEB86659FD93u;
        return static_cast<std::size_t>(mixed >> 32);
    }
};

/// "060E2B34.02050101.0D010201.01020400".
std::string hexKey(MXF::Zelm::KLV::Key const& key);

class KeyNames {
public:
    /// Names as the registers have them; for set classes that only `dictionary` knows (it may be null), as
    /// that has them.
    explicit KeyNames(SharedDictionary dictionary);

    std::string name(MXF::Zelm::KLV::Key const& key) const;

private:
    SharedDictionary dictionary_;
};

/// A text made of a key, kept for the next time.
template <class Make>
class KeyTexts {
public:
    explicit KeyTexts(Make make) : make_(std::move(make)) {}

    std::string const& operator()(MXF::Zelm::KLV::Key const& key) {
        if (auto const found = texts_.find(key); found != texts_.end())
            return found->second;
        if (texts_.size() == mostTexts) // a broken file may hold millions of different keys
            texts_.clear();
        return texts_.emplace(key, make_(key)).first->second;
    }

private:
    static constexpr std::size_t mostTexts = 4096;

    Make make_;
    std::unordered_map<MXF::Zelm::KLV::Key, std::string, KeyHash> texts_;
};

} // namespace Zelm
