/// Header metadata compared from the Preface down: sets by their role, properties by their labels. The sets
/// of a file may refer to each other in circles: each is compared once.
#include "Diff.h"
#include "SetMatch.h"
#include "Text.h"
#include "ValueText.h"

#include <MXF/Zelm/Platform/Text.h>
#include <MXF/Zelm/Types/Strings.h>
#include <MXF/Zelm/Types/Timestamp.h>
#include <MXF/Zelm/Types/UMID.h>

#include <algorithm>
#include <set>

namespace Zelm {

using namespace MXF::Zelm;
using Metadata::Element;
using Metadata::MetadataSet;
using Metadata::PartitionMetadata;

namespace {

constexpr std::size_t mostDarkBytes = 32;

using Elements = std::map<std::string, Element const*>;

/// The elements by their labels without the version; invalid ones by what is known of them.
Elements elementsOf(MetadataSet const& set) {
    Elements elements;
    for (auto const& element : set) {
        auto label = *element->universalLabel();
        label[7] = 0;
        elements.emplace(Platform::toUtf8(label.toString()), element.get());
    }
    std::size_t number = 0;
    for (auto element = set.invalidBegin(); element != set.invalidEnd(); ++element)
        elements.emplace("~" + preferredName(**element) + "#" + std::to_string(number++), element->get());
    return elements;
}

bool isInvalid(Element const& element) {
    return dynamic_cast<Metadata::InvalidElement const*>(&element) != nullptr;
}

DiffValue valueOf(Element const& element) { return {valueText(element), toJson(element.baseValue())}; }

/// Both values; where they are too long for the texts to differ, the place of the first difference is told.
std::pair<DiffValue, DiffValue> valuesOf(Element const& a, Element const& b) {
    auto values = std::pair(valueOf(a), valueOf(b));
    if (values.first.text == values.second.text) {
        auto const bytesA = comparableBytes(*a.baseValue()), bytesB = comparableBytes(*b.baseValue());
        auto const differs = std::mismatch(bytesA.begin(), bytesA.end(), bytesB.begin(), bytesB.end());
        std::string const place = " (first difference at byte " +
                                  grouped(static_cast<std::uint64_t>(differs.first - bytesA.begin())) + ")";
        values.first.text += place;
        values.second.text += place;
    }
    return values;
}

/// One file's sets.
struct Side {
    Side(PartitionMetadata const& sets, ClassTree const& classes) : metadata(sets), paths(sets, classes) {
        for (auto const& place : paths.places())
            for (auto const& element : *place.set)
                if (auto const* const uid = Types::valueCast<Types::UMID32>(element->baseValue());
                    uid != nullptr && classes.isA(*place.set, "Package"))
                    packages.emplace(comparableBytes(*uid), place.path);
    }

    /// The sets that no other refers to.
    SetMatcher::Sets tops() const {
        SetMatcher::Sets sets;
        for (auto const& place : paths.places())
            if (place.isTop)
                sets.push_back(place.set);
        return sets;
    }

    /// Class and name of a set, and how many sets hang on it.
    std::string describe(MetadataSet const& set) const {
        std::string text = paths.classes().stepName(set);
        for (auto const& element : set)
            if (Types::valueCast<Types::UTF16String>(element->baseValue()) != nullptr) {
                text += " " + valueText(*element);
                break;
            }
        std::size_t const below = setsBelow(set);
        return below == 0 ? text
                          : text + " and " + grouped(below) + (below == 1 ? " set" : " sets") + " below";
    }

    std::size_t setsBelow(MetadataSet const& set) const {
        std::size_t count = 0;
        auto open = paths.place(set).children; // a tree: each set has one place
        for (; !open.empty(); ++count) {
            auto const& children = paths.places()[open.back()].children;
            open.pop_back();
            open.insert(open.end(), children.begin(), children.end());
        }
        return count;
    }

    /// An identifier: the path of its package where it is one of the file's.
    DiffValue identifierText(Element const& element) const {
        auto const owner = packages.find(comparableBytes(*element.baseValue()));
        auto value = valueOf(element);
        return owner == packages.end() ? value : DiffValue("that of " + owner->second, value.json);
    }

    PartitionMetadata const& metadata;
    SetPaths paths;
    std::map<std::string, std::string> packages; // by UMID
};

class MetadataDiff {
public:
    MetadataDiff(PartitionMetadata const& a, PartitionMetadata const& b, std::string const& place,
                 DiffFindings& findings)
        : classes_(*a.partitionDictionary().dictionary()),
          a_(a, classes_),
          b_(b, classes_),
          matcher_(classes_, findings.options()),
          place_(place),
          findings_(findings) {}

