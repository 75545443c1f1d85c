/// The multiplexer at work: a source of content packages.
#pragma once

#include "MXF/Zelm/GenericContainer/Multiplexer/FrameIndexTableBuilder.h"
#include "MXF/Zelm/GenericContainer/Multiplexer/MuxData.h"
#include "MXF/Zelm/GenericContainer/Multiplexer/SmallSlices.h"
#include "MXF/Zelm/GenericContainer/TimecodeTrack.h"
#include "MXF/Zelm/Utils/Padding.h"

namespace MXF::Zelm::GenericContainer::Multiplexer {

/// Owns its settings and shares the analyzers.
class Worker_impl final : public Source {
public:
    /// `timecodeTrack` may be null.
    Worker_impl(std::unique_ptr<MuxData> data, std::unique_ptr<TimecodeTrack> timecodeTrack);
    ~Worker_impl() override;

    bool next(DataIO::Chain& out, bool& mayStartPartition, FutureUpdaterPtr& updater,
              Templates::Rational<std::int64_t>& position) override;
    bool done() const override;
    std::uint32_t kagSize() const override { return data_->kagSize; }
    Templates::vector<SegmentPtr> takeIndexSegments() override { return index_->takeSegments(); }
    void finalize() override;
    Metadata::Structural::SourcePackage* sourcePackage() const override { return data_->package; }
    Types::UniversalLabel const& essenceContainerUL() const override { return data_->essenceContainer; }
    Templates::Rational<int> packageRate() const override { return data_->packageRate; }
    bool isCBE() const override { return packageSize() != 0; }

protected:
    bool doNextContentPackage(DataIO::Chain& out, Templates::Rational<std::int64_t>& position) override;

private:
    void makeIndex();
    std::vector<IndexedElement> indexedElements() const;
    bool checkCBE() const;
    std::uint64_t checkPaddedCBE() const;
    std::uint64_t packageSize() const;
    bool drives(AnalyzerEntry const& entry) const;
    bool readDrivers();
    bool readItemFromAnalyzer(std::size_t number);
    void takeEditUnit(std::size_t number);
    void processAnalyzer(std::size_t number, DataIO::Chain& out);
    DataIO::Slice keyAndLength(AnalyzerEntry const& entry, std::uint64_t length);
    std::uint64_t appendElement(AnalyzerEntry& entry, DataIO::Chain& out);
    std::uint64_t fillSize(std::size_t number, std::uint64_t elementSize);
    std::uint64_t fillOfEntry(AnalyzerEntry const& entry, std::uint64_t elementSize) const;
    std::uint64_t fillToItem(AnalyzerEntry const& entry);
    std::uint64_t fillToEditUnit();

    std::unique_ptr<MuxData> data_;
    std::unique_ptr<TimecodeTrack> timecodeTrack_;
    std::unique_ptr<FrameIndexTableBuilder> index_;
    Utils::Padding padding_;
    SmallSlices heads_; ///< keys and lengths
    EditUnit unit_;
    std::size_t ruling_ = 0;  ///< the entry that rules the index
    bool hasEssence_ = false; ///< there is more than a system item
    bool isFinalized_ = false;

    std::int64_t packageCount_ = 0;
    Templates::Rational<std::int64_t> packageEnd_ = {}; ///< in seconds
    std::uint64_t streamOffset_ = 0;                    ///< where the package begins
    std::uint64_t sliceOffset_ = 0;                     ///< bytes of the package so far
    std::uint64_t lastItemSliceOffset_ = 0;             ///< where its item begins
};

} // namespace MXF::Zelm::GenericContainer::Multiplexer
