#include "MXF/Zelm/Metadata/PartitionDictionary.h"

#include "MXF/Zelm/Exceptions/Exceptions.h"

namespace MXF::Zelm::Metadata {

PartitionDictionary::PartitionDictionary(DictionaryPtr dictionary,
                                         Templates::auto_ptr<Packs::PrimerPack> primer)
    : dictionary_(std::move(dictionary)), primer_(std::move(primer)) {
    if (!dictionary_ || !primer_)
        throw Exceptions::InvalidValue("A partition dictionary needs a dictionary and a primer");
}

PartitionDictionary::~PartitionDictionary() = default;

PartitionDictionary::Resolution PartitionDictionary::resolve(Types::LocalTag const& tag,
                                                             Types::UniversalLabel const*& label) const {
    label = nullptr;
    if (tag.value() == 0)
        return Resolution::InvalidTag;
    label = primer_->find(tag);
    if (tag.isDynamic())
        return label != nullptr ? Resolution::Found : Resolution::NotFound;
    auto const* const standard = dictionary_->find(tag);
    if (label == nullptr)
        label = standard;
    if (label == nullptr)
        return Resolution::NotFound;
    if (standard != nullptr && !Types::equalButForVersion(*label, *standard))
        return Resolution::StaticTagRedefined;
    return Resolution::Found;
}

Types::UniversalLabel PartitionDictionary::find(Types::LocalTag const& tag, bool strict) const {
    Types::UniversalLabel const* label = nullptr;
    Resolution const resolution = resolve(tag, label);
    if (resolution == Resolution::InvalidTag)
        throw Exceptions::InvalidLocalTag("Invalid Local Tag '00.00'");
    if (strict && primer_->find(tag) == nullptr)
        throw Exceptions::NotFoundInPrimer(u"Could not resolve local tag " + tag.toString() +
                                           u" to Universal Label using primer.");
    if (resolution == Resolution::NotFound && tag.isDynamic())
        throw Exceptions::NotFoundInPrimer(u"Could not resolve local tag " + tag.toString() +
                                           u" to Universal Label using either primer and the dictionary.");
    if (resolution == Resolution::NotFound)
        throw Exceptions::NotFoundInPrimer(u"Dictionary does not contain static Local Tag " + tag.toString());
    if (resolution == Resolution::StaticTagRedefined)
        throw Exceptions::InvalidLocalTag("Primer redefines a static assigned tag!");
    return *label;
}

/// The tag that stands for a label here, null when there is none. A primer may give the label a static tag
/// that belongs to another one; nobody would understand it, so that the label's own static tag is better.
Types::LocalTag const* PartitionDictionary::tagOf(Types::UniversalLabel const& label) const {
    auto const* const inPrimer = primer_->findOfAnyVersion(label);
    auto const* const standard = dictionary_->find(label);
    Types::UniversalLabel const* resolved = nullptr;
    if (inPrimer != nullptr && resolve(*inPrimer, resolved) == Resolution::Found)
        return inPrimer;
    bool const standardIsFree = standard != nullptr && primer_->find(*standard) == nullptr;
    return standardIsFree ? standard : inPrimer;
}

Types::LocalTag PartitionDictionary::find(Types::UniversalLabel const& label) const {
    auto const* const tag = tagOf(label);
    if (tag == nullptr)
        throw Exceptions::NotFoundInPrimer("No LocalTag defined for this UniversalLabel");
    return *tag;
}

void PartitionDictionary::reserve(Types::LocalTag const& tag) { reserved_.insert(tag); }

Types::LocalTag PartitionDictionary::findOrGenerate(Types::UniversalLabel const& label) {
    if (auto const* const tag = tagOf(label)) {
        if (primer_->findOfAnyVersion(label) == nullptr)
            primer_->add(*tag, label);
        return *tag;
    }
    while (nextDynamic_ >= Types::LocalTag::firstDynamic) {
        Types::LocalTag const tag(static_cast<std::uint16_t>(nextDynamic_--));
        if (primer_->find(tag) == nullptr && !reserved_.contains(tag)) {
            primer_->add(tag, label);
            return tag;
        }
    }
    throw Exceptions::InvalidLocalTag("All LocalTags are used");
}

} // namespace MXF::Zelm::Metadata
