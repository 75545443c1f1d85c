/// Makes a file whole that was cut off: a recording that was never finished, a copy that was broken off, or
/// one whose index tables or random index pack are missing or wrong (SMPTE 377M).
///
///     MXFIO::Repairer repairer("clip.mxf", dictionary, 65536);
///     for (auto const& finding : repairer.findings())
///         show(finding.message);
///     if (!repairer.isSound())
///         repairer.writeInPlace();
///
///     before    header | body … | part of a content package
///     after     header | body … | footer: pack, fill, metadata, index tables | random index pack
///
/// What is whole is kept where it stands. The walk over the file tells how many edit units there are: these
/// become the durations in the header metadata, which the footer repeats; index tables get the edit units
/// that they lack. Packs get FooterPartition and, where their metadata is right now, the closed status.
/// Essence is not changed but for the length field of a clip that was never set.
#pragma once

#include "MXF/Zelm/MXFIO/Updater.h"

namespace MXF::Zelm::MXFIO {

/// Something that is wrong with a file.
struct RepairFinding {
    enum class Code {
        TornTail,         ///< bytes at the end make no whole packet or content package
        NoFooter,         ///< no footer partition, or one that is cut off
        NoRandomIndex,    ///< no random index pack, or one that is cut off
        WrongRandomIndex, ///< it does not list the partitions as they stand
        WrongOffset,      ///< ThisPartition, PreviousPartition, FooterPartition or BodyOffset of a pack
        WrongByteCount,   ///< HeaderByteCount or IndexByteCount of a pack
        ClipLength,       ///< the length of a clip is not set, or goes beyond the end of the file
        Duration,         ///< durations are not known, or not those of the essence
        NoIndex,          ///< a container that should have an index table has none
        ShortIndex,       ///< its index table ends before the essence
        WrongIndex,       ///< its index table leads elsewhere, or goes beyond the essence
    };

    Code code = Code::TornTail;
    std::optional<std::uint64_t> offset; ///< in the file
    std::string message;
};

/// "torn_tail", "no_footer", …
MXFZELM_EXPORT const char* nameOf(RepairFinding::Code code);

/// What becomes of an essence container.
struct RepairedContainer {
    std::uint32_t bodySID = 0;
    std::uint32_t indexSID = 0;

    /// Whole edit units; absent for a clip of which nothing tells where they begin.
    std::optional<std::int64_t> editUnits;

    /// Edit units by the index tables that are kept, and those that get new entries.
    std::int64_t indexKept = 0;
    std::int64_t indexMade = 0;
};

/// What was written.
struct RepairReport {
    std::uint64_t bytesChanged = 0;  ///< of the old file
    std::uint64_t bytesAppended = 0; ///< behind what is kept of it
    std::uint64_t fileSize = 0;      ///< of the repaired file
};

struct RepairOptions {
    /// Called with the bytes done and to be done of the walk over the file. False ends it: UpdateCancelled is
    /// thrown.
    std::function<bool(std::uint64_t done, std::uint64_t total)> progress = {};
};

/// Not locked: one repairer, one thread. Nothing is written before `writeInPlace` or `writeToFile`.
class MXFZELM_EXPORT Repairer : public Platform::Allocated {
public:
    using DictionaryPtr = Reader::DictionaryPtr;

    /// Walks over the file; its name is UTF-8. `searchLimit` as Reader has it. `operations` (not owned, null
    /// for the system's files) is what all writing goes through; it must outlive the repairer.
    ///
    /// Throws Exceptions::InvalidChange when the file has an undo record; Exceptions::InvalidStructure for a
    /// file that cannot be repaired, and says what is missing ("No header partition found", "The header
    /// metadata is not whole", or that the file is damaged in its middle); UpdateCancelled;
    /// Exceptions::SystemError.
    Repairer(std::string_view fileName, DictionaryPtr dictionary, std::uint64_t searchLimit,
             RepairOptions options = {}, FileOperations* operations = nullptr);

    /// The same with a name in UTF-16.
    Repairer(std::u16string_view fileName, DictionaryPtr dictionary, std::uint64_t searchLimit,
             RepairOptions options = {}, FileOperations* operations = nullptr);
    ~Repairer();
    Repairer(Repairer const&) = delete;
    Repairer& operator=(Repairer const&) = delete;

    /// In UTF-8.
    std::string const& fileName() const;

    /// What is wrong, in the order in which it was found.
    std::vector<RepairFinding> const& findings() const;

    /// Nothing is wrong: the writing functions write nothing.
    bool isSound() const { return findings().empty(); }

    /// As the metadata names them.
    std::vector<RepairedContainer> const& containers() const;

    /// Bytes at the start of the file that are kept, and how many behind them are not: an incomplete content
    /// package, a footer that is made anew.
    std::uint64_t keptBytes() const;
    std::uint64_t droppedBytes() const;

    /// What changes in the header metadata, where it is brought up to date.
    std::vector<MetadataChange> const& changes() const;

    /// Repairs the file itself: what it changes of the old bytes goes into an undo record, then the new
    /// partitions are put behind what is kept, then packs and header metadata are changed, each brought to
    /// the device, then the record is removed. What is not kept is written over where the new partitions are
    /// as long, and covered by fill where they are not: the file never becomes shorter. Where the system
    /// refuses, the old bytes are put back; if that fails too the undo record stays and the message says so.
    ///
    /// Throws Exceptions::InvalidChange when the file is no longer as it was or somebody else's undo record
    /// is there; Exceptions::SystemError.
    RepairReport writeInPlace();

    /// Writes the repaired file as a new one, which ends the progress of the options with that of the
    /// writing; under a temporary name first, as Updater::writeToFile does. Of the options `existing` and
    /// `progress` count. Throws Exceptions::InvalidChange, UpdateCancelled and Exceptions::SystemError as
    /// that does; nothing stays of the new file then.
    RepairReport writeToFile(std::string_view fileName, NewFileOptions const& options = {});

    /// The same with a name in UTF-16.
    RepairReport writeToFile(std::u16string_view fileName, NewFileOptions const& options = {});

private:
    struct State;
    Templates::auto_ptr<State> state_;
};

} // namespace MXF::Zelm::MXFIO
