/// Takes frames of coded sound out of bytes, in one piece and in small ones, with the same result; what is
/// wrapped by edit units, by frames and as a clip has the bytes of the frames.
#include "MXF/Zelm/DataIO/BufferSliceSource.h"
#include "MXF/Zelm/GenericContainer/Analyzers/CodedSoundAnalyzer.h"
#include "support.h"

#include <algorithm>

using namespace MXF::Zelm;
using namespace MXF::Zelm::Essence::CodedSound;
using GenericContainer::CodedSoundAnalyzer;
using GenericContainer::CodedSoundOptions;
using GenericContainer::Wrapping;

namespace {

Templates::SharedPtr<DataIO::SliceSource> sourceOf(DataIO::Chain const& chain) {
    return std::make_shared<DataIO::BufferSliceSource>(chain);
}

DataIO::Chain framesIn(DataIO::Chain const& bytes, Format const& format) {
    FrameCutter cutter(sourceOf(bytes), format);
    DataIO::Chain frames;
    while (auto next = cutter.next())
        frames.append(std::move(next->bytes));
    Fuzz::require(frames.size() + cutter.passed().count <= bytes.size());
    return frames;
}

DataIO::Chain wrapped(DataIO::Chain const& bytes, Format const& format, Wrapping wrapping,
                      Templates::Rational<int> const& rate) {
    CodedSoundOptions options;
    options.wrapping = wrapping;
    CodedSoundAnalyzer analyzer(sourceOf(bytes), format, options);
    DataIO::Chain units;
    Fuzz::passingOverBadInput([&] {
        analyzer.editRate(rate);
        if (!analyzer.preload())
            return;
        for (GenericContainer::EditUnit unit; analyzer.nextEditUnit(unit);)
            units.append(unit.data);
        analyzer.finalize();
    });
    return units;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size) {
    DataIO::Chain const whole(DataIO::Slice::copyOf(data, size));
    DataIO::Chain pieces;
    for (std::size_t at = 0; at < size; at += 5)
        pieces.append(DataIO::Slice::copyOf(data + at, std::min<std::size_t>(5, size - at)));
    for (auto const* const format : formats()) {
        auto const frames = framesIn(whole, *format);
        Fuzz::require(frames == framesIn(pieces, *format));
        Fuzz::require(frames == wrapped(pieces, *format, Wrapping::Frame, {30000, 1001}));
        Fuzz::require(frames == wrapped(whole, *format, Wrapping::Frame, {}));
        Fuzz::require(frames == wrapped(whole, *format, Wrapping::Clip, {}));
    }
    return 0;
}
