/// The generic streams of a file (SMPTE 410M): documents, and what belongs to timed text.
#pragma once

#include "Input.h"
#include "OutputFile.h"

#include <functional>
#include <string>
#include <vector>

namespace Zelm {

/// One generic stream.
struct Document {
    std::string name; ///< "g2", after its SID
    std::uint32_t streamID = 0;
    std::string mimeType;   ///< by the metadata; empty when that does not say
    std::string resourceID; ///< of a resource of timed text: the digits of its UUID
    std::string file;
    std::uint64_t bytes = 0;

    /// The partitions that it stands in, in their order; owned by the reader.
    std::vector<MXF::Zelm::MXFIO::Partition*> partitions;
};

/// Finds the generic streams, and their MIME types in `metadata` (null for none). `base` is what the names of
/// files begin with: folder and stem.
std::vector<Document> findDocuments(Input& input, MXF::Zelm::Metadata::PartitionMetadata const* metadata,
                                    std::string const& base);

/// Writes a document.
void writeDocument(Document& document, OutputFile& file);

} // namespace Zelm
