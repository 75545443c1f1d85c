/// The clip wrapper at work: a source that gives a clip in parts.
#pragma once

#include "MXF/Zelm/GenericContainer/FutureUpdater.h"
#include "MXF/Zelm/GenericContainer/MetadataBuilder.h"
#include "MXF/Zelm/GenericContainer/Multiplexer/FrameIndexTableBuilder.h"
#include "MXF/Zelm/Utils/Padding.h"

#include <optional>

namespace MXF::Zelm::GenericContainer::ClipWrapper {

/// Sets the length of a clip right.
class ClipLength : public MXFIO::FutureUpdater {
public:
    /// `expected` bytes of essence where that is known.
    ClipLength(unsigned char berLength, std::optional<std::uint64_t> expected);
    ~ClipLength() override;

    void add(std::uint64_t bytes) { length_ += bytes; }

    /// Bytes of essence so far.
    std::uint64_t length() const { return length_; }

    /// The length field as it is written at first.
    std::vector<unsigned char> field() const { return fieldFor(writtenLength_); }

    void written(std::uint64_t fileOffset) override { offset_ = fileOffset; }
    bool isRequired() const override { return !isExpected_; }
    std::vector<MXFIO::FileUpdate> updates() override;

private:
    std::vector<unsigned char> fieldFor(std::uint64_t length) const;

    unsigned char berLength_;
    bool isExpected_;
    std::uint64_t writtenLength_;
    std::uint64_t length_ = 0;
    std::optional<std::uint64_t> offset_; // in the file, of the key
};

struct ClipData {
    Metadata::Structural::SourcePackage* package = nullptr;
    std::optional<MetadataBuilder> builder = {};
    Types::UniversalLabel essenceContainer = {};
    EssenceAnalyzerPtr analyzer;
    KLV::Key key = {};
    unsigned char berLength = 9;
    std::uint32_t kagSize = 1;
    bool mayEndEarly = false;
};

class Clip final : public Source {
public:
    /// Of an analyzer that is ready to give edit units.
    explicit Clip(ClipData data);
    ~Clip() override;

    bool next(DataIO::Chain& out, bool& mayStartPartition, FutureUpdaterPtr& updater,
              Templates::Rational<std::int64_t>& position) override;
    bool done() const override { return hasEnded_; }
    std::uint32_t kagSize() const override { return data_.kagSize; }
    Templates::vector<SegmentPtr> takeIndexSegments() override { return index_->takeSegments(); }
    void finalize() override;
    Metadata::Structural::SourcePackage* sourcePackage() const override { return data_.package; }
    Types::UniversalLabel const& essenceContainerUL() const override { return data_.essenceContainer; }
    Templates::Rational<int> packageRate() const override { return editRate_; }
    bool isCBE() const override { return unitSize_ != 0; }

protected:
    bool doNextContentPackage(DataIO::Chain& out, Templates::Rational<std::int64_t>& position) override;

private:
    std::uint64_t headSize() const { return KLV::Key::size() + data_.berLength; }
    void appendHead(DataIO::Chain& out) const;
    void takeEditUnit(DataIO::Chain& out);
    std::int64_t editUnits() const;

    ClipData data_;
    Templates::Rational<int> editRate_;
    std::uint32_t unitSize_; // 0 when it varies
    std::shared_ptr<ClipLength> length_;
    std::unique_ptr<Multiplexer::IndexTableBuilder> index_;
    Utils::Padding padding_;
    EditUnit unit_;
    std::int64_t entries_ = 0; // of the index
    std::int64_t units_ = 0;   // of the tracks, where units vary in size
    bool hasBegun_ = false;
    bool hasEnded_ = false;
    bool isFinalized_ = false;
};

} // namespace MXF::Zelm::GenericContainer::ClipWrapper