    void run() {
        auto const topsA = a_.tops(), topsB = b_.tops();
        seenA_.insert(topsA.begin(), topsA.end());
        seenB_.insert(topsB.begin(), topsB.end());
        pairLists(topsA, topsB, "");
        while (!open_.empty()) {
            auto const [a, b] = open_.back();
            open_.pop_back();
            compareSets(*a, *b);
        }
        for (auto const& weak : weak_)
            compareWeak(weak);
        compareDark();
    }

private:
    struct WeakReference {
        std::string path;
        Element const* a;
        Element const* b;
    };

    DiffOptions const& options() const { return findings_.options(); }

    void add(std::string const& path, std::optional<DiffValue> a, std::optional<DiffValue> b) {
        findings_.add(DiffArea::Metadata, place_ + path, std::move(a), std::move(b));
    }

    void addOnly(Side const& side, MetadataSet const& set) {
        auto const area = classes_.isA(set, "Identification") ? DiffArea::History : DiffArea::Metadata;
        std::optional<DiffValue> description(side.describe(set)), nothing;
        bool const first = &side == &a_;
        findings_.add(area, place_ + side.paths.path(set), first ? description : nothing,
                      first ? nothing : description);
    }

    /// Pairs what two references (or the two files) hold; `orderPath` is empty where the order is free.
    void pairLists(SetMatcher::Sets const& a, SetMatcher::Sets const& b, std::string const& orderPath) {
        std::vector<std::pair<MetadataSet const*, MetadataSet const*>> pairs;
        std::string orderA, orderB;
        std::size_t last = 0;
        bool moved = false;
        for (auto const& pair : matcher_.match(a, b)) {
            if (!pair.isWhole()) {
                pair.a != AlignedPair::none ? addOnly(a_, *a[pair.a]) : addOnly(b_, *b[pair.b]);
                continue;
            }
            moved = moved || pair.b < last;
            last = pair.b;
            orderA += (orderA.empty() ? "" : ", ") + std::to_string(pair.a + 1);
            orderB += (orderB.empty() ? "" : ", ") + std::to_string(pair.b + 1);
            pairs.push_back({a[pair.a], b[pair.b]});
        }
        if (moved && !orderPath.empty())
            add(orderPath, DiffValue("in the order " + orderA), DiffValue("in the order " + orderB));
        for (auto const& [setA, setB] : pairs)
            pairUp(*setA, *setB);
        open_.insert(open_.end(), pairs.rbegin(), pairs.rend());
    }

    /// Before anything of the sets is compared, so that references to packages are understood.
    void pairUp(MetadataSet const& a, MetadataSet const& b) {
        partners_[&a] = &b;
        for (auto const& element : a)
            if (auto const* const uid = Types::valueCast<Types::UMID32>(element->baseValue()))
                if (auto const* const other = b.value<Types::UMID32>(*element->universalLabel());
                    other != nullptr && classes_.isA(a, "Package"))
                    renaming_.pair(comparableBytes(*uid), comparableBytes(*other));
    }

    void compareSets(MetadataSet const& a, MetadataSet const& b) {
        std::string const& path = a_.paths.path(a);
        if (a.metaMetadataSet() != b.metaMetadataSet())
            add(path, DiffValue("of class " + preferredName(*a.metaMetadataSet())),
                DiffValue("of class " + preferredName(*b.metaMetadataSet())));
        auto const elementsA = elementsOf(a), elementsB = elementsOf(b);
        for (auto const& [key, element] : elementsA) {
            auto const other = elementsB.find(key);
            if (other == elementsB.end())
                compareMissing(a_, path, *element);
            else
                compareElements(path + "/" + preferredName(*element), *element, *other->second);
        }
        for (auto const& [key, element] : elementsB)
            if (!elementsA.contains(key))
                compareMissing(b_, path, *element);
    }

    /// A property that one side alone has.
    void compareMissing(Side const& side, std::string const& path, Element const& element) {
        if (strongHolder(element) != nullptr) {
            for (auto const* const set : targetsOf(element, side.metadata))
                if (set != nullptr)
                    addOnly(side, *set);
            return;
        }
        if (treatmentOf(element, options()) == Treatment::Ignore && !isDate(element))
            return;
        std::optional<DiffValue> value(valueOf(element)), nothing;
        bool const first = &side == &a_;
        add(path + "/" + preferredName(element), first ? value : nothing, first ? nothing : value);
    }

    static bool isDate(Element const& element) {
        return Types::valueCast<Types::Timestamp>(element.baseValue()) != nullptr;
    }

    void compareElements(std::string const& path, Element const& a, Element const& b) {
        auto const* const holderA = dynamic_cast<Metadata::ReferenceHolder const*>(&a);
        auto const* const holderB = dynamic_cast<Metadata::ReferenceHolder const*>(&b);
        if (holderA != nullptr && holderB != nullptr) {
            if (holderA->isStrong() && holderB->isStrong())
                compareStrong(path, a, b);
            else
                weak_.push_back({path, &a, &b});
            return;
        }
        if (a.baseValue() == nullptr || b.baseValue() == nullptr)
            return;
        compareValues(path, a, b);
    }

