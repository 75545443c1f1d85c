/// MD5 (RFC 1321), for lines like those of md5sum.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>

namespace Zelm {

class Md5 {
public:
    void add(const unsigned char* bytes, std::size_t size);

    /// Ends the message: 32 digits.
    std::string finish();

private:
    static constexpr std::size_t blockSize = 64;

    void addBlock(const unsigned char* block);

    std::array<std::uint32_t, 4> state_ = {0x67452301, 0xEFCDAB89, 0x98BADCFE, 0x10325476};
    std::uint64_t size_ = 0;
    unsigned char rest_[blockSize] = {};
};

} // namespace Zelm
