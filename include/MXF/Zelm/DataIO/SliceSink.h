/// Sinks of chains: what essence is written to.
#pragma once

#include "MXF/Zelm/DataIO/Chain.h"
#include "MXF/Zelm/DataIO/DataSink.h"

namespace MXF::Zelm::DataIO {

/// A sink of bytes that also takes whole chains and writes their slices from where they stand.
class MXFZELM_EXPORT SliceSink : public virtual DataSink {
public:
    ~SliceSink() override;
    using DataSink::write;

    /// Writes all bytes of the chain, or throws.
    virtual void write(Chain const& chain) = 0;
};

/// Writes a chain to any sink: at once where the sink is a SliceSink, else slice by slice.
MXFZELM_EXPORT void writeChain(DataSink& sink, Chain const& chain);

/// Makes a SliceSink of any sink.
class MXFZELM_EXPORT DataSinkSliceSink : public SliceSink {
public:
    explicit DataSinkSliceSink(Templates::SharedPtr<DataSink> sink);
    ~DataSinkSliceSink() override;

    void write(const unsigned char* buffer, std::uint64_t size) override;
    void write(Chain const& chain) override;
    std::uint64_t absoluteOffset() const override;

private:
    Templates::SharedPtr<DataSink> sink_;
};

} // namespace MXF::Zelm::DataIO
