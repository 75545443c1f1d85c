/// Where the edit units of an essence container begin, found by walking over its packets: for files without
/// an index table, or with less of one than of essence.
#pragma once

#include "MXF/Zelm/GenericContainer/Demultiplexer.h"
#include "MXF/Zelm/IndexTables/IndexTable.h"
#include "MXF/Zelm/MXFIO/BodyStream.h"

#include <functional>
#include <limits>

namespace MXF::Zelm::MXFIO {

class ElementLayout;
class WalkedPictures;

/// Of essence that is wrapped by edit units: each content package is one. Reads little more than the keys.
/// Takes 8 bytes for each edit unit, and none while all have the same size; with their elements 4 more for
/// each element whose size varies, with their pictures 3 more.
class MXFZELM_EXPORT WalkedIndex : public Platform::Allocated {
public:
    /// Is told now and then how many bytes of how many have been walked over; the walk stops when it answers
    /// false.
    using Progress = std::function<bool(std::uint64_t done, std::uint64_t total)>;

    /// What is learnt on the way; each includes those before it.
    enum class Learn {
        Offsets,

        /// Where the elements of edit units begin.
        Elements,

        /// Flags, and offsets in time and to key frames, of MPEG video and AVC: reads the heads of the
        /// pictures.
        Pictures
    };

    /// Begins at edit unit `position`, which stands at `streamOffset`. `stream` is not owned, must outlive
    /// the index, and is moved by it.
    explicit WalkedIndex(BodyStream& stream, std::int64_t position = 0, std::uint64_t streamOffset = 0,
                         Learn learn = Learn::Offsets);
    ~WalkedIndex();

    /// Walks on until edit unit `position` is known or the stream ends; from where the last walk ended, also
    /// after the stream has grown. False when `progress` stopped it. Throws as `BodyStream::peekPacket` does,
    /// and goes no further then.
    bool walkTo(std::int64_t position, Progress const& progress = {});

    /// Walks to the end of the stream.
    bool walk(Progress const& progress = {});

    /// True when all of the stream, as long as it is now, has been walked over.
    bool isComplete() const;

    /// The edit units that are known: from `begin` to before `end`. One that is cut off is not among them: at
    /// the end of an open-ended stream, one that has not all the elements of the first.
    std::int64_t begin() const { return begin_; }
    std::int64_t end() const { return begin_ + static_cast<std::int64_t>(count_); }

    /// Where an edit unit begins, its first essence packet, and its bytes up to the next one. Absent when it
    /// is not known.
    std::optional<std::uint64_t> streamOffset(std::int64_t position) const;
    std::optional<std::uint64_t> length(std::int64_t position) const;

    /// Bytes of each edit unit while all that are known have the same, and the first is at 0.
    std::optional<std::uint64_t> constantSize() const;

    /// Every edit unit has the elements of the first, and they were learnt: the table says where they begin.
    bool knowsElements() const;

    /// Pictures were learnt and found: the table has their flags and offsets. Edit units in which no picture
    /// was found have flags of 0.
    bool knowsPictures() const;
    std::uint64_t unitsWithoutPicture() const;

    /// The same as an index table. One segment with an EditUnitByteCount when all have the same size and no
    /// picture needs another; otherwise segments with an entry for each edit unit, cut at key frames, whose
    /// arrays have at most 65535 bytes. What was not learnt is not there, or 0. Edit units before `from` are
    /// left out.
    Templates::auto_ptr<IndexTables::IndexTable>
    table(std::uint32_t indexSID, Templates::Rational<int> const& editRate,
          std::int64_t from = std::numeric_limits<std::int64_t>::min()) const;

private:
    struct Unit;
    struct Entries;
    std::uint64_t start(std::uint64_t index) const;
    void add(std::uint64_t start, std::uint64_t end);
    std::optional<PacketHead> readUnit(Unit& unit);
    void learn(Unit const& unit);
    bool walkUnit();
    void forgetProvisional();
    Entries entries() const;
    std::uint64_t segmentSize(Entries const& entries, std::uint64_t from) const;
    IndexTables::IndexEntryArray entryArray(Entries const& entries, std::uint64_t from,
                                            std::uint64_t count) const;

    BodyStream& stream_;
    std::int64_t begin_;
    std::uint64_t count_ = 0;
    std::uint64_t first_;                         // where the first edit unit begins
    std::uint64_t next_;                          // behind the last one
    std::uint64_t unitSize_ = 0;                  // while all have the same
    std::vector<std::uint64_t> starts_;           // otherwise
    bool isProvisional_ = false;                  // the last one ends where an open-ended stream ended
    std::optional<std::uint64_t> walked_;         // the stream's length when its end was reached
    GenericContainer::PackageBoundary shape_;     // of the first content package
    Templates::auto_ptr<ElementLayout> elements_; // null when they are not learnt
    Templates::auto_ptr<WalkedPictures> pictures_;
};

} // namespace MXF::Zelm::MXFIO
