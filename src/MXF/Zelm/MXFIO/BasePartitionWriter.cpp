#include "MXF/Zelm/MXFIO/BasePartitionWriter.h"

#include "MXF/Zelm/MXFIO/MetadataArea.h"
#include "MXF/Zelm/MXFIO/WrittenBytes.h"
#include "MXF/Zelm/Utils/Align.h"
#include "MXF/Zelm/Utils/Padding.h"

#include <algorithm>

namespace MXF::Zelm::MXFIO {

namespace {

constexpr std::uint64_t zeroBlockSize = 64 * 1024;

Templates::auto_ptr<Types::Batch> batchOf(Templates::vector<Types::UniversalLabel> const& labels) {
    auto batch = std::make_unique<Types::Batch>(Types::Identifiers::UniversalLabel);
    for (auto const& label : labels)
        batch->add(label);
    return batch;
}

} // namespace

KLV::Key fillKey(unsigned char version) {
    KLV::Key key = KLV::fillItemKey();
    key[7] = version;
    return key;
}

BasePartitionWriter::BasePartitionWriter(PartitionFormat const& format, KLV::Key const& packKey)
    : pack_(packKey, std::max<std::uint32_t>(format.kagSize, 1), 0, 0, format.operationalPattern,
            batchOf(format.essenceContainers)),
      fillVersion_(format.fillVersion) {
    pack_.majorVersion(format.majorVersion);
    pack_.minorVersion(format.minorVersion);
    pack_.berLength(format.packBerLength);
}

BasePartitionWriter::~BasePartitionWriter() = default;

void BasePartitionWriter::place(std::uint64_t thisPartition, std::uint64_t previousPartition) {
    pack_.thisPartition(thisPartition);
    pack_.previousPartition(previousPartition);
}

void BasePartitionWriter::footerPartition(std::uint64_t offset) { pack_.footerPartition(offset); }

bool BasePartitionWriter::next(DataIO::Chain& out) {
    out.clear();
    if (!hasHead_)
        out = head();
    else if (!nextContent(out))
        return false;
    written_ += out.size();
    return true;
}

DataIO::Chain BasePartitionWriter::head() {
    DataIO::Chain rest = areas();
    DataIO::Chain head = sliceOf(pack_);
    if (!rest.empty() || hasContent())
        align(head);
    leadLength_ = head.size();
    head.append(std::move(rest));
    hasHead_ = true;
    return head;
}

DataIO::Chain BasePartitionWriter::areas() { return {}; }

bool BasePartitionWriter::hasContent() { return false; }

bool BasePartitionWriter::nextContent(DataIO::Chain&) { return false; }

void BasePartitionWriter::appendFill(DataIO::Chain& chain, std::uint64_t size) const {
    if (size == 0)
        return;
    auto header = fillHeader(fillKey(fillVersion_), size);
    std::uint64_t const zeros = size - header.size();
    chain.append(DataIO::Slice::adopt(std::move(header)));
    Utils::Padding(static_cast<std::size_t>(std::min(zeros, zeroBlockSize))).appendZeros(chain, zeros);
}

void BasePartitionWriter::align(DataIO::Chain& chain) const { appendFill(chain, alignment(chain.size())); }

std::uint64_t BasePartitionWriter::alignment(std::uint64_t position) const {
    return Utils::alignBytes(pack_.kagSize(), position, smallestWrittenFill);
}

} // namespace MXF::Zelm::MXFIO
