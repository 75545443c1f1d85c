#include "MXF/Zelm/MXFIO/KeptPartitions.h"

#include "MXF/Zelm/ByteCoders/BER.h"
#include "MXF/Zelm/ByteCoders/Hexadecimal.h"
#include "MXF/Zelm/Exceptions/Exceptions.h"
#include "MXF/Zelm/MXFIO/WrittenBytes.h"
#include "MXF/Zelm/Packs/RandomIndexPack.h"

#include <algorithm>

namespace MXF::Zelm::MXFIO {

using Code = RepairFinding::Code;

namespace {

bool isEmpty(WalkedPartition const& partition) {
    return !partition.hasMetadata && !partition.hasIndex && !partition.hasBody;
}

} // namespace

std::string hexOf(std::uint64_t offset) { return "0x" + ByteCoders::toHexadecimal(offset); }

void cannotRepair(std::uint64_t offset, std::string const& what) {
    throw Exceptions::at(offset, Exceptions::InvalidStructure("The file cannot be repaired: " + what));
}

KeptPartitions::KeptPartitions(FileWalk const& walk, bool withoutFooter, PatchedSource& view,
                               std::vector<RepairFinding>& findings)
    : walk_(walk),
      view_(view),
      findings_(findings),
      all_(walk.partitions()),
      end_(walk.randomIndex() ? walk.randomIndex()->offset : walk.packageEnd()) {
    requireMetadata();
    while (all_.size() > 1 && (all_.back().offset >= end_ || (all_.back().isTorn && !all_.back().hasBody)))
        drop();
    wasFinished_ = isFinished_ = all_.size() > 1 && all_.back().pack.isFooter();
    if (withoutFooter && isFinished_) {
        drop();
        isFinished_ = false;
    } else if (isFinished_ && !walk_.randomIndex()) {
        end_ = std::min(end_, std::max(all_.back().indexEnd, all_.back().contentEnd));
    }
    all_.back().end = std::min(all_.back().end, end_);
}

void KeptPartitions::requireMetadata() const {
    auto const& header = all_.front();
    if (!header.hasMetadata)
        cannotRepair(header.leadEnd, "it has no header metadata, which would say what the essence is");
    if (header.pack.get(PackFields::headerByteCount) > header.end - header.leadEnd && all_.size() == 1 &&
        !header.hasIndex && !header.hasBody)
        cannotRepair(header.leadEnd, "it ends amid the header metadata");
}

void KeptPartitions::drop() {
    end_ = std::min(end_, all_.back().offset);
    all_.pop_back();
}

void KeptPartitions::endAt(std::uint64_t end, bool hasBody) {
    end_ = all_.back().end = all_.back().contentEnd = end;
    all_.back().hasBody = hasBody;
}

void KeptPartitions::dropEmpty() {
    for (; all_.size() > 1 && !isFinished_ && isEmpty(all_.back()); all_.pop_back())
        end_ = all_.back().offset;
}

void KeptPartitions::find(Code code, std::optional<std::uint64_t> offset, std::string message) {
    findings_.push_back({code, offset, std::move(message)});
}

void KeptPartitions::checkTail() {
    std::uint64_t const end = walk_.randomIndex() && end_ == walk_.randomIndex()->offset
                                  ? end_ + walk_.randomIndex()->length
                                  : end_;
    if (end < walk_.fileSize())
        find(Code::TornTail, end,
             std::to_string(walk_.fileSize() - end) +
                 (isFinished_ ? " bytes at the end of the file belong to no partition"
                              : " bytes at the end of the file make no whole packet or content package"));
    if (!isFinished_)
        find(Code::NoFooter, std::nullopt,
             all_.size() < walk_.partitions().size() && walk_.partitions().back().pack.isFooter()
                 ? "the footer partition is cut off"
                 : "there is no footer partition");
}

void KeptPartitions::put(std::size_t index, PackFields::Field field, std::uint64_t value) {
    auto& pack = all_[index].pack;
    if (pack.get(field) == value)
        return;
    pack.set(field, value);
    view_.patch(all_[index].offset, pack.bytes());
}

void KeptPartitions::close(std::size_t index, Packs::PartitionPack::PartitionStatus status) {
    auto& pack = all_[index].pack;
    if (pack.isGenericStream() || pack.isFooter())
        return;
    pack.status(status);
    view_.patch(all_[index].offset, pack.bytes());
}

/// Where the body of a partition begins in its stream: behind those before it, or where the pack says when it
/// leaves out no more than the fill at the end of the body before.
std::uint64_t KeptPartitions::bodyOffsetOf(std::size_t index,
                                           std::map<std::uint32_t, std::uint64_t>& streams) const {
    auto const& partition = all_[index];
    auto const sid = partition.pack.sid(PackFields::bodySID);
    std::uint64_t const said = partition.pack.get(PackFields::bodyOffset);
    if (sid == 0 || partition.pack.isGenericStream())
        return said;
    std::uint64_t offset = streams[sid];
    for (std::size_t i = index; i-- > 0;)
        if (all_[i].pack.sid(PackFields::bodySID) == sid) {
            auto const& before = all_[i];
            std::uint64_t const fill = before.end - std::max(before.contentEnd, before.indexEnd);
            if (said < offset && offset - said <= fill)
                offset = said;
            break;
        }
    streams[sid] = offset + (partition.end - std::min(partition.end, partition.indexEnd));
    return offset;
}

void KeptPartitions::checkPacks() {
    std::map<std::uint32_t, std::uint64_t> streams;
    for (std::size_t i = 0; i < all_.size(); ++i)
        checkPack(i, bodyOffsetOf(i, streams));
}

void KeptPartitions::checkPack(std::size_t index, std::uint64_t bodyOffset) {
    auto const& partition = all_[index];
    auto const check = [&](PackFields::Field field, std::uint64_t value, const char* name, Code code) {
        std::uint64_t const said = partition.pack.get(field);
        if (said == value)
            return;
        bool const isCount = code == Code::WrongByteCount;
        find(code, partition.offset,
             std::string(name) + " is " + (isCount ? std::to_string(said) : hexOf(said)) + " instead of " +
                 (isCount ? std::to_string(value) : hexOf(value)));
        put(index, field, value);
    };
    check(PackFields::thisPartition, relative(partition.offset), "ThisPartition", Code::WrongOffset);
    check(PackFields::previousPartition, index == 0 ? 0 : relative(all_[index - 1].offset),
          "PreviousPartition", Code::WrongOffset);
    check(PackFields::headerByteCount, partition.headerByteCount(), "HeaderByteCount", Code::WrongByteCount);
    check(PackFields::indexByteCount, partition.indexByteCount(), "IndexByteCount", Code::WrongByteCount);
    check(PackFields::bodyOffset, bodyOffset, "BodyOffset", Code::WrongOffset);
}

void KeptPartitions::checkFooterOffsets() {
    std::uint64_t const footer = relative(last().offset);
    for (auto const& partition : all_) {
        std::uint64_t const said = partition.pack.get(PackFields::footerPartition);
        bool const mayBeOpen =
            said == 0 && (!isFinished_ || partition.pack.isOpen() || partition.pack.isGenericStream());
        if (!mayBeOpen && !(isFinished_ && said == footer))
            find(Code::WrongOffset, partition.offset,
                 "FooterPartition is " + hexOf(said) +
                     (isFinished_ ? " instead of " + hexOf(footer) : ", where no footer partition is"));
    }
}

Bytes KeptPartitions::randomIndex(std::vector<std::uint64_t> const& fresh) const {
    Packs::RandomIndexPack pack;
    for (auto const& partition : all_)
        pack.add(partition.pack.sid(PackFields::bodySID), relative(partition.offset));
    // Offsets that are not known yet stand for themselves: the pack has an entry for each.
    std::uint64_t unknown = UINT64_MAX;
    for (auto const offset : fresh)
        pack.add(0, offset != 0 ? offset : unknown--);
    return bytesOf(pack);
}

bool KeptPartitions::isRandomIndex(Bytes const& found) const {
    Bytes const right = randomIndex({});
    std::uint64_t const head = KLV::Key::size() + ByteCoders::decodeBERSize(right[KLV::Key::size()]);
    std::uint64_t const value = right.size() - head - sizeof(std::uint32_t);
    std::uint64_t const foundHead = KLV::Key::size() + ByteCoders::decodeBERSize(found[KLV::Key::size()]);
    return found.size() - foundHead == right.size() - head &&
           std::equal(right.begin() + static_cast<std::ptrdiff_t>(head), right.end() - 4,
                      found.begin() + static_cast<std::ptrdiff_t>(foundHead)) &&
           ByteCoders::decodeInteger<std::uint32_t>(&found[static_cast<std::size_t>(foundHead + value)]) ==
               found.size();
}

} // namespace MXF::Zelm::MXFIO
