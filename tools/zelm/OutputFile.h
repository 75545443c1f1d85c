/// A file that a command makes: written under its name and ".part", and renamed when it is whole.
#pragma once

#include "Md5.h"

#include <MXF/Zelm/DataIO/SliceSink.h>

#include <memory>
#include <optional>
#include <string>

namespace Zelm {

class StandardOutput;

struct OutputOptions {
    bool force = false; ///< replace files that are there
    bool md5 = false;
};

class OutputFile {
public:
    /// What is written to standard output.
    static constexpr const char* standardOutput = "-";

    /// Opens "NAME.part", or standard output for "-". Throws Exceptions::SystemError, also when the file is
    /// there and may not be replaced.
    OutputFile(std::string name, OutputOptions const& options);

    /// Leaves what is not whole under its name with ".part".
    ~OutputFile();
    OutputFile(OutputFile const&) = delete;
    OutputFile& operator=(OutputFile const&) = delete;

    std::string const& name() const { return name_; }
    /// What it is called while it is not whole.
    std::string partName() const;

    void write(MXF::Zelm::DataIO::Chain const& chain);
    void write(const unsigned char* bytes, std::size_t size);

    /// For who writes in any order. What is written to it is not in the MD5 that is formed on the way:
    /// `complete` reads the file again for it.
    MXF::Zelm::DataIO::DataSink& sink();

    /// Ends the file and gives it its name.
    void complete();

    /// Ends it as it is. It keeps its name with ".part".
    void abandon();

    /// The MD5 of the whole file, if it was wanted; after `complete`.
    std::string const& md5() const { return md5_; }

private:
    void close();

    std::string name_;
    OutputOptions options_;
    std::unique_ptr<MXF::Zelm::DataIO::SliceSink> sink_;
    std::optional<Md5> hash_;
    std::string md5_;
    bool readAgain_ = false;
};

/// The MD5 of a file. Throws Exceptions::SystemError.
std::string md5OfFile(std::string const& name);

} // namespace Zelm
