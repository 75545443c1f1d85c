/// Makes a whole MXF file (SMPTE 377M), its bytes being pulled by a host that owns the loop.
///
///     PullCreator creator(metadata, {.partitions = {.seconds = {10, 1}}});
///     creator.addSource(std::move(source), 1, 2);
///     for (Chain bytes; creator.next(bytes);)
///         write(bytes);                              // one behind the other
///     for (auto const& update : creator.updates())
///         writeAt(update.offset, update.bytes);      // in this order
///
///     run-in, header partition, generic streams, body and index partitions, generic streams, footer
///     partition, random index pack
///
/// Nothing is kept of what was handed out but the places of the partitions, the index that has not been
/// written yet, and one content package for each container. At every end of a partition or a content package,
/// what was handed out so far is a file that can be read: open and incomplete.
#pragma once

#include "MXF/Zelm/MXFIO/CreatorSettings.h"
#include "MXF/Zelm/MXFIO/GenericStreamPartitionWriter.h"
#include "MXF/Zelm/MXFIO/Partition.h"

namespace MXF::Zelm::MXFIO {

/// Shares the metadata, which its owner and the sources may change while the file is written. Not locked.
class MXFZELM_EXPORT PullCreator : public Platform::Allocated {
public:
    using MetadataPtr = Partition::MetadataPtr;

    /// The metadata must have a Preface with an operational pattern when the first bytes are pulled. Throws
    /// Exceptions::InvalidValue for settings that contradict each other or SMPTE 377M.
    PullCreator(MetadataPtr metadata, CreatorSettings settings);
    ~PullCreator();
    PullCreator(PullCreator const&) = delete;
    PullCreator& operator=(PullCreator const&) = delete;

    /// Adds an essence container. `bodySID` and `indexSID` are those of the metadata's EssenceContainerData;
    /// an `indexSID` of 0 stands for no index table. Throws Exceptions::InvalidValue for a body SID of 0 or
    /// an SID that is taken, Exceptions::InvalidChange when bytes have been pulled already.
    void addSource(Templates::auto_ptr<GenericContainer::Source> source, std::uint32_t bodySID,
                   std::uint32_t indexSID);

    /// Adds a generic stream. Throws as `addSource`.
    void addGenericStream(GenericStream stream);

    /// The next bytes of the file; `out` is overwritten. False, with an empty chain, when the file is whole
    /// but for its `updates`. Throws what sources and the serializing of metadata throw, and at the first
    /// call Exceptions::InvalidStructure when the file cannot be laid out as the settings say, or a source
    /// has to change its bytes later and `canUpdate` is not set. After a source has thrown, `finish` leads to
    /// a whole file of what it gave before.
    bool next(DataIO::Chain& out);

    /// No more is taken from the sources: what `next` gives from now on closes the file.
    void finish();

    /// True when `next` has nothing more to give.
    bool done() const;

    /// True when the bytes that `next` gave last begin a partition, or are the random index pack: all before
    /// them are whole partitions.
    bool isPartitionStart() const;

    /// Bytes handed out so far, run-in included.
    std::uint64_t fileOffset() const;

    /// Content packages handed out so far, of the container that was added as number `index` from 0 on; 0 for
    /// one that there is not.
    std::uint64_t packages(std::size_t index) const;

    /// False when the header metadata has outgrown its place and the reserve: the header partition then stays
    /// open and incomplete, and the footer has what is final. Told by `done`; of a file that cannot be
    /// updated always false.
    bool isHeaderClosed() const;

    /// What is to be written over the bytes of a whole file, in this order: first what the sources want, then
    /// the body packs, at last the header. Empty without `canUpdate`, and before `done`. When the writing of
    /// them is broken off, the file is as readable as it was before.
    Templates::vector<FileUpdate> updates() const;

private:
    struct State;
    Templates::auto_ptr<State> state_;
};

} // namespace MXF::Zelm::MXFIO
