/// How a new file is laid out.
///
///     index          Footer           OwnPartitions     Body              Header (constant size)
///                    header           header            header            header, index
///                    body 1           body 1            body 1            body 1
///                    body 2           index of 1        index of 1,       body 2
///                                     body 2            body 2
///                    footer, index    index of 2        footer,           footer
///                                     footer            index of 2
#pragma once

#include "MXF/Zelm/MXFIO/PartitionWriter.h"

#include <functional>
#include <optional>

namespace MXF::Zelm::MXFIO {

struct MXFZELM_EXPORT CreatorSettings {
    enum class Index {
        /// In the footer. Of several containers all but the last get a partition before the footer.
        Footer,

        /// In partitions of its own, behind each body partition for what went before.
        OwnPartitions,

        /// In each body partition for what went before in its container; the rest as with `Footer`.
        Body,

        /// The same, and all of it once more in the footer.
        BodyAndFooter,

        /// In the header partition: of one container whose packages all have one size. Its duration is put
        /// right at the end; where the file cannot be changed, the footer has the index with its duration.
        Header,
    };

    /// In which order the body partitions of several containers are written.
    enum class Interleaving {
        None,   ///< container after container, in the order of adding
        ByTime, ///< the container that is behind in time goes on, at the start of each partition
    };

    Index index = Index::Footer;
    Interleaving interleaving = Interleaving::None;

    /// When a new body partition begins.
    PartitionLimits partitions = {};

    /// The first body partition is the header partition itself, as of D-10.
    bool essenceInHeader = false;

    /// KLV alignment grid of all partitions without essence, in bytes; 0 for the largest of the sources'.
    /// Partitions with essence have the grid of their source.
    std::uint32_t kagSize = 0;

    /// Bytes of fill behind the header metadata, at least; 0 for none.
    std::uint64_t metadataReserve = 4096;

    /// Minor version of the partition packs; absent for that of the Preface's version, else 2.
    std::optional<std::uint16_t> minorVersion = std::nullopt;
    unsigned char packBerLength = 4;
    unsigned char fillVersion = 2; ///< as PartitionFormat has it
    Metadata::SerializationOrder serializationOrder = Metadata::SerializationOrder::ForwardReferences;

    /// What stands before the header partition pack: less than 64 KiB.
    std::vector<unsigned char> runIn = {};

    /// The footer repeats the final header metadata. It does so in any case where the header cannot be
    /// brought up to date, or its layout changes by it.
    bool metadataInFooter = false;

    /// Body partitions with essence repeat the header metadata as it is by then, for who begins to read amid
    /// the file. They stay open: what they have is never brought up to date.
    bool metadataInBody = false;

    /// Written bytes can be changed at the end. Without it the header stays open and incomplete, and the
    /// footer is what readers have to go by.
    bool canUpdate = true;

    /// Called behind the last package, when all sources have been finalized and before the final metadata is
    /// written: to set what is known only now.
    std::function<void()> beforeFinalMetadata = {};
};

} // namespace MXF::Zelm::MXFIO
