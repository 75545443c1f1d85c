#include "MXF/Zelm/Metadata/DMS1/ClipFramework.h"

#include "MXF/Zelm/Exceptions/Exceptions.h"
#include "MXF/Zelm/Metadata/DMS1/DMS1MetadataKeys.h"
#include "MXF/Zelm/Metadata/DMS1/DMS1MetadataULs.h"
#include "MXF/Zelm/Metadata/Structural/Access.h"
#include "MXF/Zelm/Metadata/Structural/GenericPackage.h"
#include "MXF/Zelm/Metadata/Structural/Properties.h"
#include "MXF/Zelm/Metadata/Structural/StructuralMetadataKeys.h"
#include "MXF/Zelm/Metadata/Structural/Track.h"

#include <set>

namespace MXF::Zelm::Metadata::DMS1 {

namespace {

using namespace KLV::Literals;
namespace Keys = Structural::StructuralMetadataKeys;
namespace Properties = Structural::Properties;
using Structural::put;

/// DMS-1 version 1, without private extensions (the register of labels).
constexpr KLV::Key dms1Scheme = "060E2B34.04010101.0D010401.01010100"_key;
/// The data definition of descriptive metadata tracks.
constexpr KLV::Key descriptiveMetadata = "060E2B34.04010101.01030201.10000000"_key;

/// New sets, which go again unless they are kept.
class NewSets {
public:
    explicit NewSets(PartitionMetadata& metadata) : metadata_(metadata) {}
    NewSets(NewSets const&) = delete;
    NewSets& operator=(NewSets const&) = delete;

    ~NewSets() {
        for (auto uid = uids_.rbegin(); uid != uids_.rend(); ++uid) {
            try {
                metadata_.removeMetadataSet(*uid);
            } catch (...) {
                // A listener wants to keep it.
            }
        }
    }

    MetadataSet& create(KLV::Key const& key) {
        MetadataSet& set = metadata_.createMetadataSet(key);
        uids_.push_back(*set.instanceUID());
        return set;
    }
    void keep() { uids_.clear(); }

private:
    PartitionMetadata& metadata_;
    Templates::vector<Types::UUID> uids_;
};

MetadataSet& packageOf(PartitionMetadata const& metadata, MetadataSet const& track) {
    Templates::vector<MetadataSet*> parents;
    if (metadata.parentSets(&track, parents) == 0)
        throw Exceptions::InvalidStructure("A track that no package holds cannot be described");
    return *parents.front();
}

Types::UInt32 freeTrackID(MetadataSet const& package) {
    std::set<std::uint32_t> used;
    for (auto const* const track : package.referencedSets(Properties::tracks.label))
        if (auto const* const id = get(*track, Properties::trackID))
            used.insert(id->value());
    std::uint32_t id = 1;
    while (used.contains(id))
        ++id;
    return Types::UInt32(id);
}

void addScheme(MetadataSet& preface) {
    Types::UniversalLabel const scheme(dms1Scheme);
    auto const* const schemes = get(preface, Properties::dmSchemes);
    if (schemes == nullptr || !schemes->contains(scheme))
        preface.add(Properties::dmSchemes.label, scheme);
}

/// A static track without ID, whose only segment holds the framework.
MetadataSet& createTrack(NewSets& sets, MetadataSet const& framework,
                         Templates::vector<std::uint32_t> const& described) {
    Types::UniversalLabel const data(descriptiveMetadata);
    MetadataSet& segment = sets.create(Keys::dmSegment());
    segment.value(Properties::dataDefinition.label, data);
    for (std::uint32_t const track : described)
        segment.add(Properties::trackIDs.label, Types::UInt32(track));
    segment.reference(Properties::dmFramework.label, framework);
    MetadataSet& sequence = sets.create(Keys::sequence());
    sequence.value(Properties::dataDefinition.label, data);
    sequence.addReference(Properties::structuralComponents.label, segment);
    MetadataSet& track = sets.create(Keys::staticTrack());
    put(track, Properties::trackNumber, Types::UInt32(std::uint32_t{0}));
    track.reference(Properties::sequence.label, sequence);
    return track;
}

/// A new framework, to which `fill` gives its properties, on a new track of the package.
template <class Fill>
MetadataSet* createOn(PartitionMetadata& metadata, MetadataSet& package, KLV::Key const& key,
                      Templates::vector<std::uint32_t> const& described, Fill fill) {
    MetadataSet& preface = metadata.preface();
    NewSets sets(metadata);
    MetadataSet& framework = sets.create(key);
    fill(framework);
    MetadataSet& track = createTrack(sets, framework, described);
    put(track, Properties::trackID, freeTrackID(package));
    addScheme(preface);
    package.addReference(Properties::tracks.label, track);
    sets.keep();
    return &framework;
}

} // namespace

Templates::wstring clipKindToWString(ClipFrameworkClipKind kind) {
    constexpr const char16_t* texts[] = {u"Unknown",         u"Still", u"Graphic",
                                         u"Moving Pictures", u"Sound", u"Other"};
    auto const value = static_cast<unsigned>(kind);
    return texts[value < std::size(texts) ? value : 0];
}

MetadataSet* createClipFramework(PartitionMetadata& metadata, Structural::TimelineTrack* track,
                                 std::string const& clipNumber, ClipFrameworkClipKind kind) {
    if (track == nullptr)
        throw Exceptions::InvalidValue("A clip framework needs the track that it describes");
    if (track->trackID() == nullptr)
        throw Exceptions::InvalidStructure("A track without track ID cannot be described");
    return createOn(metadata, packageOf(metadata, *track), DMS1MetadataKeys::clipFramework(),
                    {track->trackID()->value()}, [&](MetadataSet& framework) {
                        framework.value(DMS1MetadataULs::clipNumber(), Types::ISO7String(clipNumber));
                        framework.value(DMS1MetadataULs::clipKind(),
                                        Types::UTF16String(clipKindToWString(kind)));
                    });
}

MetadataSet* createFramework(PartitionMetadata& metadata, Structural::GenericPackage& package,
                             KLV::Key const& key, Templates::vector<std::uint32_t> const& trackIDs) {
    return createOn(metadata, package, key, trackIDs, [](MetadataSet&) {});
}

} // namespace MXF::Zelm::Metadata::DMS1
