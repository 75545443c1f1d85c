#include "StandardStreams.h"

#include <MXF/Zelm/Exceptions/Exceptions.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>

#if defined(_WIN32)
#include <fcntl.h>
#include <io.h>
#endif

namespace Zelm {

using namespace MXF::Zelm;

namespace {

/// Windows would change line ends otherwise.
void makeBinary([[maybe_unused]] std::FILE* stream) {
#if defined(_WIN32)
    ::_setmode(::_fileno(stream), _O_BINARY);
#endif
}

constexpr std::uint64_t largestPiece = std::uint64_t{1} << 20;

} // namespace

StandardInput::StandardInput() { makeBinary(stdin); }

bool StandardInput::endOfStream() const { return std::feof(stdin) != 0; }

std::uint64_t StandardInput::read(unsigned char* buffer, std::uint64_t size) {
    std::uint64_t done = 0;
    while (done < size) {
        auto const wanted = static_cast<std::size_t>(std::min(size - done, largestPiece));
        std::size_t const got = std::fread(buffer + done, 1, wanted, stdin);
        done += got;
        if (got == wanted)
            continue;
        if (std::ferror(stdin) != 0)
            throw Exceptions::SystemError("standard input", "cannot read", errno);
        break;
    }
    position_ += done;
    return done;
}

std::uint64_t StandardInput::skip(std::uint64_t size) {
    unsigned char passed[65536];
    std::uint64_t done = 0;
    while (done < size) {
        auto const got = read(passed, std::min<std::uint64_t>(size - done, sizeof passed));
        if (got == 0)
            break;
        done += got;
    }
    return done;
}

StandardOutput::StandardOutput() { makeBinary(stdout); }

void StandardOutput::write(const unsigned char* buffer, std::uint64_t size) {
    for (std::uint64_t done = 0; done < size;) {
        auto const piece = static_cast<std::size_t>(std::min(size - done, largestPiece));
        if (std::fwrite(buffer + done, 1, piece, stdout) != piece)
            throw Exceptions::SystemError("standard output", "cannot write", errno);
        done += piece;
    }
    position_ += size;
}

void StandardOutput::write(DataIO::Chain const& chain) {
    for (auto const& slice : chain)
        write(slice.data(), slice.size());
}

void StandardOutput::flush() {
    if (std::fflush(stdout) != 0)
        throw Exceptions::SystemError("standard output", "cannot write", errno);
}

} // namespace Zelm
