/// Containers of several files, one after the other, as one.
#pragma once

#include <MXF/Zelm/MXFIO/PassThroughSource.h>

#include <deque>
#include <memory>

namespace Zelm {

/// All parts are wrapped by edit units, and none claims a constant size.
class JoinedSource : public MXF::Zelm::GenericContainer::Source {
public:
    using Part = MXF::Zelm::MXFIO::PassThroughSource;

    /// Throws Exceptions::InvalidValue for a clip.
    void add(std::unique_ptr<Part> part);

    bool next(MXF::Zelm::DataIO::Chain& out, bool& mayStartPartition, FutureUpdaterPtr& updater,
              MXF::Zelm::Templates::Rational<std::int64_t>& position) override;
    bool done() const override { return current_ == parts_.size(); }
    std::uint32_t kagSize() const override { return parts_.front()->kagSize(); }
    MXF::Zelm::Templates::vector<SegmentPtr> takeIndexSegments() override;
    void finalize() override;
    MXF::Zelm::Metadata::Structural::SourcePackage* sourcePackage() const override { return nullptr; }
    MXF::Zelm::Types::UniversalLabel const& essenceContainerUL() const override {
        return parts_.front()->essenceContainerUL();
    }
    MXF::Zelm::Templates::Rational<int> packageRate() const override { return parts_.front()->packageRate(); }
    bool isCBE() const override { return false; }

    std::int64_t units() const;

protected:
    bool doNextContentPackage(MXF::Zelm::DataIO::Chain& out,
                              MXF::Zelm::Templates::Rational<std::int64_t>& position) override;

private:
    void takeSegments(Part& part);

    std::deque<std::unique_ptr<Part>> parts_;
    std::size_t current_ = 0;
    std::int64_t unitsBefore_ = 0;  // of the current part
    std::uint64_t bytesBefore_ = 0; // the same
    std::uint64_t bytes_ = 0;       // handed out
    MXF::Zelm::Templates::vector<SegmentPtr> segments_;
};

} // namespace Zelm
