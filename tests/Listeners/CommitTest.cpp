/// The listeners that write generations and dates on commit.
#include "MXF/Zelm/Metadata/Listeners/GenerationUIDWriterListener.h"
#include "MXF/Zelm/Metadata/Listeners/LastModifiedDateUpdaterListener.h"
#include "support/SmallHeader.h"

namespace MXF::Zelm::Test {

using namespace Metadata;
using namespace Metadata::Listeners;
using namespace Metadata::Structural;
using namespace KLV::Literals;
using Types::UTF16String;
using Types::UUID;

namespace {

/// Refuses a change of one set.
struct Refusing : BasicNullListener<PartitionMetadataListener> {
    void removedMetadataSet(MetadataSet* removed) override { refuse(*removed); }
    void addedElement(MetadataSet& changed, MetaMetadata::MetaElement const*, Element&,
                      Types::BaseType const&) override {
        refuse(changed);
    }
    void refuse(MetadataSet const& changed) const {
        if (&changed == set)
            throw Exceptions::InvalidChange("refused");
    }
    MetadataSet const* set = nullptr;
};

struct Generations : SmallHeader {
    Generations() {
        identification.thisGenerationUID(generation);
        metadata->addMetadataListener(writer, true);
        metadata->addMetadataListener(refusing, false);
        writer->setIdentification(&identification);
    }

    /// The sets that carry the generation.
    std::vector<MetadataSet*> stamped() const {
        return metadata->find(KLV::Key("060E2B34.01010102.05200701.08000000"_key), generation);
    }

    UUID const generation = UUID::generate();
    Identification& identification = create<Identification>(*metadata);
    std::shared_ptr<GenerationUIDWriterListener> writer = std::make_shared<GenerationUIDWriterListener>();
    std::shared_ptr<Refusing> refusing = std::make_shared<Refusing>();
};

using Sets = std::vector<MetadataSet*>;

} // namespace

TEST(GenerationUIDWriter, StampsWhatChangedSinceTheLastTime) {
    Generations header;
    header.writer->commit();
    EXPECT_EQ(header.stamped().size(), 5u) << "all but the identification, which is not trackable";
    EXPECT_EQ(*header.package.generationUID(), header.generation);
    for (auto const& [key, set] : *header.metadata)
        if (auto* const trackable = dynamic_cast<TrackableMetadataSet*>(set))
            trackable->resetGenerationUID();
    header.writer->commit();
    EXPECT_EQ(header.stamped(), Sets()) << "the generation itself is no change";

    header.package.name(UTF16String(u"x"));
    header.identification.companyName(UTF16String(u"x"));
    header.refusing->set = &header.storage;
    EXPECT_THROW(
        header.storage.value(KLV::Key("060E2B34.01010102.06010104.01010000"_key), Types::UniversalLabel()),
        Exceptions::InvalidChange);
    header.writer->commit();
    EXPECT_EQ(header.stamped(), Sets{&header.package}) << "what was refused is no change";
    header.track.trackName(UTF16String(u"x"));
    header.writer->reset();
    header.writer->commit();
    EXPECT_EQ(header.stamped(), Sets{&header.package});
}

TEST(GenerationUIDWriter, SurvivesWhatIsRemoved) {
    Generations header;
    header.writer->reset();
    header.sequence.duration(Types::Length(std::int64_t{5}));
    header.track.trackName(UTF16String(u"x"));
    header.refusing->set = &header.track;
    EXPECT_THROW(header.metadata->removeMetadataSet(*header.track.instanceUID()), Exceptions::InvalidChange);
    header.refusing->set = &header.identification;
    EXPECT_THROW(header.metadata->removeMetadataSet(*header.identification.instanceUID()),
                 Exceptions::InvalidChange);
    header.refusing->set = &header.track; // refuses the stamp too
    EXPECT_THROW(header.writer->commit(), Exceptions::InvalidChange);
    EXPECT_THROW(header.metadata->removeMetadataSet(*header.track.instanceUID()), Exceptions::InvalidChange);
    header.refusing->set = nullptr;
    header.metadata->removeMetadataSet(*header.sequence.instanceUID());
    header.metadata->removeMetadataSet(*header.identification.instanceUID());
    header.writer->commit();
    EXPECT_EQ(header.track.generationUID(), nullptr) << "there is no generation";
    auto& second = create<Identification>(*header.metadata);
    header.writer->setIdentification(&second);
    header.writer->commit();
    EXPECT_EQ(header.track.generationUID(), nullptr) << "it has no UID yet";
    second.thisGenerationUID(header.generation);
    header.writer->commit();
    EXPECT_EQ(header.stamped(), Sets{&header.track}) << "its change waited";
}

TEST(LastModifiedDateUpdater, DatesThePrefaceAndThePackagesThatChanged) {
    SmallHeader header;
    auto& other = create<MaterialPackage>(*header.metadata);
    header.storage.addPackage(other);
    int hour = 0;
    auto const updater = std::make_shared<LastModifiedDateUpdaterListener>(
        header.metadata.get(), [&hour] { return Types::Timestamp(2020, 1, 2, ++hour, 0, 0, 0); });
    auto const writer = std::make_shared<GenerationUIDWriterListener>();
    header.metadata->addMetadataListener(updater, false);
    header.metadata->addMetadataListener(writer, false);
    updater->commit();
    EXPECT_EQ(header.preface.lastModifiedDate(), nullptr);

    header.sequence.duration(Types::Length(std::int64_t{5}));
    updater->commit();
    EXPECT_EQ(header.preface.lastModifiedDate()->hour(), 1u);
    EXPECT_EQ(header.package.packageModifiedDate()->hour(), 1u);
    EXPECT_EQ(other.packageModifiedDate(), nullptr);
    auto& identification = create<Identification>(*header.metadata);
    identification.thisGenerationUID(UUID::generate());
    updater->reset();
    writer->setIdentification(&identification);
    writer->commit();
    EXPECT_EQ(*header.package.generationUID(), *identification.thisGenerationUID()) << "the date is a change";
    updater->commit();
    EXPECT_EQ(hour, 1) << "neither the dates nor the generations are changes";

    header.metadata->removeMetadataSet(*header.sequence.instanceUID());
    updater->commit();
    EXPECT_EQ(header.preface.lastModifiedDate()->hour(), 2u);
    EXPECT_EQ(header.package.packageModifiedDate()->hour(), 1u);
    other.name(UTF16String(u"x"));
    auto& second = create<Preface>(*header.metadata);
    EXPECT_EQ(thrownBy([&] { updater->commit(); }), "More than one Preface found in PartitionMetadata");
    header.metadata->removeMetadataSet(*second.instanceUID());
    updater->commit();
    EXPECT_EQ(other.packageModifiedDate()->hour(), 4u) << "the change was kept";
    EXPECT_THROW(LastModifiedDateUpdaterListener(nullptr), Exceptions::InvalidValue);

    // A circle: the track's sequence is its package.
    UUID const uid = UUID::generate();
    header.track.value(KLV::Key("060E2B34.01010102.06010104.02040000"_key), Types::StrongReference(uid));
    header.package.value(KLV::Key("060E2B34.01010101.01011502.00000000"_key), uid);
    updater->commit();
    EXPECT_EQ(header.package.packageModifiedDate()->hour(), 5u);
}

} // namespace MXF::Zelm::Test
