/// Walks of the graph that strong references make between the sets of a partition. A file may hold a chain as
/// long as it likes, so that nothing here recurses.
#pragma once

#include "MXF/Zelm/Metadata/MetadataSet.h"

#include <unordered_map>

namespace MXF::Zelm::Metadata {

/// The sets that `set` refers to strongly, in the order of its elements; dangling references are left out.
Templates::vector<MetadataSet const*> strongChildren(MetadataSet const& set);

/// Throws Exceptions::InvalidStructure with "Circular reference for this instanceUID: " when the parents of
/// `set`, their parents and so on lead back to it.
void requireNoCircle(MetadataSet const& set,
                     Templates::multimap<MetadataSet const*, MetadataSet*> const& parentsOf);

/// Appends each set once, before the sets below it or behind them.
class StrongReferenceWalk {
public:
    /// `circle` begins the message about a circle.
    StrongReferenceWalk(bool parentsFirst, Templates::vector<MetadataSet const*>& sets,
                        const char16_t* circle = u"Circular reference for this instanceUID: ")
        : parentsFirst_(parentsFirst), sets_(sets), circle_(circle) {}

    /// Appends `root` and what lies below it, unless it was met before. Throws Exceptions::InvalidStructure
    /// with the beginning given above and the UID.
    void from(MetadataSet const& root);

private:
    enum class State : unsigned char { New, OnPath, Done };

    struct Step {
        MetadataSet const* set;
        Templates::vector<MetadataSet const*> children;
        std::size_t next = 0;
    };

    void enter(MetadataSet const& set);
    void leave();

    bool parentsFirst_;
    Templates::vector<MetadataSet const*>& sets_;
    const char16_t* circle_;
    std::unordered_map<MetadataSet const*, State> states_;
    Templates::vector<Step> path_;
};

} // namespace MXF::Zelm::Metadata
