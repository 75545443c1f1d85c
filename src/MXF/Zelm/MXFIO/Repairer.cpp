#include "MXF/Zelm/MXFIO/Repairer.h"

#include "MXF/Zelm/Exceptions/Exceptions.h"
#include "MXF/Zelm/MXFIO/RepairDraft.h"
#include "MXF/Zelm/MXFIO/RepairWriter.h"
#include "MXF/Zelm/MXFIO/SystemOperations.h"
#include "MXF/Zelm/Platform/Text.h"

namespace MXF::Zelm::MXFIO {

namespace {

std::string requireNoUndoRecord(std::string_view name) {
    if (UndoRecord::exists(name))
        throw Exceptions::InvalidChange(std::string(name) +
                                        ": an edit of this file was cut off; restore or discard its undo "
                                        "record " +
                                        UndoRecord::nameFor(name) + " first");
    return std::string(name);
}

/// Where the header partition pack stands.
std::uint64_t headerOffset(DataIO::RandomAccessDataSource& source, Reader::DictionaryPtr const& dictionary,
                           std::uint64_t searchLimit) {
    Reader2 reader(source, dictionary, searchLimit);
    auto const* const header = reader.headerPartition();
    if (header == nullptr)
        throw Exceptions::at(0, Exceptions::InvalidStructure("No header partition found"));
    return header->partitionAbsoluteOffset();
}

} // namespace

const char* nameOf(RepairFinding::Code code) {
    switch (code) {
    case RepairFinding::Code::TornTail:
        return "torn_tail";
    case RepairFinding::Code::NoFooter:
        return "no_footer";
    case RepairFinding::Code::NoRandomIndex:
        return "no_random_index";
    case RepairFinding::Code::WrongRandomIndex:
        return "wrong_random_index";
    case RepairFinding::Code::WrongOffset:
        return "wrong_offset";
    case RepairFinding::Code::WrongByteCount:
        return "wrong_byte_count";
    case RepairFinding::Code::ClipLength:
        return "clip_length";
    case RepairFinding::Code::Duration:
        return "duration";
    case RepairFinding::Code::NoIndex:
        return "no_index";
    case RepairFinding::Code::ShortIndex:
        return "short_index";
    case RepairFinding::Code::WrongIndex:
        break;
    }
    return "wrong_index";
}

struct Repairer::State {
    State(std::string_view name, DictionaryPtr const& dictionary, std::uint64_t searchLimit,
          RepairOptions const& options, FileOperations* fileOperations)
        : operations(*orSystem(fileOperations)),
          source(requireNoUndoRecord(name)),
          walk(source, headerOffset(source, dictionary, searchLimit), options.progress) {
        auto const make = [&](bool withoutFooter) {
            draft.emplace(source, dictionary, searchLimit, walk, withoutFooter, metadata, options.progress);
        };
        make(false);
        findings = draft->findings();
        if (draft->needsNewFooter())
            make(true);
    }

    RepairReport write(std::uint64_t least, std::function<RepairReport(RepairWriter&)> const& action) {
        if (findings.empty())
            return {0, 0, walk.fileSize()};
        RepairWriter writer(source.fileName(), source, walk.fileSize(), draft->complete(least), operations);
        return action(writer);
    }

    FileOperations& operations;
    DataIO::File::FileDataSource source;
    FileWalk walk;
    RepairMetadata metadata;
    std::optional<RepairDraft> draft;
    std::vector<RepairFinding> findings;
};

Repairer::Repairer(std::string_view fileName, DictionaryPtr dictionary, std::uint64_t searchLimit,
                   RepairOptions options, FileOperations* operations)
    : state_(std::make_unique<State>(fileName, dictionary, searchLimit, options, operations)) {}

Repairer::Repairer(std::u16string_view fileName, DictionaryPtr dictionary, std::uint64_t searchLimit,
                   RepairOptions options, FileOperations* operations)
    : Repairer(Platform::toUtf8(fileName), std::move(dictionary), searchLimit, std::move(options),
               operations) {}

Repairer::~Repairer() = default;

std::string const& Repairer::fileName() const { return state_->source.fileName(); }
std::vector<RepairFinding> const& Repairer::findings() const { return state_->findings; }
std::vector<RepairedContainer> const& Repairer::containers() const { return state_->draft->containers(); }
std::vector<MetadataChange> const& Repairer::changes() const { return state_->draft->changes(); }
std::uint64_t Repairer::keptBytes() const { return state_->draft->keptEnd(); }
std::uint64_t Repairer::droppedBytes() const { return state_->walk.fileSize() - keptBytes(); }

RepairReport Repairer::writeInPlace() {
    return state_->write(droppedBytes(), [](RepairWriter& writer) { return writer.writeInPlace(); });
}

RepairReport Repairer::writeToFile(std::string_view fileName, NewFileOptions const& options) {
    return state_->write(
        0, [&](RepairWriter& writer) { return writer.writeToFile(std::string(fileName), options); });
}

RepairReport Repairer::writeToFile(std::u16string_view fileName, NewFileOptions const& options) {
    return writeToFile(Platform::toUtf8(fileName), options);
}

} // namespace MXF::Zelm::MXFIO
