/// Writing a header or body partition with essence: content packages of a source, up to a limit.
#pragma once

#include "MXF/Zelm/MXFIO/BodySource.h"
#include "MXF/Zelm/MXFIO/CommonPartitionWriter.h"

namespace MXF::Zelm::MXFIO {

/// When a partition is long enough; 0 for no limit. It ends with the last package before the first one that
/// may start a partition once a limit has been reached.
struct MXFZELM_EXPORT PartitionLimits {
    std::uint64_t packages = 0;
    std::uint64_t bytes = 0; ///< of essence
    Templates::Rational<std::int64_t> seconds = {0, 1};
};

class MXFZELM_EXPORT PartitionWriter : public CommonPartitionWriter {
public:
    /// `source` is not owned and must outlive the writer. `runInLength` is what precedes the header partition
    /// pack. The alignment grid is that of the source.
    PartitionWriter(PartitionFormat const& format, Packs::PartitionPack::PartitionKind kind,
                    Packs::PartitionPack::PartitionStatus status, BodySource& source,
                    PartitionLimits const& limits, std::uint64_t runInLength);
    ~PartitionWriter() override;

    BodySource& source() { return source_; }

protected:
    bool hasContent() override;
    bool nextContent(DataIO::Chain& out) override;

private:
    bool isFull() const;

    BodySource& source_;
    std::uint64_t packageLimit_; // packages and seconds
    std::uint64_t byteLimit_;
    std::uint64_t runInLength_;
    std::uint64_t firstPackage_;
};

} // namespace MXF::Zelm::MXFIO
