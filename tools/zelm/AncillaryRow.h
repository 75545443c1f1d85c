/// An object of the JSON that packets of VBI and ANC are read from.
#pragma once

#include "Json.h"

#include <MXF/Zelm/Essence/Ancillary/Packet.h>

#include <stdexcept>
#include <string>
#include <vector>

namespace Zelm {

/// The text is not what it ought to be: the message says where.
struct BadAncillaryText : std::runtime_error {
    using std::runtime_error::runtime_error;
};

/// Does not own the object. What is asked for and is not there, or is something else, throws
/// BadAncillaryText.
class AncillaryRow {
public:
    using Word = MXF::Zelm::Essence::Ancillary::Word;

    static constexpr std::uint64_t mostWord = 0x3FF;

    explicit AncillaryRow(Json const& json) : json_(json) {}

    Json const* find(const char* member) const {
        auto const found = json_.find(member);
        return found != json_.end() && !found->is_null() ? &*found : nullptr;
    }

    /// Whether the member is there, though it may be null.
    bool has(const char* member) const { return json_.contains(member); }

    std::uint64_t number(const char* member, std::uint64_t most) const {
        auto const* const value = find(member);
        if (value == nullptr || !value->is_number_unsigned() || value->get<std::uint64_t>() > most)
            throw BadAncillaryText("\"" + std::string(member) + "\" is no number up to " +
                                   std::to_string(most));
        return value->get<std::uint64_t>();
    }

    std::uint64_t numberOr(const char* member, std::uint64_t most, std::uint64_t other) const {
        return find(member) != nullptr ? number(member, most) : other;
    }

    std::string text(const char* member) const {
        auto const* const value = find(member);
        if (value == nullptr || !value->is_string())
            throw BadAncillaryText("\"" + std::string(member) + "\" is no text");
        return value->get<std::string>();
    }

    bool isTrueOr(const char* member, bool other) const {
        auto const* const value = find(member);
        return value != nullptr && value->is_boolean() ? value->get<bool>() : other;
    }

    /// Values of so many hexadecimal digits each.
    std::vector<Word> values(const char* member, std::size_t digits) const;
    std::vector<unsigned char> bytes(const char* member) const;

private:
    Json const& json_;
};

} // namespace Zelm
