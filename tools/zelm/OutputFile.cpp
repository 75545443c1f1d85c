#include "OutputFile.h"

#include "StandardStreams.h"

#include <MXF/Zelm/DataIO/File/FileDataSink.h>
#include <MXF/Zelm/DataIO/File/FileFunctions.h>
#include <MXF/Zelm/DataIO/File/FileSliceSource.h>

namespace Zelm {

using namespace MXF::Zelm;
using DataIO::File::FileDataSink;

OutputFile::OutputFile(std::string name, OutputOptions const& options)
    : name_(std::move(name)), options_(options) {
    if (options_.md5)
        hash_.emplace();
    if (name_ == standardOutput)
        sink_ = std::make_unique<StandardOutput>();
    else
        sink_ = std::make_unique<FileDataSink>(partName(), options_.force ? FileDataSink::Mode::Replace
                                                                          : FileDataSink::Mode::CreateNew);
}

OutputFile::~OutputFile() = default;

std::string OutputFile::partName() const {
    return name_ == standardOutput ? "standard output" : name_ + ".part";
}

void OutputFile::write(DataIO::Chain const& chain) {
    sink_->write(chain);
    if (hash_)
        for (auto const& slice : chain)
            hash_->add(slice.data(), slice.size());
}

void OutputFile::write(const unsigned char* bytes, std::size_t size) {
    sink_->write(bytes, size);
    if (hash_)
        hash_->add(bytes, size);
}

DataIO::DataSink& OutputFile::sink() {
    readAgain_ = true;
    return *sink_;
}

void OutputFile::close() {
    if (auto* const file = dynamic_cast<FileDataSink*>(sink_.get()))
        file->close();
    else if (auto* const output = dynamic_cast<StandardOutput*>(sink_.get()))
        output->flush();
    sink_.reset();
}

void OutputFile::complete() {
    close();
    if (name_ == standardOutput)
        return;
    if (hash_)
        md5_ = readAgain_ ? md5OfFile(partName()) : hash_->finish();
    DataIO::File::rename(partName(), name_, options_.force);
}

void OutputFile::abandon() {
    if (sink_)
        close();
}

std::string md5OfFile(std::string const& name) {
    constexpr std::uint64_t pieceSize = std::uint64_t{1} << 20;
    DataIO::File::FileSliceSource source{std::string_view(name)};
    Md5 hash;
    for (DataIO::Chain piece; source.read(pieceSize, piece) != 0; piece.clear())
        for (auto const& slice : piece)
            hash.add(slice.data(), slice.size());
    return hash.finish();
}

} // namespace Zelm
