/// The partitions that are kept of a file, and their packs as they are to become.
#pragma once

#include "MXF/Zelm/MXFIO/FileWalk.h"
#include "MXF/Zelm/MXFIO/PatchedSource.h"
#include "MXF/Zelm/MXFIO/Repairer.h"

namespace MXF::Zelm::MXFIO {

/// "0x" and the digits of an offset.
std::string hexOf(std::uint64_t offset);

/// Throws Exceptions::InvalidStructure with an offset.
[[noreturn]] void cannotRepair(std::uint64_t offset, std::string const& what);

class KeptPartitions {
public:
    /// Keeps what is whole. `withoutFooter` leaves out a whole footer, which is to be made anew. `view` gets
    /// the packs that change. What is given is not owned and must outlive the object. Throws
    /// Exceptions::InvalidStructure where there is no header metadata.
    KeptPartitions(FileWalk const& walk, bool withoutFooter, PatchedSource& view,
                   std::vector<RepairFinding>& findings);

    std::vector<WalkedPartition> const& all() const { return all_; }
    WalkedPartition const& last() const { return all_.back(); }
    std::size_t size() const { return all_.size(); }
    WalkedPartition& operator[](std::size_t index) { return all_[index]; }

    /// Where what is kept ends.
    std::uint64_t end() const { return end_; }

    /// A whole footer is there; it may be left out.
    bool wasFinished() const { return wasFinished_; }
    bool isFinished() const { return isFinished_; }

    /// An offset in the file as packs have it.
    std::uint64_t relative(std::uint64_t offset) const { return offset - walk_.start(); }

    /// The last partition, without a footer, ends at `end`; whether it has essence then.
    void endAt(std::uint64_t end, bool hasBody);

    /// Keeps all bytes of the file.
    void keepAll() { end_ = walk_.fileSize(); }

    /// Leaves out packs that nothing follows, where the file was cut off.
    void dropEmpty();

    /// Finds, and puts right, what packs say of themselves.
    void checkPacks();
    void checkTail();

    /// Of a finished file: open partitions may leave it open where the footer is.
    void checkFooterOffsets();

    void put(std::size_t index, PackFields::Field field, std::uint64_t value);

    /// Gives a pack a closed status; those of generic streams and footers have one.
    void close(std::size_t index, Packs::PartitionPack::PartitionStatus status);

    /// The random index pack of these partitions, and of new ones without essence at `fresh`, as packs have
    /// it. An offset of 0 is one that is not known yet; the size is right all the same.
    Bytes randomIndex(std::vector<std::uint64_t> const& fresh) const;

    /// Whether a random index pack lists these partitions; its length field may have any size.
    bool isRandomIndex(Bytes const& found) const;

private:
    void requireMetadata() const;
    void drop();
    void checkPack(std::size_t index, std::uint64_t bodyOffset);
    std::uint64_t bodyOffsetOf(std::size_t index, std::map<std::uint32_t, std::uint64_t>& streams) const;
    void find(RepairFinding::Code code, std::optional<std::uint64_t> offset, std::string message);

    FileWalk const& walk_;
    PatchedSource& view_;
    std::vector<RepairFinding>& findings_;
    std::vector<WalkedPartition> all_;
    std::uint64_t end_;
    bool wasFinished_;
    bool isFinished_;
};

} // namespace MXF::Zelm::MXFIO
