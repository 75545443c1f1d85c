/// Partition packs and the random index pack. Offsets and byte counts follow from the sizes of what the
/// partitions hold: they are gathered apart, one line for each run of partitions that moved by as much,
/// unless one of the files contradicts itself.
#include "Diff.h"

#include "Alignment.h"
#include "KlvWalk.h"
#include "PartitionChecks.h"
#include "Text.h"

#include <MXF/Zelm/Platform/Text.h>
#include <MXF/ZelmDictionary/Names.h>

#include <algorithm>

namespace Zelm {

using namespace MXF::Zelm;
using Packs::PartitionPack;

namespace {

using Pairs = std::vector<std::pair<std::size_t, std::size_t>>;

std::string kindText(SurveyedPartition const& partition) {
    if (partition.partition->isGenericStream())
        return "generic stream";
    auto const kind = partition.pack().partitionKind();
    return kind == PartitionPack::Header ? "header" : kind == PartitionPack::Body ? "body" : "footer";
}

std::string statusText(PartitionPack const& pack) {
    return std::string(pack.isOpen() ? "open" : "closed") + " and " +
           (pack.isComplete() ? "complete" : "incomplete");
}

std::string labelText(Types::UniversalLabel const& label) {
    std::string const name = MXF::ZelmDictionary::labelName(label);
    return Platform::toUtf8(label.toString()) + (name.empty() ? "" : " (" + name + ")");
}

/// The labels in any order.
std::string containersText(PartitionPack const& pack) {
    std::vector<std::string> labels;
    for (std::size_t i = 0; i < pack.essenceContainers().count(); ++i)
        labels.push_back(labelText(pack.essenceContainers().at<Types::UniversalLabel>(i)));
    std::sort(labels.begin(), labels.end());
    std::string text;
    for (auto const& label : labels)
        text += (text.empty() ? "" : ", ") + label;
    return text.empty() ? "(empty)" : text;
}

std::string partitionText(SurveyedPartition const& partition) {
    auto const& pack = partition.pack();
    return kindText(partition) + " partition, BodySID " + std::to_string(pack.bodySID()) + ", IndexSID " +
           std::to_string(pack.indexSID());
}

/// A field of a partition pack that is compared as it is.
struct Field {
    const char* name;
    std::string (*text)(PartitionPack const&);
};

constexpr Field fields[] = {
    {"Status", [](PartitionPack const& pack) { return statusText(pack); }},
    {"Version",
     [](PartitionPack const& pack) {
         return std::to_string(pack.majorVersion()) + "." + std::to_string(pack.minorVersion());
     }},
    {"KAGSize", [](PartitionPack const& pack) { return std::to_string(pack.kagSize()); }},
    {"HeaderMetadata",
     [](PartitionPack const& pack) { return std::string(pack.headerByteCount() == 0 ? "none" : "there"); }},
    {"IndexTable",
     [](PartitionPack const& pack) { return std::string(pack.indexByteCount() == 0 ? "none" : "there"); }},
    {"IndexSID", [](PartitionPack const& pack) { return std::to_string(pack.indexSID()); }},
    {"BodySID", [](PartitionPack const& pack) { return std::to_string(pack.bodySID()); }},
    {"BodyOffset", [](PartitionPack const& pack) { return hex(pack.bodyOffset()); }},
    {"FooterPartition",
     [](PartitionPack const& pack) {
         return std::string(pack.footerPartition() == 0 ? "not told" : "told");
     }},
    {"OperationalPattern", [](PartitionPack const& pack) { return labelText(pack.operationalPattern()); }},
    {"EssenceContainers", [](PartitionPack const& pack) { return containersText(pack); }},
};

/// A field that follows from sizes.
struct LayoutField {
    const char* name;
    std::uint64_t (PartitionPack::*value)() const;
};

constexpr LayoutField layoutFields[] = {
    {"ThisPartition", &PartitionPack::thisPartition},
    {"PreviousPartition", &PartitionPack::previousPartition},
    {"FooterPartition", &PartitionPack::footerPartition},
    {"HeaderByteCount", &PartitionPack::headerByteCount},
    {"IndexByteCount", &PartitionPack::indexByteCount},
};

std::string deltaText(std::uint64_t a, std::uint64_t b) {
    return b >= a ? "+" + grouped(b - a) : "-" + grouped(a - b);
}

/// Numbers of one kind, those that changed by as much in succession told in one line.
class MovedNumbers {
public:
    MovedNumbers(std::string what, DiffFindings& findings) : what_(std::move(what)), findings_(findings) {}
    ~MovedNumbers() { flush(); }
    MovedNumbers(MovedNumbers const&) = delete;
    MovedNumbers& operator=(MovedNumbers const&) = delete;

    /// `place` is the number of the partition or entry in the first file.
    void add(std::size_t place, std::uint64_t a, std::uint64_t b) {
        if (a == b || (count_ != 0 && b - a != lastB_ - lastA_))
            flush();
        if (a == b)
            return;
        if (count_++ == 0) {
            first_ = place;
            firstA_ = a;
            firstB_ = b;
        }
        last_ = place;
        lastA_ = a;
        lastB_ = b;
    }

private:
    void flush() {
        if (count_ == 0)
            return;
        bool const several = count_ > 1;
        std::string const where = several ? "s " + std::to_string(first_) + " to " + std::to_string(last_)
                                          : " " + std::to_string(first_);
        findings_.add(DiffArea::Layout, what_ + where, DiffValue(rangeText(firstA_, lastA_)),
                      DiffValue(rangeText(firstB_, lastB_) + " (" + deltaText(firstA_, firstB_) +
                                (several ? " each)" : ")")));
        count_ = 0;
    }

