/// Essence compared packet by packet, both files in step and one body SID after the other, so that nothing of
/// it has to be kept.
#include "BodyWalk.h"
#include "Diff.h"
#include "KeyTally.h"
#include "Progress.h"
#include "Text.h"

#include <algorithm>
#include <set>

namespace Zelm {

using namespace MXF::Zelm;

namespace {

/// Bytes of a value that are compared at a time.
constexpr std::size_t chunkSize = std::size_t{1} << 18;

using Packet = KlvWalk::Packet;

std::string packetText(Packet const& packet, KeyNames const& names) {
    return names.name(packet.key) + ", " + hexKey(packet.key) + ", " + grouped(packet.length) + " bytes at " +
           hex(packet.offset);
}

std::string countText(KlvCount const& count) {
    return grouped(count.packets) + (count.packets == 1 ? " packet, " : " packets, ") +
           grouped(count.valueBytes) + " bytes";
}

/// How many of the first `size` bytes are equal up to the first that differs.
std::uint64_t equalBytes(const unsigned char* a, const unsigned char* b, std::uint64_t size) {
    return static_cast<std::uint64_t>(std::mismatch(a, a + size, b).first - a);
}

/// The place of the first byte in which two values of the same length differ, none when they are equal.
std::optional<std::uint64_t> firstDifference(DiffSide& a, Packet const& packetA, DiffSide& b,
                                             Packet const& packetB) {
    std::vector<unsigned char> bufferA(chunkSize), bufferB(chunkSize);
    std::uint64_t const size = std::min(packetA.present, packetB.present);
    for (std::uint64_t done = 0; done < size;) {
        auto const wanted = static_cast<std::size_t>(std::min<std::uint64_t>(chunkSize, size - done));
        a.input.source.seek(packetA.valueOffset() + done);
        b.input.source.seek(packetB.valueOffset() + done);
        std::uint64_t const got = std::min(a.input.source.read(bufferA.data(), wanted),
                                           b.input.source.read(bufferB.data(), wanted));
        std::uint64_t const equal = equalBytes(bufferA.data(), bufferB.data(), got);
        if (equal != got)
            return done + equal;
        if (got == 0)
            break;
        done += got;
    }
    return std::nullopt;
}

class ContainerDiff {
public:
    ContainerDiff(DiffSide& a, DiffSide& b, std::uint32_t bodySID, DiffFindings& findings, Progress& progress,
                  std::uint64_t& done)
        : a_(a),
          b_(b),
          walkA_(a.input, a.survey, BodyWalk::Kind::Essence, bodySID),
          walkB_(b.input, b.survey, BodyWalk::Kind::Essence, bodySID),
          place_("BodySID " + std::to_string(bodySID)),
          findings_(findings),
          progress_(progress),
          done_(done) {}

    void run() {
        Packet packetA, packetB;
        for (bool moreA = true, moreB = true;; ++number_) {
            moreA = moreA && walkA_.next(packetA);
            moreB = moreB && walkB_.next(packetB);
            if (!moreA && !moreB)
                break;
            comparePackets(moreA ? &packetA : nullptr, moreB ? &packetB : nullptr);
        }
        compareTallies();
        if (firstOther_)
            findings_.add(DiffArea::Essence,
                          place_ + "/bytes of " + grouped(differentValues_) +
                              (differentValues_ == 1 ? " packet" : " packets") + ", the first number " +
                              grouped(firstOther_->number) + " at byte " + grouped(firstOther_->byte),
                          DiffValue("at " + hex(firstOther_->offsetA)),
                          DiffValue("at " + hex(firstOther_->offsetB)));
        keepFault(walkA_, a_);
        keepFault(walkB_, b_);
    }

private:
    /// Where values begin to differ.
    struct OtherByte {
        std::uint64_t number; ///< of the packet
        std::uint64_t byte;
        std::uint64_t offsetA, offsetB; ///< in the files
    };

    void comparePackets(Packet const* a, Packet const* b) {
        if (a != nullptr) {
            tallyA_.add(*a);
            done_ += a->bytes();
        }
        if (b != nullptr)
            tallyB_.add(*b);
        progress_.at(done_);
        bool const same = a != nullptr && b != nullptr && a->key == b->key && a->length == b->length;
        if (!same && !differs_) {
            differs_ = true;
            bool const empty = tallyA_.rows().empty() || tallyB_.rows().empty();
            if (empty) // the counts say so
                return;
            findings_.add(DiffArea::Essence,
                          place_ + "/first packet that differs: number " + grouped(number_), textOf(a),
                          textOf(b));
        }
        if (same && !differs_ && findings_.options().essenceBytes)
            compareValues(*a, *b);
    }

    std::optional<DiffValue> textOf(Packet const* packet) const {
        return packet != nullptr ? std::optional<DiffValue>(packetText(*packet, names_)) : std::nullopt;
    }

    void compareValues(Packet const& a, Packet const& b) {
        auto const place = firstDifference(a_, a, b_, b);
        if (!place)
            return;
        if (differentValues_++ == 0)
            firstOther_ = {number_, *place, a.valueOffset() + *place, b.valueOffset() + *place};
    }

    /// Counts by key, in the order of the keys.
    void compareTallies() {
        std::map<KLV::Key, std::pair<KlvCount, KlvCount>> counts;
        for (auto const& row : tallyA_.rows())
            counts[row.key].first = row.count;
        for (auto const& row : tallyB_.rows())
            counts[row.key].second = row.count;
        for (auto const& [key, pair] : counts)
            findings_.compare(DiffArea::Essence, place_ + "/" + hexKey(key) + " " + names_.name(key),
                              countText(pair.first), countText(pair.second));
    }

    static void keepFault(BodyWalk const& walk, DiffSide& side) {
        if (walk.fault() && !side.survey.fault)
            side.faults.push_back(*walk.fault());
    }

    DiffSide& a_;
    DiffSide& b_;
    BodyWalk walkA_, walkB_;
    std::string place_;
    DiffFindings& findings_;
    Progress& progress_;
    std::uint64_t& done_; // bytes of the first file that were passed
    KeyNames names_{nullptr};
    KeyTally tallyA_, tallyB_;
    std::uint64_t number_ = 0;
    std::uint64_t differentValues_ = 0;
    std::optional<OtherByte> firstOther_;
    bool differs_ = false; // from here on packets do not stand for each other
};

void collect(PartitionSurvey const& survey, std::set<std::uint32_t>& bodySIDs) {
    for (auto const& partition : survey.partitions)
        bodySIDs.insert(partition.pack().bodySID());
}

} // namespace

void diffEssence(DiffSide& a, DiffSide& b, DiffFindings& findings) {
    std::set<std::uint32_t> bodySIDs;
    collect(a.survey, bodySIDs);
    collect(b.survey, bodySIDs);
    Progress progress("comparing the essence", a.input.source.size());
    std::uint64_t done = 0;
    for (auto const bodySID : bodySIDs)
        ContainerDiff(a, b, bodySID, findings, progress, done).run();
}

} // namespace Zelm
