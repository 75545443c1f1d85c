/// Set classes and properties by the names that people use for them: those of the registers and those of
/// SMPTE 377M, whatever the case of their letters.
#pragma once

#include <MXF/Zelm/MetaMetadata/Dictionary.h>
#include <MXF/Zelm/Metadata/MetadataSet.h>

#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace Zelm {

/// What SMPTE 377M calls a class or a property; the register's name where that is the same or the only one.
/// Empty when it has none.
std::string preferredName(MXF::Zelm::MetaMetadata::PropertyMap const& definition);

/// The same for an element; its label, or else its tag, when it has no name.
std::string preferredName(MXF::Zelm::Metadata::Element const& element);

/// True when `name` is one of the definition's names; the case of ASCII letters does not count.
bool isCalled(MXF::Zelm::MetaMetadata::PropertyMap const& definition, std::string_view name);

/// Equal but for the case of ASCII letters.
bool equalButForCase(std::string_view a, std::string_view b);

/// Which class inherits from which. The dictionary must outlive it.
class ClassTree {
public:
    using Definition = MXF::Zelm::MetaMetadata::MetaMetadataSet;

    explicit ClassTree(MXF::Zelm::MetaMetadata::Dictionary const& dictionary);

    /// The class itself, then those that it inherits from.
    std::vector<Definition const*> const& lineage(MXF::Zelm::Metadata::MetadataSet const& set) const;

    /// True when the set's class is called `name` or inherits from one that is.
    bool isA(MXF::Zelm::Metadata::MetadataSet const& set, std::string_view name) const;

    /// What a set is called in a path: "Track" for tracks of all kinds, else what SMPTE 377M calls its class.
    std::string const& stepName(MXF::Zelm::Metadata::MetadataSet const& set) const;

private:
    struct Entry {
        std::vector<Definition const*> lineage;
        std::string stepName;
    };

    Entry const& entry(MXF::Zelm::Metadata::MetadataSet const& set) const;

    std::unordered_map<std::u16string, Definition const*> byName_;
    mutable std::unordered_map<Definition const*, Entry> entries_; // made when they are asked for
};

} // namespace Zelm
