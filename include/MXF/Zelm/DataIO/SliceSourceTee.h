/// A source that shows what passes to a sink.
#pragma once

#include "MXF/Zelm/DataIO/SliceSink.h"
#include "MXF/Zelm/DataIO/SliceSource.h"

namespace MXF::Zelm::DataIO {

/// Gives the bytes of another source and writes them to a sink at the same time: a file is wrapped and
/// checksummed in one pass. The sink gets every byte once and in order, those that are skipped included. It
/// is a failure of the read or skip when the sink throws; the bytes are then passed and not given.
class MXFZELM_EXPORT SliceSourceTee : public SliceSource {
public:
    SliceSourceTee(Templates::SharedPtr<SliceSource> source, Templates::SharedPtr<SliceSink> sink);
    ~SliceSourceTee() override;

    std::uint64_t absoluteOffset() const override;
    bool endOfStream() const override;
    std::uint64_t read(std::uint64_t size, Chain& chain) override;
    std::uint64_t skip(std::uint64_t size) override;

private:
    Templates::SharedPtr<SliceSource> source_;
    Templates::SharedPtr<SliceSink> sink_;
};

} // namespace MXF::Zelm::DataIO
