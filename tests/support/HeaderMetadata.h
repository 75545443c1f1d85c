/// Header metadata in tests: of the sample files, and loaded from the bytes that were written.
#pragma once

#include "MXF/Zelm/MXFIO/Reader.h"
#include "MXF/Zelm/Metadata/PartitionMetadata.h"
#include "support/Files.h"

namespace MXF::Zelm::Test {

using DictionaryPtr = MXFIO::Reader::DictionaryPtr;

/// Tests over the sample files, which skip when the files are missing.
class SampleTest : public testing::Test {
protected:
    void SetUp() override {
        if (sampleFiles().empty())
            GTEST_SKIP() << "no sample files in " << MXFZELM_SAMPLES_DIR;
    }
};

/// What is done with the metadata of one partition; `where` names it in messages.
using MetadataAction =
    std::function<void(Metadata::PartitionMetadata& metadata, Bytes const& file, std::string const& where)>;

/// Calls `action` for each partition with metadata of each sample.
void forEachMetadata(DictionaryPtr const& dictionary, MetadataAction const& action);

/// Header metadata without any sets.
std::unique_ptr<Metadata::PartitionMetadata> metadataOver(DictionaryPtr const& dictionary);

/// The sets that stand in written header metadata: a primer pack, then sets.
std::unique_ptr<Metadata::PartitionMetadata> loadAgain(Bytes const& bytes, DictionaryPtr const& dictionary);

} // namespace MXF::Zelm::Test
