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

/// The system's error number.
long lastError() {
#if defined(_WIN32)
    return static_cast<long>(_doserrno);
#else
    return errno;
#endif
}

} // namespace

StandardInput::StandardInput() {
    makeBinary(stdin);
    std::setvbuf(stdin, nullptr, _IONBF, 0); // who reads has blocks of its own
}

bool StandardInput::endOfStream() const { return std::feof(stdin) != 0; }

std::uint64_t StandardInput::read(unsigned char* buffer, std::uint64_t size) {
    constexpr std::uint64_t mostAtOnce = std::uint64_t{1} << 30;
    std::uint64_t done = 0;
    while (done < size) {
        auto const wanted = static_cast<std::size_t>(std::min(size - done, mostAtOnce));
        std::size_t const got = std::fread(buffer + done, 1, wanted, stdin);
        done += got;
        if (got < wanted)
            break;
    }
    if (std::ferror(stdin) != 0)
        throw Exceptions::SystemError("standard input", "cannot read", lastError());
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
            throw Exceptions::SystemError("standard output", "cannot write", lastError());
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
        throw Exceptions::SystemError("standard output", "cannot write", lastError());
}

} // namespace Zelm
