/// What local tags and labels stand for in one partition: its primer pack joined to the shared meta
/// dictionary.
#pragma once

#include "MXF/Zelm/MetaMetadata/Dictionary.h"
#include "MXF/Zelm/Packs/PrimerPack.h"

#include <set>

namespace MXF::Zelm::Metadata {

class MXFZELM_EXPORT PartitionDictionary : public Platform::Allocated {
public:
    using DictionaryPtr = Templates::SharedPtr<MetaMetadata::Dictionary, Templates::LockedCounter>;

    /// Shares the dictionary and owns the primer; neither may be null.
    PartitionDictionary(DictionaryPtr dictionary, Templates::auto_ptr<Packs::PrimerPack> primer);
    ~PartitionDictionary();
    PartitionDictionary(PartitionDictionary const&) = delete;
    PartitionDictionary& operator=(PartitionDictionary const&) = delete;

    DictionaryPtr const& dictionary() const { return dictionary_; }
    Packs::PrimerPack const& primer() const { return *primer_; }
    Packs::PrimerPack& primer() { return *primer_; }

    /// What `resolve` finds out about a local tag.
    enum class Resolution {
        Found,
        InvalidTag,         ///< 00.00
        NotFound,           ///< neither the primer nor the dictionary's static tags know it
        StaticTagRedefined, ///< the primer gives a static tag another label than the dictionary
    };

    /// The label of a local tag without throwing. `label` points at it when it was found, and at the primer's
    /// label when the tag is redefined; it is null otherwise. A label that differs in its version (byte 7)
    /// alone is not redefined.
    Resolution resolve(Types::LocalTag const& tag, Types::UniversalLabel const*& label) const;

    /// The label of a local tag. The primer is asked first, and with `strict` it alone; then the dictionary,
    /// for a static tag. Throws Exceptions::InvalidLocalTag for 00.00 and for a primer that gives a static
    /// tag another label than the dictionary, Exceptions::NotFoundInPrimer when nobody knows the tag.
    Types::UniversalLabel find(Types::LocalTag const& tag, bool strict) const;

    /// The local tag of a label, from the primer or the static tags. The version (byte 7) of the primer's
    /// label may be another one; a tag that `find` above would refuse is not used. Throws
    /// Exceptions::NotFoundInPrimer with "No LocalTag defined for this UniversalLabel".
    Types::LocalTag find(Types::UniversalLabel const& label) const;

    /// The same; a label without a tag gets a dynamic one, and every tag that the primer lacks is entered
    /// into it. Dynamic tags are drawn from FFFF downwards. Throws Exceptions::InvalidLocalTag with "All
    /// LocalTags are used".
    Types::LocalTag findOrGenerate(Types::UniversalLabel const& label);

    /// Keeps a tag from being drawn: one that stands in a set although the primer does not know it would get
    /// a meaning that it never had.
    void reserve(Types::LocalTag const& tag);

private:
    bool standsFor(Types::LocalTag const& tag, Types::UniversalLabel const& label) const;
    Types::LocalTag const* findUsable(Types::UniversalLabel const& label) const;

    DictionaryPtr dictionary_;
    Templates::auto_ptr<Packs::PrimerPack> primer_;
    std::set<Types::LocalTag> reserved_;
    std::uint32_t nextDynamic_ = 0xFFFF;
};

} // namespace MXF::Zelm::Metadata
