#include "MXF/Zelm/MXFIO/Updater.h"

#include "MXF/Zelm/MXFIO/InPlaceUpdate.h"
#include "MXF/Zelm/MXFIO/NewFileWriter.h"
#include "MXF/Zelm/MXFIO/SystemOperations.h"
#include "MXF/Zelm/Platform/Text.h"

namespace MXF::Zelm::MXFIO {

namespace {

std::string requireNoUndoRecord(std::string const& name) {
    if (UndoRecord::exists(name))
        throw Exceptions::InvalidChange(name +
                                        ": an edit of this file was cut off; restore or discard its "
                                        "undo record " +
                                        UndoRecord::nameFor(name) + " first");
    return name;
}

} // namespace

struct Updater::State {
    State(std::string const& name, DictionaryPtr const& dictionary, std::uint64_t searchLimit,
          FileOperations* fileOperations)
        : operations(*orSystem(fileOperations)),
          loaded(requireNoUndoRecord(name), dictionary, searchLimit),
          source(name),
          reader(source, dictionary, searchLimit) {
        reader.headerPartition();
        partition =
            reader.partitionAtOffset(loaded.chosen().partitionAbsoluteOffset() - loaded.runInLength());
        metadata = partition != nullptr ? partition->metadata() : nullptr;
        if (!metadata)
            throw Exceptions::InvalidChange(name + ": somebody changed the file while it was opened");
    }

    UpdateContent content() { return {loaded, *metadata}; }

    FileOperations& operations;
    LoadedFile loaded;
    DataIO::File::FileDataSource source; // what the host reads
    Reader2 reader;
    Partition* partition = nullptr;
    Partition::MetadataPtr metadata;
    bool isDone = false; // written in place
};

Updater::Updater(std::string_view fileName, DictionaryPtr dictionary, std::uint64_t searchLimit,
                 FileOperations* operations)
    : state_(std::make_unique<State>(std::string(fileName), dictionary, searchLimit, operations)) {}

Updater::Updater(std::u16string_view fileName, DictionaryPtr dictionary, std::uint64_t searchLimit,
                 FileOperations* operations)
    : Updater(Platform::toUtf8(fileName), std::move(dictionary), searchLimit, operations) {}

Updater::~Updater() = default;

std::string const& Updater::fileName() const { return state_->source.fileName(); }
Reader2& Updater::reader() const { return state_->reader; }
Partition& Updater::partition() const { return *state_->partition; }
Metadata::PartitionMetadata& Updater::metadata() const { return *state_->metadata; }

std::vector<Metadata::Fault> const& Updater::faults() const { return state_->loaded.survey().faults; }

std::vector<MetadataChange> Updater::changes() const {
    return compareMetadata(state_->loaded.metadata(), *state_->metadata);
}

UpdatePlan Updater::plan() const { return InPlaceUpdate(state_->content()).plan(); }

UpdatePlan Updater::planNewFile(NewFileOptions const& options) const {
    return NewFileLayout(state_->content(), options.reserve).plan();
}

UpdateReport Updater::writeInPlace() {
    if (state_->isDone)
        throw Exceptions::InvalidChange(fileName() + ": the updater has written the file already");
    auto const content = state_->content();
    auto report = InPlaceUpdate(content).write(state_->operations);
    state_->isDone = report.bytesWritten != 0;
    return report;
}

UpdateReport Updater::writeToFile(std::string_view fileName, NewFileOptions const& options) {
    if (state_->isDone)
        throw Exceptions::InvalidChange(std::string(fileName) +
                                        ": the file was written in place; open it anew to copy it");
    auto const content = state_->content();
    NewFileLayout const layout(content, options.reserve);
    return NewFileWriter(content, layout, options, state_->operations).write(std::string(fileName));
}

UpdateReport Updater::writeToFile(std::u16string_view fileName, NewFileOptions const& options) {
    return writeToFile(Platform::toUtf8(fileName), options);
}

} // namespace MXF::Zelm::MXFIO
