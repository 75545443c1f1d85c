/// Cuts JPEG 2000 codestreams and reads documents of timed text: whole, and in small pieces, with the same
/// result.
#include "MXF/Zelm/DataIO/BufferSliceSource.h"
#include "MXF/Zelm/Essence/JPEG2000/CodestreamCutter.h"
#include "MXF/Zelm/Essence/JPEG2000/CodestreamHeader.h"
#include "MXF/Zelm/Essence/TimedText/Document.h"
#include "support.h"

#include <algorithm>
#include <vector>

using namespace MXF::Zelm;
using Essence::JPEG2000::CodestreamCutter;
using Essence::JPEG2000::CodestreamHeader;

namespace {

struct Found {
    std::vector<std::uint64_t> sizes;
    std::vector<CodestreamHeader> headers;
    double duration = 0;
    friend bool operator==(Found const&, Found const&) = default;
};

Found read(DataIO::Chain const& bytes) {
    Found found;
    Fuzz::passingOverBadInput([&] {
        CodestreamCutter cutter(std::make_shared<DataIO::BufferSliceSource>(bytes));
        for (CodestreamCutter::Unit unit; cutter.next(unit);) {
            Fuzz::require(unit.offset + unit.data.size() <= bytes.size());
            found.sizes.push_back(unit.data.size());
            found.headers.push_back(CodestreamHeader::read(unit.data));
        }
    });
    Fuzz::passingOverBadInput([&] { found.duration = Essence::TimedText::Document::read(bytes).duration; });
    return found;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size) {
    DataIO::Chain pieces;
    for (std::size_t at = 0; at < size; at += 3)
        pieces.append(DataIO::Slice::copyOf(data + at, std::min<std::size_t>(3, size - at)));
    Fuzz::require(read(DataIO::Slice::copyOf(data, size)) == read(pieces));
    return 0;
}
