/// The graph of references and the index: what they know always agrees with the sets.
#include "MXF/Zelm/Metadata/Listeners/BaseMetadataIndexListener.h"
#include "MXF/Zelm/Metadata/Listeners/MetadataSetRelationshipManager.h"
#include "MXF/Zelm/Platform/Text.h"
#include "MXF/Zelm/Types/Integers.h"
#include "MXF/Zelm/Types/Strings.h"
#include "support/SmallDictionary.h"

namespace MXF::Zelm::Test {

using namespace Metadata;
using namespace Metadata::Listeners;
using Types::StrongReference;
using Types::UTF16String;
using Types::WeakReference;

namespace {

using ManagerPtr = std::shared_ptr<MetadataSetRelationshipManager>;

constexpr const char* refusal = "Cannot removed this MetadataSet because is referenced by other Metadata Set";
constexpr const char* circle = "Circular reference in MXF file! InstanceUID: ";

ManagerPtr attach(PartitionMetadata& metadata) {
    auto manager = std::make_shared<MetadataSetRelationshipManager>(&metadata);
    metadata.addMetadataListener(manager, true);
    return manager;
}

/// Throws at every `period`-th thing that it is told.
class Refusing : public BasicNullListener<PartitionMetadataListener> {
public:
    void createdMetadataSet(MetadataSet* set) override { refuse(*set); }
    void removedMetadataSet(MetadataSet* set) override { refuse(*set); }
    void addedElement(MetadataSet& set, MetaMetadata::MetaElement const*, Element&,
                      Types::BaseType const&) override {
        refuse(set);
    }
    void updatedElement(MetadataSet& set, MetaMetadata::MetaElement const*, Element&,
                        Types::Collection const&, Types::Collection const&) override {
        refuse(set);
    }
    void updatedElement(MetadataSet& set, MetaMetadata::MetaElement const*, Element&,
                        Types::SimpleDataType const&, Types::SimpleDataType const&) override {
        refuse(set);
    }
    void updatedElementCollection(MetadataSet& set, MetaMetadata::MetaElement const*, Element&,
                                  Types::Collection const&, std::size_t, Types::SimpleDataType const*,
                                  Types::SimpleDataType const*) override {
        refuse(set);
    }
    void removedElement(MetadataSet& set, MetaMetadata::MetaElement const*, Element&,
                        Types::BaseType const&) override {
        refuse(set);
    }

