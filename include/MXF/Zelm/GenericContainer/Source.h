/// A source of essence that is wrapped already: what a partition writer pulls. The multiplexer is one for
/// essence wrapped by edit units, the clip wrapper one for essence wrapped as a whole.
///
///     Chain package;
///     while (source.next(package, mayStartPartition, updater, position))
///         writeChain(sink, package);              // body bytes of the container, stream offset 0 on
///     source.finalize();
#pragma once

#include "MXF/Zelm/DataIO/Chain.h"
#include "MXF/Zelm/IndexTables/IndexTableSegment.h"
#include "MXF/Zelm/Templates/Memory.h"
#include "MXF/Zelm/Templates/Rational.h"
#include "MXF/Zelm/Types/UniversalLabel.h"

namespace MXF::Zelm::Metadata::Structural {
class SourcePackage;
}

namespace MXF::Zelm::MXFIO {
class FutureUpdater;
}

namespace MXF::Zelm::GenericContainer {

/// Not locked: one source, one thread at a time.
class MXFZELM_EXPORT Source : public Platform::Allocated {
public:
    using FutureUpdaterPtr = Templates::SharedPtr<MXFIO::FutureUpdater, Templates::LockedCounter>;
    using SegmentPtr = Templates::SharedPtr<IndexTables::IndexTableSegment, Templates::LockedCounter>;

    Source() = default;
    Source(Source const&) = delete;
    Source& operator=(Source const&) = delete;
    virtual ~Source();

    /// The next content package: all its packets with their fill, ready to be written behind the last one.
    /// `out` is overwritten. False, with an empty chain, at the end.
    ///
    /// `mayStartPartition` becomes true when a body partition may begin with this package: decoding can begin
    /// here (SMPTE 377M asks for no more than whole packages; RDD 9 for a start of a GOP). `updater` becomes
    /// null, or what has to be told where the package was written, because it changes bytes of it later.
    /// `position` becomes the time of the package in seconds from the start of the container.
    ///
    /// A clip comes in parts, an edit unit or more in each; only the first one may start a partition.
    virtual bool next(DataIO::Chain& out, bool& mayStartPartition, FutureUpdaterPtr& updater,
                      Templates::Rational<std::int64_t>& position) = 0;

    /// True when `next` has nothing more to give.
    virtual bool done() const = 0;

    /// In bytes; 0 and 1 for no alignment. The first packet of a partition's essence must stand on this grid.
    virtual std::uint32_t kagSize() const = 0;

    /// Index table segments for the packages given so far, as far as they are final: those of pictures that
    /// wait for others in display order come later. Each segment is handed out once; the next ones begin
    /// where they end. Their SIDs are 0: the writer sets them. No entry array is longer than its two-byte
    /// item length allows. Where every package has the same size, the one segment with an EditUnitByteCount
    /// is given at once, before the first package, with duration 0 (all of the container), and again behind
    /// `finalize` with the true duration.
    virtual Templates::vector<SegmentPtr> takeIndexSegments() = 0;

    /// To be called behind the last package, or where writing ends before it: durations go into the metadata,
    /// the last index entries become final.
    virtual void finalize() = 0;

    /// The file package that describes the essence; null when there is none.
    virtual Metadata::Structural::SourcePackage* sourcePackage() const = 0;

    /// The essence container label of the whole: that of the tracks when they have one, else the label for
    /// multiple wrappings.
    virtual Types::UniversalLabel const& essenceContainerUL() const = 0;

    /// Content packages a second.
    virtual Templates::Rational<int> packageRate() const = 0;

    /// True when every content package has the same number of bytes.
    virtual bool isCBE() const = 0;

protected:
    virtual bool doNextContentPackage(DataIO::Chain& out, Templates::Rational<std::int64_t>& position) = 0;
};

} // namespace MXF::Zelm::GenericContainer
