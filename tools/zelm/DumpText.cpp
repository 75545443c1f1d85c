/// The tree of `zelm dump`. A file may nest its sets as deep as it likes and in circles: each set is shown
/// once, and one that would stand too deep is shown on its own further below.
#include "DumpReport.h"
#include "Text.h"
#include "ValueText.h"

#include <MXF/Zelm/Exceptions/Exceptions.h>
#include <MXF/Zelm/Platform/Text.h>
#include <MXF/ZelmDictionary/Names.h>

#include <algorithm>
#include <deque>
#include <iostream>
#include <unordered_set>

namespace Zelm {

using namespace MXF::Zelm;
using Metadata::MetadataSet;

namespace {

constexpr int deepestLevel = 32;
constexpr std::size_t mostDarkBytes = 64;

std::string offsetText(std::optional<std::uint64_t> offset) {
    return offset ? " at " + hex(*offset) : std::string();
}

std::string uidText(MetadataSet const& set) {
    auto const* const uid = set.instanceUID();
    return uid != nullptr ? "  " + Platform::toUtf8(uid->toString()) : std::string();
}

class Tree {
public:
    explicit Tree(Metadata::PartitionMetadata const& metadata) : metadata_(metadata) {}

    void print() {
        for (auto const& [key, set] : metadata_)
            if (set->name() == u"Preface")
                printSet(*set, 0);
        printTooDeep();
        bool first = true;
        for (auto const* const set : unreached()) {
            if (shown_.contains(set))
                continue;
            if (first)
                std::cout << "\nSets that the Preface does not reach\n";
            first = false;
            printSet(*set, 1);
            printTooDeep();
        }
    }

private:
    void printSet(MetadataSet const& set, int level) {
        shown_.insert(&set);
        line(level) << Platform::toUtf8(set.name()) << offsetText(set.absoluteOffset()) << uidText(set)
                    << "\n";
        std::size_t const width = widestName(set);
        for (auto const& element : set)
            printElement(*element, level + 1, width);
        for (auto element = set.invalidBegin(); element != set.invalidEnd(); ++element)
            printInvalid(static_cast<Metadata::InvalidElement const&>(**element), level + 1);
    }

    static std::size_t widestName(MetadataSet const& set) {
        std::size_t width = 0;
        for (auto const& element : set)
            width = std::max(width, element->name().size());
        return std::min<std::size_t>(width, 32);
    }

    void printElement(Metadata::Element const& element, int level, std::size_t width) {
        std::string name = Platform::toUtf8(element.name());
        auto const* const holder = dynamic_cast<Metadata::ReferenceHolder const*>(&element);
        if (holder == nullptr) {
            name.resize(std::max(width, name.size()), ' ');
            line(level) << name << "  " << valueText(element) << "\n";
            return;
        }
        auto const targets = holder->targets();
        if (targets.empty())
            line(level) << name << "  (empty)\n";
        for (std::size_t i = 0; i < targets.size(); ++i)
            printReference(name + (targets.size() > 1 ? "[" + std::to_string(i) + "]" : ""), targets[i],
                           holder->isStrong(), level);
    }

    void printReference(std::string const& name, Types::UUID const& target, bool strong, int level) {
        auto const* const set = metadata_.find(target);
        if (set == nullptr) {
            line(level) << name << "  -> " << Platform::toUtf8(target.toString()) << "  (no such set)\n";
            return;
        }
        std::string const className = Platform::toUtf8(set->name());
        if (!strong || shown_.contains(set) || level >= deepestLevel) {
            line(level) << name << "  -> " << className << offsetText(set->absoluteOffset())
                        << (!strong                ? ""
                            : shown_.contains(set) ? "  (shown above)"
                                                   : "  (shown below)")
                        << "\n";
            if (strong && shown_.insert(set).second)
                tooDeep_.push_back(set);
            return;
        }
        line(level) << name << "\n";
        printSet(*set, level + 1);
    }

