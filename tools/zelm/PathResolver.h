/// Finds what paths name in the header metadata of one partition.
///
/// The first step names a class of sets anywhere in the metadata (or a property of the Preface); each further
/// one a property of the set before it, or a class of sets below that: the nearest that there are. A path of
/// one step that names no class may name a property that only one set has. Class names stand for subclasses
/// where no set is of the class itself.
#pragma once

#include "Path.h"
#include "SetPaths.h"

#include <optional>

namespace Zelm {

/// A property of a set, present or not, or one member of its collection.
struct PathTarget {
    MXF::Zelm::Metadata::MetadataSet* set = nullptr;
    MXF::Zelm::MetaMetadata::MetaAttribute const* attribute = nullptr;
    std::optional<std::size_t> member; ///< from 0

    MXF::Zelm::Types::UniversalLabel const& label() const {
        return attribute->metaElement().universalLabel();
    }

    /// Null when the set does not have the property.
    MXF::Zelm::Metadata::Element* element() const { return set->findElement(label()); }
};

class PathResolver {
public:
    /// Both must outlive it, and the metadata must not change meanwhile.
    PathResolver(MXF::Zelm::Metadata::PartitionMetadata const& metadata, SetPaths const& paths)
        : metadata_(metadata), paths_(paths) {}

    /// The property or, where the path has [*], the properties that it names. Throws Exceptions::InvalidValue
    /// that says what there is instead, or which candidates there are.
    std::vector<PathTarget> resolve(std::string const& path) const;

    /// The path that `resolve` takes for a target.
    std::string pathOf(PathTarget const& target) const;

private:
    using MetadataSet = MXF::Zelm::Metadata::MetadataSet;
    using Sets = std::vector<MetadataSet*>;

    Sets roots(PathStep const& step) const;
    Sets below(MetadataSet& set, PathStep const& step) const;
    std::optional<Sets> byProperty(MetadataSet& set, std::string const& name) const;
    Sets children(MetadataSet const& set) const;
    Sets descendants(MetadataSet const& set) const;
    Sets ofClass(Sets const& sets, std::string const& name) const;
    Sets choose(Sets const& sets, PathStep const& step) const;
    std::vector<PathTarget> propertyAnywhere(PathStep const& step) const;
    PathTarget property(MetadataSet& set, PathStep const& step) const;
    [[noreturn]] void refuseRoot(std::string const& name) const;

    MXF::Zelm::Metadata::PartitionMetadata const& metadata_;
    SetPaths const& paths_;
};

/// The attribute of a class by its name, null when it has none. Throws Exceptions::InvalidValue when several
/// are called so.
MXF::Zelm::MetaMetadata::MetaAttribute const*
findAttribute(MXF::Zelm::MetaMetadata::MetaMetadataSet const& definition, std::string const& name);

} // namespace Zelm
