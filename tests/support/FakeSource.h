/// A source of wrapped essence that is made up: content packages as contentPackage makes them.
#pragma once

#include "MXF/Zelm/GenericContainer/Source.h"
#include "MXF/Zelm/MXFIO/FutureUpdater.h"
#include "MXF/Zelm/Utils/Align.h"

#include "support/EssenceBody.h"

#include <functional>

namespace MXF::Zelm::Test {

struct FakePackages {
    std::size_t packages = 20;
    std::size_t gop = 3; ///< packages from one start of a partition to the next
    std::uint32_t kag = 1;
    bool constantSize = false;

    /// Index entries that are not final before the next packages are there.
    std::size_t waiting = 0;

    /// Packages have a byte that is put right at the end.
    bool changesLater = false;
    bool mustChangeLater = false;

    /// Throws instead of giving this package.
    std::size_t failsAt = ~std::size_t{0};

    std::function<void(std::size_t packages)> whenFinalized = {};

    /// Package `unit`, its fill included.
    Bytes package(std::size_t unit) const {
        Bytes bytes = constantSize ? klv(elementKey(pictureTrack),
                                         number(static_cast<std::uint32_t>(unit)) + repeated(90, 0xCC))
                                   : contentPackage(unit);
        std::uint64_t const gap = Utils::alignBytes(kag, bytes.size(), 20);
        return gap == 0 ? bytes : bytes + fill(static_cast<std::size_t>(gap));
    }
};

/// What the updater of a fake source puts over the first byte of the first element's value.
inline constexpr unsigned char lateByte = 0xFA;

class FakeUpdater : public MXFIO::FutureUpdater {
public:
    explicit FakeUpdater(bool isRequired) : isRequired_(isRequired) {}
    void written(std::uint64_t fileOffset) override { offset_ = fileOffset + 20; }
    bool isRequired() const override { return isRequired_; }
    std::vector<MXFIO::FileUpdate> updates() override { return {{offset_, {lateByte}}}; }

private:
    bool isRequired_;
    std::uint64_t offset_ = 0;
};

class FakeSource : public GenericContainer::Source {
public:
    explicit FakeSource(FakePackages essence) : essence_(std::move(essence)) {}

    bool next(DataIO::Chain& out, bool& mayStartPartition, FutureUpdaterPtr& updater,
              Templates::Rational<std::int64_t>& position) override {
        mayStartPartition = given_ % essence_.gop == 0;
        updater = essence_.changesLater ? std::make_shared<FakeUpdater>(essence_.mustChangeLater) : nullptr;
        return doNextContentPackage(out, position);
    }
    bool done() const override { return given_ == essence_.packages; }
    std::uint32_t kagSize() const override { return essence_.kag; }
    void finalize() override {
        finalized_ = true;
        if (essence_.whenFinalized)
            essence_.whenFinalized(given_);
    }
    Metadata::Structural::SourcePackage* sourcePackage() const override { return nullptr; }
    Types::UniversalLabel const& essenceContainerUL() const override { return label_; }
    Templates::Rational<int> packageRate() const override { return {25, 1}; }
    bool isCBE() const override { return essence_.constantSize; }

    Templates::vector<SegmentPtr> takeIndexSegments() override {
        return essence_.constantSize ? constantSegment() : variableSegments();
    }

protected:
    bool doNextContentPackage(DataIO::Chain& out, Templates::Rational<std::int64_t>& position) override {
        out.clear();
        if (done())
            return false;
        if (given_ == essence_.failsAt)
            throw Exceptions::InvalidFormat("no essence");
        starts_.push_back(streamOffset_);
        position = {static_cast<std::int64_t>(given_), 25};
        Bytes bytes = essence_.package(given_++);
        streamOffset_ += bytes.size();
        out = DataIO::Slice::adopt(std::move(bytes));
        return true;
    }

private:
    SegmentPtr segment(std::size_t start) {
        auto made = std::make_shared<IndexTables::IndexTableSegment>(std::uint8_t{4});
        made->indexEditRate(Types::Rational(25, 1));
        made->indexStartPosition(Types::Position(static_cast<std::int64_t>(start)));
        return made;
    }

    Templates::vector<SegmentPtr> constantSegment() {
        if (given_ == 0 || (constantTaken_ && !finalized_))
            return {};
        constantTaken_ = true;
        auto made = segment(0);
        made->editUnitByteCount(Types::UInt32(static_cast<std::uint32_t>(essence_.package(0).size())));
        made->indexDuration(Types::Length(finalized_ ? static_cast<std::int64_t>(given_) : 0));
        return {made};
    }

    Templates::vector<SegmentPtr> variableSegments() {
        std::size_t const end = finalized_ ? given_ : given_ - std::min(given_, essence_.waiting);
        Templates::vector<SegmentPtr> segments;
        for (; taken_ < end; ++taken_) {
            if (segments.empty() || segments.back()->indexEntryCount() == 1000)
                segments.push_back(segment(taken_));
            auto& last = *segments.back();
            bool const isStart = taken_ % essence_.gop == 0;
            last.addIndexEntry(last.indexEntryCount(), {0, static_cast<std::int8_t>(-(taken_ % essence_.gop)),
                                                        isStart, isStart, !isStart, false, starts_[taken_]});
            last.indexDuration(Types::Length(static_cast<std::int64_t>(last.indexEntryCount())));
        }
        return segments;
    }

    FakePackages essence_;
    std::size_t given_ = 0;
    std::size_t taken_ = 0; // index entries handed out
    bool constantTaken_ = false;
    bool finalized_ = false;
    std::uint64_t streamOffset_ = 0;
    std::vector<std::uint64_t> starts_;
    Types::UniversalLabel label_;
};

} // namespace MXF::Zelm::Test
