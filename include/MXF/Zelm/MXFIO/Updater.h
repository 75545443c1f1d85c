/// Changes the header metadata of an existing file (SMPTE 377M), in place or into a new file.
///
///     MXFIO::Updater updater("clip.mxf", dictionary, 65536);
///     updater.metadata().preface().value(label, Types::UTF16String(u"…"));
///     if (updater.plan().fitsInPlace)
///         updater.writeInPlace();
///     else
///         updater.writeToFile("clip-2.mxf");
///
/// What is written, besides the metadata of the chosen partition:
///
/// - **Copies.** Another partition whose metadata is the same as the chosen one's was when loaded (same sets,
///   properties and values) gets the same new metadata; in place only where it fits. One that differs is left
///   alone. So the header partition of an unfinished file whose footer was chosen keeps what it said while
///   the file was being written, unless it said the same.
/// - **Packs.** When the operational pattern or the essence containers of the Preface were changed, they are
///   changed in every partition pack that had the same as the Preface, but for partitions that keep metadata
///   of their own.
/// - **Bytes that nobody understood** stay: dark sets, unknown properties, sets that were not changed (to the
///   byte), duplicate entries of the primer, what stands behind the fields of a pack, bytes between and
///   behind the partitions. Fill items between sets are joined to the fill behind the last set.
///
/// "In place" means within the old HeaderByteCount. What is left there becomes one fill item. Where a few
/// bytes are missing, or 1 to 16 are left, too few for a fill item, the length fields of the last sets are
/// made shorter or longer.
#pragma once

#include "MXF/Zelm/Exceptions/Exceptions.h"
#include "MXF/Zelm/MXFIO/FileOperations.h"
#include "MXF/Zelm/MXFIO/MetadataChange.h"
#include "MXF/Zelm/MXFIO/Reader2.h"
#include "MXF/Zelm/MXFIO/UndoRecord.h"

#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace MXF::Zelm::MXFIO {

/// What becomes of one partition. Offsets count from the start of the file, run-in included.
struct PartitionUpdate {
    enum class Role {
        Chosen,    ///< its metadata is the one that is edited
        Copy,      ///< had the same metadata and is brought in step
        CopyLeft,  ///< had the same metadata, but the new one does not fit in place: it keeps the old one
        Different, ///< has metadata of its own, which is left alone
        Unread,    ///< has metadata that cannot be read, which is left alone
        NoMetadata,
    };

    Role role = Role::NoMetadata;
    std::uint64_t offset = 0;             ///< of the pack
    std::uint64_t newOffset = 0;          ///< the same unless written to a new file
    std::uint64_t headerByteCount = 0;    ///< as it was
    std::uint64_t newHeaderByteCount = 0; ///< as it will be
    std::uint64_t metadataBytes = 0;      ///< primer and sets without the fill behind them, as they were
    std::uint64_t newMetadataBytes = 0;   ///< as they will be
    bool packChanges = false;             ///< operational pattern or essence containers follow the Preface
    bool fits = true;                     ///< pack and metadata fit where the old ones stand
    std::string remark;                   ///< why not, or why it is left alone; empty otherwise
};

/// What writing would do.
struct UpdatePlan {
    bool fitsInPlace = false;                ///< `writeInPlace` can do it; false in plans of new files
    std::string reason;                      ///< why it cannot; empty when it can
    std::vector<PartitionUpdate> partitions; ///< those that are known, in the order of the file

    /// The bytes that differ, ascending, without overlaps; runs of less than 16 equal bytes between them are
    /// counted in, since to write them apart would cost more. In place only.
    std::vector<ByteRange> ranges;

    /// Bytes of the file now, and of the one that is written.
    std::uint64_t fileSize = 0;
    std::uint64_t newFileSize = 0;
};

/// What was written.
struct UpdateReport {
    UpdatePlan plan;                     ///< as it was carried out
    std::vector<MetadataChange> changes; ///< in the metadata of the chosen partition
    std::uint64_t bytesWritten = 0;      ///< to the file itself; an undo record not counted

    /// Bytes of index tables and bodies (essence) that were proven to be the same. In place: by where they
    /// stand, since nothing is written outside partition packs and header metadata. In a new file: compared
    /// with the old file's, byte by byte.
    std::uint64_t essenceBytesProven = 0;
};

/// The progress callback of a write said "no more".
class MXFZELM_EXPORT UpdateCancelled : public Exceptions::BaseException {
    using BaseException::BaseException;
};

/// How a new file is written.
struct NewFileOptions {
    enum class Existing {
        Refuse,  ///< a file of that name is an error
        Replace, ///< it is replaced, in one step, when the new one is whole
    };

    Existing existing = Existing::Refuse;

    /// Fill left behind metadata that is written anew, so that later edits fit in place: at least this many
    /// bytes, at least as many as there were, and then up to the KLV alignment grid.
    std::uint64_t reserve = 4096;

