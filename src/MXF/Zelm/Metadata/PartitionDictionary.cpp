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

bool PartitionDictionary::standsFor(Types::LocalTag const& tag, Types::UniversalLabel const& label) const {
    Types::UniversalLabel const* found = nullptr;
    return resolve(tag, found) == Resolution::Found && Types::equalButForVersion(*found, label);
}

/// The tag that a label can be written with and read again; null when it has none. A primer may hold the
/// label under a tag that is invalid or static and another label's.
Types::LocalTag const* PartitionDictionary::findUsable(Types::UniversalLabel const& label) const {
    for (auto const* const tag : {primer_->findOfAnyVersion(label), dictionary_->find(label)})
        if (tag != nullptr && standsFor(*tag, label))
            return tag;
    return nullptr;
}

Types::LocalTag PartitionDictionary::find(Types::UniversalLabel const& label) const {
    auto const* const tag = findUsable(label);
    if (tag == nullptr)
        throw Exceptions::NotFoundInPrimer("No LocalTag defined for this UniversalLabel");
    return *tag;
}

void PartitionDictionary::reserve(Types::LocalTag const& tag) { reserved_.insert(tag); }

Types::LocalTag PartitionDictionary::findOrGenerate(Types::UniversalLabel const& label) {
    if (auto const* const tag = findUsable(label)) {
        // What a primer has under a tag of its own stays, as elements under that tag do.
        if (primer_->findOfAnyVersion(label) == nullptr)
            primer_->add(*tag, label);
        return *tag;
    }
    while (nextDynamic_ >= Types::LocalTag::firstDynamic) {
        Types::LocalTag const tag(static_cast<std::uint16_t>(nextDynamic_--));
        if (primer_->find(tag) == nullptr && !reserved_.contains(tag)) {
            primer_->remove(label); // from a tag that is of no use
            primer_->add(tag, label);
            return tag;
        }
    }
    throw Exceptions::InvalidLocalTag("All LocalTags are used");
}

} // namespace MXF::Zelm::Metadata
