#include "MXF/Zelm/DataIO/SliceSink.h"

#include <utility>

namespace MXF::Zelm::DataIO {

SliceSink::~SliceSink() = default;

void writeChain(DataSink& sink, Chain const& chain) {
    if (auto* const gathering = dynamic_cast<SliceSink*>(&sink))
        gathering->write(chain);
    else
        for (auto const& slice : chain)
            sink.write(slice.data(), slice.size());
}

DataSinkSliceSink::DataSinkSliceSink(Templates::SharedPtr<DataSink> sink) : sink_(std::move(sink)) {}

DataSinkSliceSink::~DataSinkSliceSink() = default;

void DataSinkSliceSink::write(const unsigned char* buffer, std::uint64_t size) { sink_->write(buffer, size); }

void DataSinkSliceSink::write(Chain const& chain) { writeChain(*sink_, chain); }

std::uint64_t DataSinkSliceSink::absoluteOffset() const { return sink_->absoluteOffset(); }

} // namespace MXF::Zelm::DataIO