    /// Read the new file back and compare every byte of index tables and bodies with the old file.
    bool compareEssence = true;

    /// Called with the bytes done and to be done (writing and comparing together), some times a second at the
    /// speed of a disk. False ends the writing: nothing stays of the new file, and UpdateCancelled is thrown.
    std::function<bool(std::uint64_t done, std::uint64_t total)> progress = {};
};

/// Owns source, reader and metadata. Not locked: one updater, one thread. Nothing is written before
/// `writeInPlace` or `writeToFile`.
class MXFZELM_EXPORT Updater : public Platform::Allocated {
public:
    using DictionaryPtr = Reader::DictionaryPtr;

    /// Opens a file for reading; its name is UTF-8. `searchLimit` as Reader has it. `operations` (not owned,
    /// null for the system's files) is what all writing goes through; it must outlive the updater.
    ///
    /// Throws Exceptions::InvalidChange when the file has an undo record: an edit was cut off, and the host
    /// restores or discards the record (UndoRecord) before anything else. Throws Exceptions::InvalidStructure
    /// with "No header partition found", or when no partition has header metadata, or when the chosen
    /// metadata cannot be rewritten without loss (bytes in it that belong to no set);
    /// Exceptions::SystemError; and what Partition::metadata throws.
    Updater(std::string_view fileName, DictionaryPtr dictionary, std::uint64_t searchLimit,
            FileOperations* operations = nullptr);

    /// The same with a name in UTF-16.
    Updater(std::u16string_view fileName, DictionaryPtr dictionary, std::uint64_t searchLimit,
            FileOperations* operations = nullptr);
    ~Updater();
    Updater(Updater const&) = delete;
    Updater& operator=(Updater const&) = delete;

    /// In UTF-8.
    std::string const& fileName() const;

    Reader2& reader() const;

    /// The partition that Reader2::backwardFirstPartitionWithFinalMetadata chooses. Where that meets a fault
    /// (a footer that is cut off), the header partition serves, and `faults` tells of it.
    Partition& partition() const;

    /// Its metadata, to be changed freely. Shared with the partition.
    Metadata::PartitionMetadata& metadata() const;

    /// What went wrong while the partitions were looked for; empty in a sound file. `writeInPlace` works in
    /// spite of it, `writeToFile` as long as no partition can have been missed.
    std::vector<Metadata::Fault> const& faults() const;

    /// What differs from the metadata as loaded.
    std::vector<MetadataChange> changes() const;

    /// What `writeInPlace` would do. Every label in use gets a local tag (PartitionMetadata's
    /// generateLocalTags). Throws what the serialising of metadata throws.
    UpdatePlan plan() const;

    /// What `writeToFile` would do. Throws also Exceptions::InvalidStructure when the file cannot be laid out
    /// anew (`faults`).
    UpdatePlan planNewFile(NewFileOptions const& options = {}) const;

    /// Writes the changes into the file: the old bytes into an undo record, then the bytes that differ, each
    /// brought to the device, then removes the record. Without changes nothing is written. Where the system
    /// refuses amid the writing, the old bytes are put back; if that fails too the undo record stays and the
    /// message says so.
    ///
    /// Throws Exceptions::InvalidChange when the changes do not fit, when the file is no longer as it was
    /// loaded, when somebody else's undo record is there, or after an earlier `writeInPlace`, which is the
    /// last thing that an updater does; Exceptions::SystemError.
    UpdateReport writeInPlace();

    /// Writes a new file: first under a temporary name in the same folder (`fileName`, ".zelm-", eight
    /// hexadecimal digits), and renames it when it is whole and on the device. The file that was opened is
    /// not touched, so that more files can be written. The name is UTF-8.
    ///
    /// Partitions are laid out anew where their metadata was rewritten; each area keeps its place on the KLV
    /// alignment grid of its partition. ThisPartition, PreviousPartition, FooterPartition (0 stays 0), byte
    /// counts and the random index pack are put right. Run-in, index tables, bodies and status of the
    /// partitions are copied as they are. A FooterPartition that leads to no footer becomes 0.
    ///
    /// Throws Exceptions::InvalidChange when the name is that of the file itself (by any path), when a file
    /// of that name exists and is not to be replaced, or when one has an undo record;
    /// Exceptions::InvalidStructure when the file cannot be laid out anew, or the new file's essence is not
    /// the old one's; UpdateCancelled; Exceptions::SystemError. Nothing stays of the new file then, and an
    /// existing one is as it was.
    UpdateReport writeToFile(std::string_view fileName, NewFileOptions const& options = {});

    /// The same with a name in UTF-16.
    UpdateReport writeToFile(std::u16string_view fileName, NewFileOptions const& options = {});

private:
    struct State;
    Templates::auto_ptr<State> state_;
};

} // namespace MXF::Zelm::MXFIO