    unsigned period = 2;
    unsigned refused = 0;

private:
    void refuse(MetadataSet const&) {
        if (++count_ % period == 0) {
            ++refused;
            throw Exceptions::InvalidChange("refused");
        }
    }
    unsigned count_ = 0;
};

/// All that a manager knows, so that two can be compared.
auto knowledge(MetadataSetRelationshipManager const& manager) {
    using Elements = std::vector<Element*>;
    std::vector<std::tuple<Types::UUID, MetadataSet*, Elements, Elements>> entries;
    auto const elements = [](ReferenceEntry::Links const& links) {
        Elements all;
        for (auto const& [element, place] : links)
            all.push_back(element);
        return all;
    };
    for (auto const& [uid, entry] : manager.uuid2ReferencesMap())
        entries.emplace_back(uid, entry->set, elements(entry->strong), elements(entry->weak));
    std::vector<std::pair<Element*, Types::UUID>> references(manager.references2UUIDMap().begin(),
                                                             manager.references2UUIDMap().end());
    std::sort(references.begin(), references.end());
    return std::pair(entries, references);
}

/// One change of things with the UIDs 0 to 7, chosen by `number`.
void changeSomething(PartitionMetadata& metadata, unsigned number) {
    auto const digit = [&number](unsigned base) {
        auto const rest = static_cast<unsigned char>(number % base);
        number /= base;
        return rest;
    };
    unsigned char const last = digit(8);
    MetadataSet* const set = metadata.find(uid(last));
    if (set == nullptr) {
        Bytes const friendly = hex("00000002 00000010");
        Bytes const own = uidItem(last);
        Bytes const target(own.begin() + 4, own.end());
        load(metadata,
             klv(thingKey, own + item(0x8001, hex("0041")) + item(0x8004, friendly + target + target)));
        return;
    }
    unsigned char const other = digit(8);
    auto* const references = dynamic_cast<CollectionReferenceElement*>(set->findElement(friends));
    bool const hasMembers = references != nullptr && references->value().count() > 0;
    switch (digit(10)) {
    case 0:
        metadata.removeMetadataSet(uid(last));
        break;
    case 1:
        set->value(next, StrongReference(uid(other)));
        break;
    case 2:
        set->removeElement(next);
        break;
    case 3:
        set->removeElement(friends);
        break;
    case 4: {
        Types::Batch batch(Types::Identifiers::WeakReference);
        for (unsigned char i = 0; i < other; ++i)
            batch.add(WeakReference(uid(i / 2)));
        set->value(friends, batch);
        break;
    }
    case 5:
        if (hasMembers)
            references->set(0, WeakReference(uid(other)));
        break;
    case 6:
        if (hasMembers)
            references->remove(references->value().count() - 1);
        break;
    case 7:
        set->value(instanceUID, uid(other));
        break;
    case 8:
        set->value(title, UTF16String(std::u16string(1, static_cast<char16_t>(u'A' + other))));
        break;
    default:
        if (references != nullptr)
            references->add(WeakReference(uid(other)));
    }
}

void compareIndex(BaseMetadataIndexListener const& index, PartitionMetadata const& metadata) {
    auto const compare = [&](KLV::Key const& label, Types::SimpleDataType const& value) {
        auto expected = metadata.find(label, value);
        auto found = index.find(label, value);
        std::sort(expected.begin(), expected.end());
        std::sort(found.begin(), found.end());
        EXPECT_EQ(found, expected);
    };
    for (unsigned char i = 0; i < 8; ++i) {
        compare(title, UTF16String(std::u16string(1, static_cast<char16_t>(u'A' + i))));
        compare(instanceUID, uid(i));
        compare(next, StrongReference(uid(i)));
        compare(next, uid(i)); // not of the element's type
        compare(friends, WeakReference(uid(i)));
    }
}

} // namespace

TEST(Listeners, StayInStepWithTheSetsWhateverIsRefused) {
    for (bool const enforcing : {false, true}) {
        auto const metadata = emptyMetadata();
        auto const early = attach(*metadata);
        auto const index = std::make_shared<BaseMetadataIndexListener>();
        metadata->addMetadataListener(index, false);
        auto const refusing = std::make_shared<Refusing>();
        metadata->addMetadataListener(refusing, false);
        auto const late = attach(*metadata);
        early->enforceReferentialIntegrity(false);
        late->enforceReferentialIntegrity(enforcing); // refuses after the others were told
        std::uint32_t random = 1;
        unsigned done = 0, thrown = 0;
        for (int i = 0; i < 5'000 && !HasFailure(); ++i) {
            random = random * 1664525 + 1013904223;
            refusing->period = 2 + random % 5;
            try {
                changeSomething(*metadata, random >> 10);
                ++done;
            } catch (Exceptions::BaseException const&) {
                ++thrown;
            }
            auto const fresh = attach(*metadata);
            metadata->removeMetadataListener(fresh);
            EXPECT_EQ(knowledge(*early), knowledge(*fresh)) << i;
            EXPECT_EQ(knowledge(*late), knowledge(*fresh)) << i;
            if (i % 10 == 0)
                compareIndex(*index, *metadata);
        }
        EXPECT_GT(done, 1'000u);
        EXPECT_GT(refusing->refused, 500u);
        EXPECT_GE(thrown, refusing->refused);
    }
}

TEST(RelationshipManager, KnowsWhoRefersToWhom) {
    auto const metadata = emptyMetadata();
    auto const manager = attach(*metadata);
    MetadataSet& parent = metadata->createMetadataSet(thingKey);
    parent.value(next, StrongReference(uid(1)));
    parent.value(friends, Types::Batch(Types::Identifiers::WeakReference));
    auto& weak = dynamic_cast<BatchReferenceElement&>(parent.find(friends));
    weak.add(WeakReference(uid(1)));
    weak.add(WeakReference(uid(1)));
    EXPECT_EQ(manager->uuid2ReferencesMap().at(uid(1))->set, nullptr) << "a target that is still to come";
    MetadataSet* const child = load(*metadata, klv(thingKey, uidItem(1)));
    EXPECT_EQ(manager->parentSet(child), &parent);
    EXPECT_EQ(manager->parentSet(static_cast<MetadataSet const*>(&parent)), nullptr);
    std::set<Element*> elements;
    EXPECT_EQ(manager->metadataSetStrongRefs(child, elements), 1u);
    EXPECT_EQ(elements, std::set{parent.findElement(next)});
    EXPECT_EQ(manager->metadataSetWeakRefs(child, elements), 1u) << "an element that refers twice";
    EXPECT_EQ(elements.size(), 2u);
    EXPECT_EQ(manager->references2UUIDMap().count(&weak), 2u);
    EXPECT_EQ(manager->metadataSetStrongRefs(&parent, elements), 0u);

    EXPECT_FALSE(manager->canDeleteMetadataSet(child));
    EXPECT_EQ(thrownBy([&] { metadata->removeMetadataSet(uid(1)); }), refusal);
    parent.removeElement(next);
    weak.remove(0);
    EXPECT_FALSE(manager->canDeleteMetadataSet(child)) << "the second one is left";
    weak.remove(0);
    EXPECT_TRUE(manager->canDeleteMetadataSet(child));
    child->value(next, StrongReference(uid(1)));
    EXPECT_TRUE(manager->canDeleteMetadataSet(child)) << "a reference of its own goes with it";
    EXPECT_TRUE(metadata->removeMetadataSet(uid(1)));
    EXPECT_FALSE(manager->uuid2ReferencesMap().contains(uid(1)));

    MetadataSet& other = metadata->createMetadataSet(thingKey);
    parent.reference(next, other);
    manager->enforceReferentialIntegrity(false);
    EXPECT_TRUE(metadata->removeMetadataSet(*other.instanceUID()));
    EXPECT_THROW(MetadataSetRelationshipManager(nullptr), Exceptions::InvalidValue);
}

TEST(RelationshipManager, RemovesATreeOrNothing) {
    // root > middle > shared < outside; the leaf refers weakly to the root
    struct Tree {
        Tree() : manager(attach(*metadata)) {
            root.reference(next, middle);
            middle.reference(next, shared);
            outside.reference(next, shared);
            shared.reference(next, leaf);
            middle.addReference(friends, root);
        }
        std::unique_ptr<PartitionMetadata> metadata = emptyMetadata();
        ManagerPtr manager;
        MetadataSet& root = metadata->createMetadataSet(thingKey);
        MetadataSet& middle = metadata->createMetadataSet(thingKey);
        MetadataSet& shared = metadata->createMetadataSet(thingKey);
        MetadataSet& leaf = metadata->createMetadataSet(thingKey);
        MetadataSet& outside = metadata->createMetadataSet(thingKey);
    };
    Tree shared;
    EXPECT_TRUE(shared.manager->cascadeDelete(&shared.root));
    EXPECT_EQ(shared.metadata->size(), 3u) << "what another set owns stays, with all below it";
    EXPECT_EQ(shared.manager->parentSet(&shared.leaf), &shared.shared);
    EXPECT_FALSE(shared.manager->cascadeDelete(nullptr));
    EXPECT_TRUE(shared.manager->cascadeDelete(&shared.outside));
    EXPECT_EQ(shared.metadata->size(), 0u);
    EXPECT_TRUE(shared.manager->uuid2ReferencesMap().empty());
    EXPECT_TRUE(shared.manager->references2UUIDMap().empty());

    Tree refused;
    EXPECT_EQ(thrownBy([&] { refused.manager->cascadeDelete(&refused.middle); }), refusal) << "has a parent";
    refused.outside.addReference(friends, refused.middle);
    EXPECT_EQ(thrownBy([&] { refused.manager->cascadeDelete(&refused.root); }), refusal)
        << "a set outside points at one below";
    EXPECT_EQ(refused.metadata->size(), 5u);
    refused.manager->enforceReferentialIntegrity(false);
    EXPECT_TRUE(refused.manager->cascadeDelete(&refused.middle));
    EXPECT_EQ(refused.metadata->size(), 4u);
}

TEST(RelationshipManager, FindsCirclesAndBearsLongChains) {
    auto const metadata = emptyMetadata();
    auto const manager = attach(*metadata);
    constexpr std::uint32_t count = 50'000;
    auto const numbered = [](std::uint32_t i) {
        Bytes const bytes = repeated(12, 7) + number(i);
        return bytes;
    };
    for (std::uint32_t i = 0; i < count; ++i)
        load(*metadata, klv(thingKey, item(0x3C0A, numbered(i)) + item(0x8003, Bytes(numbered(i + 1)))));
    MetadataSet* const first = metadata->find(Types::UUID(numbered(0).data()));
    MetadataSet* const last = metadata->find(Types::UUID(numbered(count - 1).data()));
    EXPECT_NE(manager->parentSet(last), nullptr);
    last->reference(next, *first);
    EXPECT_TRUE(thrownBy([&] { manager->parentSet(last); }).starts_with(circle));
    EXPECT_TRUE(
        thrownBy<Exceptions::InvalidStructure>([&] { manager->cascadeDelete(first); }).starts_with(circle));
    EXPECT_EQ(metadata->size(), count);
    last->removeElement(next);
    EXPECT_TRUE(manager->cascadeDelete(first));
    EXPECT_EQ(metadata->size(), 0u);

    MetadataSet& self = metadata->createMetadataSet(thingKey);
    self.reference(next, self);
    std::string const message = circle + Platform::toUtf8(self.instanceUID()->toString());
    EXPECT_EQ(thrownBy([&] { manager->parentSet(&self); }), message);
    EXPECT_EQ(thrownBy([&] { manager->cascadeDelete(&self); }), message);
    MetadataSet& pair = metadata->createMetadataSet(thingKey);
    self.reference(next, pair);
    pair.reference(next, self);
    EXPECT_TRUE(thrownBy([&] { manager->parentSet(&pair); }).starts_with(circle));
}

TEST(NullMetadataListener, ChangesNothing) {
    auto const metadata = emptyMetadata();
    metadata->addMetadataListener(std::make_shared<NullMetadataListener>(), true);
    auto const committable = std::make_shared<NullCommitableListener>();
    metadata->addMetadataListener(committable, true);
    auto const plain = emptyMetadata();
    for (auto* const each : {metadata.get(), plain.get()}) {
        MetadataSet* const set = load(*each, klv(thingKey, uidItem(1) + item(0x8001, hex("0041"))));
        set->value(next, StrongReference(uid(1)));
        set->removeElement(title);
        load(*each, klv(thingKey, uidItem(2)));
        each->removeMetadataSet(uid(2));
    }
    committable->commit();
    EXPECT_TRUE(sameBytes(written(*metadata, true, SerializationOrder::AsLoaded),
                          written(*plain, true, SerializationOrder::AsLoaded)));
}

} // namespace MXF::Zelm::Test