    void compareValues(std::string const& path, Element const& a, Element const& b) {
        auto const treatment = treatmentOf(a, options());
        if (treatment == Treatment::Ignore)
            return;
        auto const bytesA = comparableBytes(*a.baseValue()), bytesB = comparableBytes(*b.baseValue());
        if (treatment == Treatment::Rename) {
            if (!renaming_.pair(bytesA, bytesB))
                add(path, a_.identifierText(a), b_.identifierText(b));
        } else if (bytesA != bytesB || isInvalid(a) != isInvalid(b)) {
            auto values = valuesOf(a, b);
            add(path, std::move(values.first), std::move(values.second));
        }
    }

    void compareStrong(std::string const& path, Element const& a, Element const& b) {
        SetMatcher::Sets newA, newB;
        std::size_t otherA = 0, otherB = 0; // dangling, or compared under another owner
        for (auto* const set : targetsOf(a, a_.metadata))
            set != nullptr&& seenA_.insert(set).second ? newA.push_back(set) : void(++otherA);
        for (auto* const set : targetsOf(b, b_.metadata))
            set != nullptr&& seenB_.insert(set).second ? newB.push_back(set) : void(++otherB);
        findings_.compare(DiffArea::Metadata, place_ + path, danglingText(otherA), danglingText(otherB));
        bool const ordered = a.baseValue()->identifier() == Types::Identifiers::Array;
        pairLists(newA, newB, ordered ? path : "");
    }

    static std::string danglingText(std::size_t count) {
        return count == 0 ? "(whole)" : grouped(count) + " to sets that are not there or belong elsewhere";
    }

    void compareWeak(WeakReference const& weak) {
        auto const setsA = targetsOf(*weak.a, a_.metadata), setsB = targetsOf(*weak.b, b_.metadata);
        auto const stands = [this](MetadataSet const* a, MetadataSet const* b) {
            auto const partner = partners_.find(a);
            return (a == nullptr && b == nullptr) || (partner != partners_.end() && partner->second == b);
        };
        if (!std::equal(setsA.begin(), setsA.end(), setsB.begin(), setsB.end(), stands))
            add(weak.path, DiffValue(targetsText(a_, setsA)), DiffValue(targetsText(b_, setsB)));
    }

    static std::string targetsText(Side const& side, SetMatcher::Sets const& sets) {
        std::string text;
        for (auto const* const set : sets)
            text += (text.empty() ? "-> " : ", -> ") +
                    (set != nullptr ? side.paths.path(*set) : std::string("(no such set)"));
        return text.empty() ? "(empty)" : text;
    }

    /// By key and bytes, in their order.
    void compareDark() {
        std::vector<Metadata::DarkMetadataSet const*> const a(a_.metadata.darkBegin(), a_.metadata.darkEnd());
        std::vector<Metadata::DarkMetadataSet const*> const b(b_.metadata.darkBegin(), b_.metadata.darkEnd());
        auto const same = [&](std::size_t i, std::size_t j) {
            return a[i]->key() == b[j]->key() && a[i]->value() == b[j]->value();
        };
        auto const alike = [&](std::size_t i, std::size_t j) { return a[i]->key() == b[j]->key(); };
        for (auto const& pair : align(a.size(), b.size(), same, alike))
            if (!pair.isWhole() || !same(pair.a, pair.b)) {
                auto const& some = pair.a != AlignedPair::none ? *a[pair.a] : *b[pair.b];
                add("dark set " +
                        Platform::toUtf8(some.key().toString(Types::StringRepresentationEncodingType::URN)),
                    darkValue(a, pair.a), darkValue(b, pair.b));
            }
    }

    static std::optional<DiffValue> darkValue(std::vector<Metadata::DarkMetadataSet const*> const& sets,
                                              std::size_t place) {
        if (place == AlignedPair::none)
            return std::nullopt;
        auto const& value = sets[place]->value();
        return DiffValue(bytesText(value.rawBuffer(), value.size(), mostDarkBytes),
                         bytesText(value.rawBuffer(), value.size(), value.size()));
    }

    ClassTree classes_;
    Side a_, b_;
    SetMatcher matcher_;
    std::string place_;
    DiffFindings& findings_;
    std::unordered_map<MetadataSet const*, MetadataSet const*> partners_; // of a, in b
    std::set<MetadataSet const*> seenA_, seenB_; // paired, or told of as only one file's
    std::vector<std::pair<MetadataSet const*, MetadataSet const*>> open_;
    std::vector<WeakReference> weak_;
    Renaming renaming_;
};

} // namespace

void diffMetadata(PartitionMetadata const& a, PartitionMetadata const& b, std::string const& place,
                  DiffFindings& findings) {
    MetadataDiff(a, b, place, findings).run();
}

} // namespace Zelm
