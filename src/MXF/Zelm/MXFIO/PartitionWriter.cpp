#include "MXF/Zelm/MXFIO/PartitionWriter.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace MXF::Zelm::MXFIO {

namespace {

constexpr std::uint64_t noLimit = std::numeric_limits<std::uint64_t>::max();

std::uint64_t limitOf(std::uint64_t limit) { return limit == 0 ? noLimit : limit; }

/// The time as a number of packages, at least one.
std::uint64_t packagesIn(Templates::Rational<std::int64_t> const& seconds,
                         Templates::Rational<int> const& rate) {
    double const packages = std::round(seconds.toDouble() * rate.toDouble());
    return !(packages > 0) ? noLimit : packages < 1e15 ? static_cast<std::uint64_t>(packages) : noLimit;
}

PartitionFormat onGridOf(PartitionFormat format, GenericContainer::Source const& source) {
    format.kagSize = std::max<std::uint32_t>(source.kagSize(), 1);
    return format;
}

} // namespace

PartitionWriter::PartitionWriter(PartitionFormat const& format, Packs::PartitionPack::PartitionKind kind,
                                 Packs::PartitionPack::PartitionStatus status, BodySource& source,
                                 PartitionLimits const& limits, std::uint64_t runInLength)
    : CommonPartitionWriter(onGridOf(format, source.source()), kind, status),
      source_(source),
      packageLimit_(
          std::min(limitOf(limits.packages), packagesIn(limits.seconds, source.source().packageRate()))),
      byteLimit_(limitOf(limits.bytes)),
      runInLength_(runInLength),
      firstPackage_(source.packages()) {
    pack().bodySID(source.bodySID());
    pack().bodyOffset(source.streamOffset());
}

PartitionWriter::~PartitionWriter() = default;

bool PartitionWriter::hasContent() { return true; }

bool PartitionWriter::isFull() const {
    std::uint64_t const packages = source_.packages() - firstPackage_;
    return packages != 0 && source_.mayStartPartition() &&
           (packages >= packageLimit_ || source_.streamOffset() - partitionPack().bodyOffset() >= byteLimit_);
}

bool PartitionWriter::nextContent(DataIO::Chain& out) {
    if (CommonPartitionWriter::nextContent(out))
        return true;
    if (!source_.fetch() || isFull())
        return false;
    out = source_.take(runInLength_ + end());
    return true;
}

} // namespace MXF::Zelm::MXFIO
