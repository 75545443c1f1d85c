/// The sets of header metadata in the order in which people think of them, each with the path that names it:
///
///     Preface, ContentStorage, MaterialPackage, SourcePackage[2]    below Preface and ContentStorage: the
///     class MaterialPackage/Track[2]/Sequence/SourceClip                  below other sets: one step a
///     reference SourcePackage/Descriptor/Locators…
///
/// A single reference gives the step its name; a set out of a collection is called by its class, with its
/// number, from 1, among those of its class. Sets that nothing refers to stand last.
#pragma once

#include "ClassTree.h"

#include <MXF/Zelm/Metadata/PartitionMetadata.h>

#include <string>
#include <unordered_map>
#include <vector>

namespace Zelm {

class SetPaths {
public:
    struct Place {
        MXF::Zelm::Metadata::MetadataSet* set = nullptr;
        std::string path;
        bool isTop = false;                ///< no other set refers to it
        std::vector<std::size_t> children; ///< numbers of the sets that this one refers to strongly
    };

    /// Both must outlive it.
    SetPaths(MXF::Zelm::Metadata::PartitionMetadata const& metadata, ClassTree const& classes);

    ClassTree const& classes() const { return classes_; }

    /// Each set once, depth first from the Preface.
    std::vector<Place> const& places() const { return places_; }
    Place const& place(MXF::Zelm::Metadata::MetadataSet const& set) const {
        return places_[numbers_.at(&set)];
    }
    std::string const& path(MXF::Zelm::Metadata::MetadataSet const& set) const { return place(set).path; }

private:
    /// A set that is to be visited next.
    struct Step {
        MXF::Zelm::Metadata::MetadataSet* set;
        std::size_t parent;                            ///< `none` for a set without one
        MXF::Zelm::Metadata::Element const* reference; ///< what the parent holds it by
    };
    static constexpr std::size_t none = static_cast<std::size_t>(-1);

    void visitFrom(MXF::Zelm::Metadata::MetadataSet& root);
    void pushChildren(std::size_t place, std::vector<Step>& steps) const;
    void nameRoots();
    void nameOthers();
    bool isRoot(std::size_t place) const;

    MXF::Zelm::Metadata::PartitionMetadata const& metadata_;
    ClassTree const& classes_;
    std::vector<Place> places_;
    std::vector<Step> steps_;         // how each place was reached
    std::vector<std::size_t> levels_; // steps from the Preface
    std::unordered_map<MXF::Zelm::Metadata::MetadataSet const*, std::size_t> numbers_;
};

/// What an element refers to, in its order; null for what is not there.
std::vector<MXF::Zelm::Metadata::MetadataSet*>
targetsOf(MXF::Zelm::Metadata::Element const& element,
          MXF::Zelm::Metadata::PartitionMetadata const& metadata);

/// The element as a holder of strong references, null when it is none.
MXF::Zelm::Metadata::ReferenceHolder const* strongHolder(MXF::Zelm::Metadata::Element const& element);

} // namespace Zelm
