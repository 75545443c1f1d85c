#include "MXF/Zelm/MXFIO/Creator.h"

#include "MXF/Zelm/DataIO/File/FileDataSink.h"
#include "MXF/Zelm/DataIO/SliceSink.h"
#include "MXF/Zelm/Exceptions/Exceptions.h"

namespace MXF::Zelm::MXFIO {

namespace {

/// What is gathered before it goes to the sink.
constexpr std::uint64_t mostGathered = 256 * 1024;
constexpr std::size_t mostSlices = 4096;

/// Slices below this size, on average, cost less to copy than to hand over one by one.
constexpr std::uint64_t smallSlice = 512;

DataIO::RandomAccessDataSink* seekableSink(DataIO::DataSink& sink, CreatorSettings const& settings) {
    if (!settings.canUpdate)
        return nullptr;
    if (auto* const file = dynamic_cast<DataIO::File::FileDataSink*>(&sink))
        file->synchronizeEarly(); // `complete` waits for the device
    return dynamic_cast<DataIO::RandomAccessDataSink*>(&sink);
}

CreatorSettings settingsFor(CreatorSettings settings, DataIO::RandomAccessDataSink const* seekable) {
    settings.canUpdate = seekable != nullptr;
    return settings;
}

void flushSink(DataIO::DataSink& sink) {
    if (auto* const file = dynamic_cast<DataIO::File::FileDataSink*>(&sink))
        file->flush();
}

/// What was written stands on the device before anything that counts on it is written.
void synchronizeSink(DataIO::DataSink& sink) {
    if (auto* const file = dynamic_cast<DataIO::File::FileDataSink*>(&sink))
        file->synchronize();
}

} // namespace

Creator::Creator(DataIO::DataSink& sink, PullCreator::MetadataPtr metadata, CreatorSettings settings)
    : sink_(sink),
      seekable_(seekableSink(sink, settings)),
      start_(sink.absoluteOffset()),
      pull_(std::move(metadata), settingsFor(std::move(settings), seekable_)) {}

Creator::~Creator() = default;

void Creator::addSource(Templates::auto_ptr<GenericContainer::Source> source, std::uint32_t bodySID,
                        std::uint32_t indexSID) {
    pull_.addSource(std::move(source), bodySID, indexSID);
}

void Creator::addGenericStream(GenericStream stream) { pull_.addGenericStream(std::move(stream)); }

void Creator::requireSoundSink() const {
    if (failed_)
        throw Exceptions::InvalidChange("The file cannot be written on: its sink has failed");
}

template <class Action>
void Creator::onSink(Action action) {
    requireSoundSink();
    failed_ = true;
    action();
    failed_ = false;
}

bool Creator::write() {
    if (whole_)
        return false;
    requireSoundSink();
    DataIO::Chain bytes;
    if (!pull_.next(bytes)) {
        complete();
        return false;
    }
    if (pull_.isPartitionStart())
        flush();
    gathered_.append(std::move(bytes));
    if (gathered_.size() >= mostGathered || gathered_.slices().size() >= mostSlices)
        writeGathered();
    return true;
}

void Creator::run() {
    while (write())
        continue;
}

void Creator::flush() {
    writeGathered();
    onSink([&] { flushSink(sink_); });
}

void Creator::finish() {
    pull_.finish();
    run();
}

void Creator::writeGathered() {
    if (gathered_.size() < gathered_.slices().size() * smallSlice)
        gathered_ = gathered_.contiguous();
    onSink([&] { DataIO::writeChain(sink_, gathered_); });
    gathered_.clear();
}

/// Each update is handed to the system by itself, so that they reach a reader in their order.
void Creator::complete() {
    flush();
    auto const updates = pull_.updates();
    onSink([&] {
        if (updates.empty())
            return;
        synchronizeSink(sink_);
        for (auto const& update : updates)
            apply(update);
        seekable_->seek(start_ + pull_.fileOffset());
        flushSink(sink_);
    });
    whole_ = true;
}

void Creator::apply(FileUpdate const& update) {
    std::uint64_t const position = start_ + update.offset;
    if (seekable_->seek(position) != position)
        throw Exceptions::InvalidPosition("The sink cannot seek to a byte that was written to it");
    sink_.write(update.bytes.data(), update.bytes.size());
}

} // namespace MXF::Zelm::MXFIO
