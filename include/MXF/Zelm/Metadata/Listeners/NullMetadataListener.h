/// Listeners that do nothing, to be derived from by those that care for a few changes only.
#pragma once

#include "MXF/Zelm/Metadata/Listeners/CommitableListener.h"

namespace MXF::Zelm::Metadata::Listeners {

/// `Base` with all that is told to it passed over.
template <class Base>
class BasicNullListener : public Base {
public:
    void metadataSetKey(KLV::Key&) override {}
    void createdMetadataSet(MetadataSet*) override {}
    void removedMetadataSet(MetadataSet*) override {}
    void addedElement(MetadataSet&, MetaMetadata::MetaElement const*, Element&,
                      Types::BaseType const&) override {}
    void updatedElement(MetadataSet&, MetaMetadata::MetaElement const*, Element&, Types::Collection const&,
                        Types::Collection const&) override {}
    void updatedElement(MetadataSet&, MetaMetadata::MetaElement const*, Element&,
                        Types::SimpleDataType const&, Types::SimpleDataType const&) override {}
    void updatedElementCollection(MetadataSet&, MetaMetadata::MetaElement const*, Element&,
                                  Types::Collection const&, std::size_t, Types::SimpleDataType const*,
                                  Types::SimpleDataType const*) override {}
    void removedElement(MetadataSet&, MetaMetadata::MetaElement const*, Element&,
                        Types::BaseType const&) override {}
};

class MXFZELM_EXPORT NullMetadataListener : public BasicNullListener<PartitionMetadataListener> {
public:
    ~NullMetadataListener() override;
};

class MXFZELM_EXPORT NullCommitableListener : public BasicNullListener<CommitableListener> {
public:
    ~NullCommitableListener() override;
    void commit() override;
};

} // namespace MXF::Zelm::Metadata::Listeners
