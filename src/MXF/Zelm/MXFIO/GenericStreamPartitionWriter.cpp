#include "MXF/Zelm/MXFIO/GenericStreamPartitionWriter.h"

#include "MXF/Zelm/ByteCoders/BER.h"
#include "MXF/Zelm/Exceptions/Exceptions.h"

#include <algorithm>
#include <string>

namespace MXF::Zelm::MXFIO {

using namespace KLV::Literals;

namespace {

constexpr KLV::Key packKey = "060E2B34.02050101.0D010201.01031100"_key;
constexpr KLV::Key contentKey = "060E2B34.0101010C.0D010509.01000000"_key;
constexpr std::uint64_t blockSize = 256 * 1024;

unsigned char berSizeOf(std::uint64_t length) {
    return std::max<unsigned char>(4, static_cast<unsigned char>(ByteCoders::calculateBERSize(length)));
}

} // namespace

KLV::Key const& GenericStream::defaultKey() { return contentKey; }

GenericStreamPartitionWriter::GenericStreamPartitionWriter(PartitionFormat const& format,
                                                           GenericStream stream)
    : BasePartitionWriter(format, Packs::buildPartitionPackKey(Packs::PartitionPack::Body,
                                                               Packs::PartitionPack::ClosedComplete)),
      stream_(std::move(stream)),
      length_(stream_.source ? stream_.source->remaining() : stream_.data.size()),
      remaining_(length_) {
    pack().key(packKey);
    pack().bodySID(stream_.sid);
    if (stream_.source)
        slices_ = std::make_unique<DataIO::DataSourceSliceSource>(stream_.source);
}

GenericStreamPartitionWriter::~GenericStreamPartitionWriter() = default;

std::uint64_t GenericStreamPartitionWriter::headLength() const {
    return stream_.isPackets ? 0 : KLV::Key::size() + berSizeOf(length_);
}

/// Key and length of the content.
DataIO::Chain GenericStreamPartitionWriter::areas() {
    if (stream_.isPackets)
        return {};
    std::vector<unsigned char> head(static_cast<std::size_t>(headLength()));
    std::copy_n(stream_.key.rawBuffer(), KLV::Key::size(), head.data());
    ByteCoders::codeBER(length_, berSizeOf(length_), head.data() + KLV::Key::size());
    return DataIO::Slice::adopt(std::move(head));
}

bool GenericStreamPartitionWriter::nextContent(DataIO::Chain& out) {
    if (remaining_ == 0) {
        if (!isAligned_)
            appendFill(out, alignment(headLength() + length_));
        isAligned_ = true;
        return !out.empty();
    }
    if (!slices_)
        out = stream_.data;
    else if (slices_->read(std::min(remaining_, blockSize), out) == 0)
        throw Exceptions::InvalidLength("The data of generic stream " + std::to_string(stream_.sid) +
                                        " ends " + std::to_string(remaining_) + " bytes early");
    remaining_ -= out.size();
    return true;
}

} // namespace MXF::Zelm::MXFIO