    void printInvalid(Metadata::InvalidElement const& element, int level) {
        auto const* const label = element.universalLabel();
        line(level) << "! "
                    << (element.metaElement() != nullptr ? Platform::toUtf8(element.name()) + "  " : "")
                    << "tag " << Platform::toUtf8(element.tag().toString())
                    << (label != nullptr ? "  " + Platform::toUtf8(label->toString()) : "") << "  "
                    << bytesText(element.value().rawBuffer(), element.value().size(), mostDarkBytes) << "  ("
                    << invalidReason(element) << ")\n";
    }

    void printTooDeep() {
        while (!tooDeep_.empty()) {
            auto const* const set = tooDeep_.front();
            tooDeep_.pop_front();
            std::cout << "\n";
            printSet(*set, 1);
        }
    }

    /// Sets not shown yet, those that nothing refers to strongly first, so that the others are shown below
    /// them.
    std::vector<MetadataSet const*> unreached() const {
        std::unordered_set<MetadataSet const*> referred;
        std::vector<MetadataSet const*> roots, others;
        for (auto const& [key, set] : metadata_)
            for (auto const& element : *set)
                if (auto const* const holder = dynamic_cast<Metadata::ReferenceHolder const*>(element.get());
                    holder != nullptr && holder->isStrong())
                    for (auto const& target : holder->targets())
                        if (auto const* const child = metadata_.find(target); child != set)
                            referred.insert(child);
        for (auto const& [key, set] : metadata_)
            if (!shown_.contains(set))
                (referred.contains(set) ? others : roots).push_back(set);
        roots.insert(roots.end(), others.begin(), others.end());
        return roots;
    }

    static std::ostream& line(int level) {
        return std::cout << std::string(2 * static_cast<std::size_t>(level), ' ');
    }

    Metadata::PartitionMetadata const& metadata_;
    std::unordered_set<MetadataSet const*> shown_;
    std::deque<MetadataSet const*> tooDeep_;
};

void printDarkSets(Metadata::PartitionMetadata const& metadata) {
    if (metadata.darkSize() == 0)
        return;
    std::cout << "\nDark sets\n";
    for (auto at = metadata.darkBegin(); at != metadata.darkEnd(); ++at) {
        auto const& set = **at;
        auto const& value = set.value();
        std::cout << "  "
                  << Platform::toUtf8(set.key().toString(Types::StringRepresentationEncodingType::URN))
                  << offsetText(set.absoluteOffset()) << "  ("
                  << (set.reason().empty() ? "the dictionary does not define the class" : set.reason())
                  << ")\n    " << bytesText(value.rawBuffer(), value.size(), mostDarkBytes) << "\n";
    }
}

} // namespace

std::string partitionKindText(MXFIO::Partition const& partition) {
    if (partition.isGenericStream())
        return "generic stream partition";
    switch (partition.partitionPack().partitionKind()) {
    case Packs::PartitionPack::Header:
        return "header partition";
    case Packs::PartitionPack::Body:
        return "body partition";
    case Packs::PartitionPack::Footer:
        break;
    }
    return "footer partition";
}

std::string partitionStatusText(MXFIO::Partition const& partition) {
    auto const& pack = partition.partitionPack();
    return std::string(pack.isOpen() ? "open" : "closed") + " and " +
           (pack.isComplete() ? "complete" : "incomplete");
}

void printDumpText(DumpReport const& report) {
    if (report.partition == nullptr)
        return;
    std::cout << "Header metadata of the " << partitionKindText(*report.partition) << " at "
              << hex(report.partition->partitionAbsoluteOffset()) << ", "
              << partitionStatusText(*report.partition);
    if (!report.metadata) {
        std::cout << ": none\n";
        return;
    }
    auto const& metadata = *report.metadata;
    std::cout << ": " << grouped(metadata.size()) << " sets, " << grouped(metadata.darkSize()) << " dark, "
              << grouped(metadata.partitionDictionary().primer().count()) << " primer entries\n\n";
    Tree(metadata).print();
    printDarkSets(metadata);
}

} // namespace Zelm
