/// Reads the essence of a file from front to back, from a source that need not seek: a pipe.
#pragma once

#include "MXF/Zelm/MXFIO/EssenceContainer.h"
#include "MXF/Zelm/MXFIO/EssenceUnit.h"
#include "MXF/Zelm/Packs/PartitionPack.h"

namespace MXF::Zelm::MXFIO {

/// Gives the edit units of all containers in the order in which they end in the file. Knows what the header
/// metadata says that stands before them: a clip is cut in edit units where the size of its samples is known,
/// and otherwise given as one, in parts when it is large.
class MXFZELM_EXPORT SequentialReader : public Platform::Allocated {
public:
    using Options = EssenceOptions;
    using DictionaryPtr = Templates::SharedPtr<MetaMetadata::Dictionary, Templates::LockedCounter>;

    /// `source` is not owned and must outlive the reader. At most `searchLimit` bytes are passed over before
    /// the header partition pack.
    SequentialReader(DataIO::DataSource& source, DictionaryPtr dictionary, std::uint64_t searchLimit,
                     Options options);
    SequentialReader(DataIO::DataSource& source, DictionaryPtr dictionary, std::uint64_t searchLimit = 65536);
    SequentialReader(SequentialReader const&) = delete;
    SequentialReader& operator=(SequentialReader const&) = delete;
    ~SequentialReader();

    /// The next edit unit. False at the end; where the source ends amid the essence, after the last one that
    /// is whole. `unit` is overwritten. An element with more bytes than `Options::largestElement` comes
    /// without its data; of a clip without edit units its parts come one after another. Throws
    /// Exceptions::InvalidStructure with "No header partition found", and otherwise as
    /// `BodyStream::peekPacket` does.
    bool next(EssenceUnit& unit);

    /// The header metadata that was read last, empty until there is some, and its containers. Known before
    /// the first edit unit where the header partition has it.
    Partition::MetadataPtr const& metadata() const;
    Templates::vector<EssenceContainer> const& containers() const;

    /// The pack of the partition that is being read, null before the first.
    Packs::PartitionPack const* partitionPack() const;

private:
    struct State;
    Templates::auto_ptr<State> state_;
};

} // namespace MXF::Zelm::MXFIO
