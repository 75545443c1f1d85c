/// Stands between an analyzer and what wraps its essence: counts and hashes what goes by, and lets all tracks
/// of a container end together.
#pragma once

#include "Md5.h"
#include "UnitHashes.h"

#include <MXF/Zelm/GenericContainer/EssenceAnalyzer.h>

#include <string>

namespace Zelm {

class TrackTap;

/// Tracks that are wrapped together edit unit by edit unit: they end with the shortest of those that count.
class TrackGroup {
public:
    /// Not owned; stays until the group is gone.
    void add(TrackTap const& tap) { taps_.push_back(&tap); }

    /// Edit units after which all tracks end, the greatest number while none has ended.
    std::uint64_t end();

private:
    std::vector<TrackTap const*> taps_;
    std::uint64_t end_ = ~std::uint64_t{0};
};

struct TapOptions {
    bool md5 = false;
    bool hash = false;
    bool asStream = false; ///< hashes are of the bytes in a row, not of edit units
};

/// How long so many edit units take, in seconds. Exact where 32 bits can tell it, else up: by less than a
/// sample in the twelve hours beyond which that happens.
MXF::Zelm::Templates::Rational<int> durationOf(std::uint64_t units,
                                               MXF::Zelm::Templates::Rational<int> const& rate);

/// All questions go to the analyzer behind it.
class TrackTap : public MXF::Zelm::GenericContainer::EssenceAnalyzer {
public:
    using Analyzer = MXF::Zelm::GenericContainer::EssenceAnalyzerPtr;
    using EditUnit = MXF::Zelm::GenericContainer::EditUnit;
    using Rate = MXF::Zelm::Templates::Rational<int>;

    explicit TrackTap(Analyzer analyzer) : inner_(std::move(analyzer)) {}

    /// To be called before the first edit unit.
    void options(TapOptions const& options) { options_ = options; }

    /// Makes this a member, which ends with the group; with `isEnder` the group ends with it as well.
    void group(std::shared_ptr<TrackGroup> group, bool isEnder);

    /// Tracks elsewhere in the file that end where this one does: they are told by its `finalize`.
    void addFollower(std::shared_ptr<TrackTap> follower);

    /// The essence may go on beyond what the analyzer knows of its length.
    void lengthIsOpen() { isOpen_ = true; }
    bool isLengthOpen() const { return isOpen_; }

    EssenceAnalyzer& analyzer() const { return *inner_; }
    bool innerDone() const { return inner_->done(); }

    std::uint64_t units() const { return units_; }
    std::uint64_t bytes() const { return bytes_; }

    /// True when the analyzer had more than was taken.
    bool wasCut() const { return wasCut_; }

    /// Why the essence is not whole, empty when it is; after `finalize`.
    std::string const& fault() const { return fault_; }

    /// Something that is found in it then.
    void fault(std::string const& text) { fault_ = text; }

    /// Giving an edit unit has thrown.
    bool hasThrown() const { return hasThrown_; }

    /// After the last edit unit.
    std::string md5() { return md5_.finish(); }
    UnitHashes hashes();

    bool done() const override;
    bool nextEditUnit(EditUnit& unit) override;
    bool finalize() override;
    std::optional<std::uint64_t> byteCount() const override;

    Rate editRate() const override { return inner_->editRate(); }
    void editRate(Rate const& rate) override { inner_->editRate(rate); }
    std::uint64_t maximumToSkip() const override { return inner_->maximumToSkip(); }
    void maximumToSkip(std::uint64_t bytes) override { inner_->maximumToSkip(bytes); }
    bool preload() override { return inner_->preload(); }
    bool setMetadata(MXF::Zelm::Metadata::PartitionMetadata& metadata,
                     MXF::Zelm::Metadata::Structural::SourcePackage* package, unsigned int trackNumber,
                     unsigned int trackID) override {
        return inner_->setMetadata(metadata, package, trackNumber, trackID);
    }
    MXF::Zelm::Types::UniversalLabel universalLabel() const override { return inner_->universalLabel(); }
    bool isCBE() const override { return inner_->isCBE(); }
    void boundedEditUnitSize(int bytes) override { inner_->boundedEditUnitSize(bytes); }
    unsigned int boundedEditUnitSize() const override { return inner_->boundedEditUnitSize(); }
    bool containsTemporalDependencies() const override { return inner_->containsTemporalDependencies(); }
    MXF::Zelm::Utils::TimeCode currentTimeCode() const override { return inner_->currentTimeCode(); }
    unsigned char itemTypeIdentifier() const override { return inner_->itemTypeIdentifier(); }
    unsigned char essenceElementType() const override { return inner_->essenceElementType(); }
    unsigned int requiredKAGSize() const override { return inner_->requiredKAGSize(); }
    EssenceAnalyzerType essenceAnalyzerType() const override { return inner_->essenceAnalyzerType(); }
    MXF::Zelm::KLV::Key proposeKey(MXF::Zelm::KLV::Key const& key) const override {
        return inner_->proposeKey(key);
    }
    void customizeDescriptor(MXF::Zelm::Metadata::Structural::FileDescriptor& descriptor) const override {
        inner_->customizeDescriptor(descriptor);
    }
    void setDuration(Rate const& seconds) override { inner_->setDuration(seconds); }
    Rate getDuration() const override { return inner_->getDuration(); }

private:
    bool isEnded() const;
    bool give(EditUnit& unit);
    std::uint64_t unitsIn(EditUnit const& unit) const;
    void take(EditUnit const& unit);

    Analyzer inner_;
    TapOptions options_;
    std::shared_ptr<TrackGroup> group_;
    std::vector<std::shared_ptr<TrackTap>> followers_;
    bool isOpen_ = false; ///< its length is not known
    std::uint64_t units_ = 0, bytes_ = 0;
    bool wasCut_ = false, hasThrown_ = false;
    std::string fault_;
    Md5 md5_;
    UnitHashes hashes_;
    StreamHashes stream_;
};

} // namespace Zelm
