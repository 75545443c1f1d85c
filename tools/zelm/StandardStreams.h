/// Standard input as a source, standard output as a sink: of bytes, neither of which can seek.
#pragma once

#include <MXF/Zelm/DataIO/DataSource.h>
#include <MXF/Zelm/DataIO/SliceSink.h>

#include <string_view>

namespace Zelm {

/// The name of a file that stands for standard input or output.
inline constexpr std::string_view standardInputName = "-";

/// One at a time: the position counts from where the first began.
class StandardInput : public MXF::Zelm::DataIO::DataSource {
public:
    StandardInput();

    std::uint64_t absoluteOffset() const override { return position_; }
    bool endOfStream() const override;

    /// Throws Exceptions::SystemError when the system cannot read.
    std::uint64_t read(unsigned char* buffer, std::uint64_t size) override;
    std::uint64_t skip(std::uint64_t size) override;

private:
    std::uint64_t position_ = 0;
};

/// Throws Exceptions::SystemError when the system cannot write.
class StandardOutput : public MXF::Zelm::DataIO::SliceSink {
public:
    StandardOutput();

    void write(const unsigned char* buffer, std::uint64_t size) override;
    void write(MXF::Zelm::DataIO::Chain const& chain) override;
    std::uint64_t absoluteOffset() const override { return position_; }

    void flush();

private:
    std::uint64_t position_ = 0;
};

} // namespace Zelm