    static std::string rangeText(std::uint64_t first, std::uint64_t last) {
        return first == last ? hex(first) : hex(first) + " to " + hex(last);
    }

    std::string what_;
    DiffFindings& findings_;
    std::size_t count_ = 0, first_ = 0, last_ = 0;
    std::uint64_t firstA_ = 0, firstB_ = 0, lastA_ = 0, lastB_ = 0;
};

/// Tells a difference that several partitions in succession have in one line.
void compareField(DiffSide const& a, DiffSide const& b, Field const& field, Pairs const& pairs,
                  DiffFindings& findings) {
    for (std::size_t first = 0, last = 0; first < pairs.size(); first = last) {
        auto const texts = [&](std::size_t place) {
            return std::pair(field.text(a.survey.partitions[pairs[place].first].pack()),
                             field.text(b.survey.partitions[pairs[place].second].pack()));
        };
        auto const common = texts(first);
        for (last = first + 1; last < pairs.size() && texts(last) == common;)
            ++last;
        std::string const where = last - first == 1 ? "partition " + std::to_string(pairs[first].first)
                                                    : "partitions " + std::to_string(pairs[first].first) +
                                                          " to " + std::to_string(pairs[last - 1].first);
        findings.compare(DiffArea::Partitions, where + "/" + field.name, common.first, common.second);
    }
}

void compareLayout(DiffSide const& a, DiffSide const& b, Pairs const& pairs, DiffFindings& findings) {
    for (auto const& field : layoutFields) {
        MovedNumbers moved(std::string(field.name) + " of partition", findings);
        for (auto const& [i, j] : pairs)
            moved.add(i, (a.survey.partitions[i].pack().*field.value)(),
                      (b.survey.partitions[j].pack().*field.value)());
    }
    findings.compare(DiffArea::Layout, "file size", grouped(a.input.source.size()) + " bytes",
                     grouped(b.input.source.size()) + " bytes");
}

std::string randomIndexText(PartitionSurvey const& survey) {
    if (!survey.randomIndex)
        return "none";
    std::string text = "BodySIDs";
    constexpr std::size_t most = 64;
    auto const& entries = survey.randomIndex->entries;
    for (std::size_t i = 0; i < std::min(entries.size(), most); ++i)
        text += " " + std::to_string(entries[i].bodySID);
    return entries.size() <= most ? text : text + "… (" + grouped(entries.size()) + " entries)";
}

void compareRandomIndex(DiffSide const& a, DiffSide const& b, DiffFindings& findings) {
    findings.compare(DiffArea::Partitions, "random index pack", randomIndexText(a.survey),
                     randomIndexText(b.survey));
    if (!a.survey.randomIndex || !b.survey.randomIndex)
        return;
    auto const& entriesA = a.survey.randomIndex->entries;
    auto const& entriesB = b.survey.randomIndex->entries;
    MovedNumbers moved("random index offset", findings);
    for (std::size_t i = 0; i < std::min(entriesA.size(), entriesB.size()); ++i)
        moved.add(i, entriesA[i].byteOffset, entriesB[i].byteOffset);
}

/// What a file's own offsets, counts and labels contradict, by partition and field.
std::map<std::string, std::string> contradictions(DiffSide& side) {
    PartitionChecks checks(side.input, side.survey);
    checks.run();
    std::map<std::string, std::string> found;
    for (auto const& [offset, field, message] : checks.disagreements()) {
        std::string place = "file";
        for (std::size_t i = 0; offset && i < side.survey.partitions.size(); ++i)
            if (side.survey.partitions[i].offset() == *offset)
                place = "partition " + std::to_string(i);
        found.emplace(place + "/" + field + " is inconsistent", message);
    }
    return found;
}

/// A file that contradicts itself where the other does not.
void compareConsistency(DiffSide& a, DiffSide& b, DiffFindings& findings) {
    auto const foundA = contradictions(a), foundB = contradictions(b);
    for (auto const& [path, message] : foundA)
        if (!foundB.contains(path))
            findings.add(DiffArea::Partitions, path, DiffValue(message), std::nullopt);
    for (auto const& [path, message] : foundB)
        if (!foundA.contains(path))
            findings.add(DiffArea::Partitions, path, std::nullopt, DiffValue(message));
}

} // namespace

Pairs diffPartitions(DiffSide& a, DiffSide& b, DiffFindings& findings) {
    auto const& inA = a.survey.partitions;
    auto const& inB = b.survey.partitions;
    findings.compare(DiffArea::Partitions, "run-in", grouped(a.input.reader.runInLength()) + " bytes",
                     grouped(b.input.reader.runInLength()) + " bytes");
    Pairs pairs;
    auto const same = [&](std::size_t i, std::size_t j) {
        return partitionText(inA[i]) == partitionText(inB[j]);
    };
    auto const alike = [&](std::size_t i, std::size_t j) { return kindText(inA[i]) == kindText(inB[j]); };
    for (auto const& pair : align(inA.size(), inB.size(), same, alike)) {
        if (pair.isWhole())
            pairs.emplace_back(pair.a, pair.b);
        else if (pair.a != AlignedPair::none)
            findings.add(DiffArea::Partitions, "partition " + std::to_string(pair.a),
                         DiffValue(partitionText(inA[pair.a])), std::nullopt);
        else
            findings.add(DiffArea::Partitions, "partition " + std::to_string(pair.b), std::nullopt,
                         DiffValue(partitionText(inB[pair.b])));
    }
    for (auto const& field : fields)
        compareField(a, b, field, pairs, findings);
    compareRandomIndex(a, b, findings);
    compareConsistency(a, b, findings);
    compareLayout(a, b, pairs, findings);
    return pairs;
}

} // namespace Zelm
