/// Documents of timed text, wrapped as a clip (SMPTE 429-5, ST 2067-5).
///
///     body partition               one element: the document
///     generic stream partitions    its fonts and pictures, one each (MXFIO::GenericStream)
#pragma once

#include "MXF/Zelm/DataIO/SliceSource.h"
#include "MXF/Zelm/Essence/TimedText/Document.h"
#include "MXF/Zelm/GenericContainer/Analyzers/BasicAnalyzer.h"
#include "MXF/Zelm/Types/UUID.h"

#include <optional>

namespace MXF::Zelm::Metadata {
class MetadataSet;
}

namespace MXF::Zelm::GenericContainer {

/// A font or picture that the document names, which the host writes as a generic stream.
struct MXFZELM_EXPORT TimedTextResource {
    Types::UUID id;           ///< as the document names it
    std::u16string mediaType; ///< "image/png"
    std::uint32_t streamID;   ///< the SID of the generic stream
};

struct MXFZELM_EXPORT TimedTextOptions {
    /// Edit units a second; not known for the document's rate.
    Templates::Rational<int> editRate = {};

    /// Edit units that the document lasts; 0 for up to the end of its last text.
    std::uint64_t length = 0;

    /// Names the document; absent for its own UUID, and a new one where it has none.
    std::optional<Types::UUID> resourceID = std::nullopt;

    Templates::vector<TimedTextResource> resources = {};
};

/// The document is one edit unit of the index, and all of them by its length: `nextEditUnit` gives it at
/// once. It goes into the file as it is. Its descriptor has no class of its own: `setMetadata` throws
/// Exceptions::InvalidMetadataSet unless Metadata::Structural::registerFurtherDescriptors was called.
class MXFZELM_EXPORT TimedTextAnalyzer : public BasicAnalyzer<DataAnalyzer> {
public:
    /// Reads a document from where `source` stands.
    TimedTextAnalyzer(Templates::SharedPtr<DataIO::SliceSource> source, TimedTextOptions options);
    ~TimedTextAnalyzer() override;

    /// Reads the document. Throws Exceptions::InvalidFormat for what is no timed text.
    bool preload() override;

    /// Throws Exceptions::InvalidStructure before `preload`.
    Essence::TimedText::Document const& document() const;

    using BasicAnalyzer::editRate;

    /// That of the options, else the document's, else the one that was set.
    Templates::Rational<int> editRate() const override;

    Types::UniversalLabel universalLabel() const override;
    unsigned char itemTypeIdentifier() const override;
    unsigned char essenceElementType() const override;
    std::optional<std::uint64_t> byteCount() const override;

protected:
    Metadata::Structural::FileDescriptor& describe(Metadata::PartitionMetadata& metadata,
                                                   Metadata::Structural::FileDescriptor* present) override;
    bool hasMore() const override;
    std::uint64_t read(EditUnit& unit) override;

private:
    std::uint64_t length() const;
    void describeDocument(Metadata::MetadataSet& descriptor) const;

    Templates::SharedPtr<DataIO::SliceSource> source_;
    TimedTextOptions options_;
    DataIO::Chain bytes_;
    std::optional<Essence::TimedText::Document> document_;
    Types::UUID resourceID_;
};

} // namespace MXF::Zelm::GenericContainer
