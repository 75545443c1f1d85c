/// The primer pack (SMPTE 377M): which local tag stands for which label in one partition's header metadata.
///
///     key      16
///     length         BER
///     value     4    count
///               4    item size, 18
///              18    each item: local tag (2), label (16)
#pragma once

#include "MXF/Zelm/DataIO/DataSink.h"
#include "MXF/Zelm/KLV/Packet.h"
#include "MXF/Zelm/Templates/Containers.h"
#include "MXF/Zelm/Templates/Memory.h"
#include "MXF/Zelm/Types/LocalTag.h"
#include "MXF/Zelm/Types/UniversalLabel.h"

namespace MXF::Zelm::Packs {

/// The first mapping of a tag, and of a label, wins; later ones are kept apart as duplicates and never
/// written.
class MXFZELM_EXPORT PrimerPack : public Platform::Allocated {
public:
    using Entry = Templates::pair<Types::LocalTag, Types::UniversalLabel>;

    static KLV::Key const& key();

    /// Empty, with a 4-byte length field.
    PrimerPack();

    /// Reads a primer. Throws Exceptions::InvalidKey for another packet ("Trying to create a Primer from a
    /// KLV with a invalid primerPack Key."), Exceptions::InvalidLength when the value ends before the
    /// announced entries.
    explicit PrimerPack(KLV::Packet& packet);

    PrimerPack(PrimerPack const& other);
    PrimerPack& operator=(PrimerPack const& other);
    ~PrimerPack();

    /// Enters a pair, or appends it to the duplicates when its tag or its label is present.
    void add(Types::LocalTag const& tag, Types::UniversalLabel const& label);

    /// Null when the primer does not hold it.
    Types::UniversalLabel const* find(Types::LocalTag const& tag) const;
    Types::LocalTag const* find(Types::UniversalLabel const& label) const;

    /// The tag of a label whose version (byte 7) is left out of account; null when there is none.
    Types::LocalTag const* findOfAnyVersion(Types::UniversalLabel const& label) const;

    /// Removes a label and its tag; false when the label was not present.
    bool remove(Types::UniversalLabel const& label);

    std::size_t count() const;

    /// Entry `index` in ascending order of the tags. Throws Exceptions::BaseException with "Trying to access
    /// an element beyond the end of the data".
    Entry at(std::size_t index) const;

    /// All entries in ascending order of the tags.
    Templates::vector<Entry> entries() const;

    std::size_t countDuplicates() const;

    /// Duplicate `index` in the order of adding. Throws as `at` does.
    Entry atDuplicates(std::size_t index) const;

    /// Bytes of the length field, 1 to 9.
    unsigned char berLength() const;
    void berLength(unsigned char size);

    void serialize(DataIO::DataSink& sink) const;
    std::uint64_t serializedSize() const;

private:
    struct State;
    Templates::ValuePtr<State> state_;
};

} // namespace MXF::Zelm::Packs
