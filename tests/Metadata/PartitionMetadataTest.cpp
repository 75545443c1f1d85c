#include "MXF/Zelm/Platform/Text.h"
#include "MXF/Zelm/Types/Integers.h"
#include "MXF/Zelm/Types/References.h"
#include "MXF/Zelm/Types/Strings.h"
#include "MXF/Zelm/Types/Timestamp.h"
#include "support/SmallDictionary.h"

namespace MXF::Zelm::Test {

using namespace Metadata;
using Types::LocalTag;
using Types::StrongReference;
using Types::UniversalLabel;
using Types::UTF16String;

namespace {

/// Writes down what it is told, and throws at the call that begins with `refuse`.
class Recorder : public PartitionMetadataListener {
public:
    Recorder(std::string& log, std::string name) : log_(log), name_(std::move(name)) {}

    void metadataSetKey(KLV::Key& key) override {
        if (key == unknownKey)
            key = thingKey;
    }
    void createdMetadataSet(MetadataSet* set) override { note("created " + text(set->name())); }
    void removedMetadataSet(MetadataSet* set) override { note("removed " + text(set->name())); }
    void addedElement(MetadataSet&, MetaMetadata::MetaElement const*, Element& element,
                      Types::BaseType const& value) override {
        note("added " + text(element.name() + u"=" + value.toString()));
    }
    void updatedElement(MetadataSet&, MetaMetadata::MetaElement const*, Element& element,
                        Types::Collection const& oldValue, Types::Collection const& newValue) override {
        note("collection " + text(element.name() + u":" + oldValue.toString() + u">" + newValue.toString()));
    }
    void updatedElement(MetadataSet&, MetaMetadata::MetaElement const*, Element& element,
                        Types::SimpleDataType const& oldValue,
                        Types::SimpleDataType const& newValue) override {
        note("updated " + text(element.name() + u":" + oldValue.toString() + u">" + newValue.toString()));
    }
    void updatedElementCollection(MetadataSet&, MetaMetadata::MetaElement const*, Element& element,
                                  Types::Collection const& value, std::size_t index,
                                  Types::SimpleDataType const* oldMember,
                                  Types::SimpleDataType const* newMember) override {
        auto const member = [](auto const* one) { return one != nullptr ? text(one->toString()) : "-"; };
        note("member " + text(element.name() + value.toString()) + std::to_string(index) + ":" +
             member(oldMember) + ">" + member(newMember));
    }
    void removedElement(MetadataSet& set, MetaMetadata::MetaElement const*, Element& element,
                        Types::BaseType const&) override {
        if (onRemoved)
            onRemoved(set);
        note("dropped " + text(element.name()));
    }

    std::string refuse = "nothing";
    std::function<void(MetadataSet&)> onRemoved;

private:
    static std::string text(std::u16string const& wide) { return Platform::toUtf8(wide); }
    void note(std::string const& what) {
        log_ += name_ + " " + what + "\n";
        if (what.starts_with(refuse))
            throw Exceptions::InvalidChange("refused");
    }

    std::string& log_;
    std::string name_;
};

Types::Array arrayOf(std::int32_t a, std::int32_t b) {
    Types::Array array(Types::Identifiers::Int32);
    array.add(Types::Int32(a));
    array.add(Types::Int32(b));
    return array;
}

StrongReference to(MetadataSet const& set) { return StrongReference(*set.instanceUID()); }

std::string keysOf(Bytes const& bytes) {
    DataIO::Memory::MemoryDataSource source(bytes);
    KLV::Reader reader(source);
    std::string keys;
    while (!source.endOfStream()) {
        std::uint64_t skipped = 0;
        auto const packet = reader.nextKLV(skipped, 0);
        keys += packet->key() == Packs::PrimerPack::key() ? "primer "
                : packet->key() == prefaceKey             ? "preface "
                : packet->key() == storageKey             ? "storage "
                : packet->key() == thingKey               ? "thing "
                                                          : "dark ";
        packet->value().discard();
    }
    return keys;
}

} // namespace

TEST(PartitionMetadata, TellsItsListenersInTheOrderOfAttaching) {
    auto const metadata = emptyMetadata();
    std::string log;
    auto const a = std::make_shared<Recorder>(log, "a");
    auto const b = std::make_shared<Recorder>(log, "b");
    MetadataSet& set = metadata->createMetadataSet(thingKey);
    metadata->addMetadataListener(a, true);
    metadata->addMetadataListener(b, false);
    EXPECT_EQ(log, "a created Thing\n");
    log.clear();
    EXPECT_EQ(metadata->createMetadataSet(unknownKey).key(), thingKey) << "a listener changed the key";
    set.value(title, UTF16String(u"x"));
    set.value(title, UTF16String(u"y"));
    set.value(lines, arrayOf(1, 2));
    set.value(lines, arrayOf(3, 4));
    auto& array = dynamic_cast<ArrayElement&>(set.find(lines));
    array.add(Types::Int32(5));
    array.set(0, Types::Int32(6));
    array.remove(1);
    set.removeElement(title);
    metadata->removeMetadataListener(b);
    metadata->removeMetadataSet(*set.instanceUID());
    std::string expected;
    for (auto const* const what :
         {"created Thing", "added Title=x", "updated Title:x>y", "added Lines=[1][2]",
          "collection Lines:[1][2]>[3][4]", "member Lines[3][4][5]2:->5", "member Lines[6][4][5]0:3>6",
          "member Lines[6][5]1:4>-", "dropped Title"})
        expected += "a " + std::string(what) + "\nb " + what + "\n";
    EXPECT_EQ(log, expected + "a removed Thing\n");
    EXPECT_EQ(metadata->size(), 1u);
}

TEST(PartitionMetadata, UndoesAChangeThatAListenerRefuses) {
    auto const metadata = emptyMetadata();
    std::string log;
    auto const listener = std::make_shared<Recorder>(log, "a");
    MetadataSet& set = metadata->createMetadataSet(thingKey);
    set.value(title, UTF16String(u"x"));
    set.value(lines, arrayOf(1, 2));
    auto& array = dynamic_cast<ArrayElement&>(set.find(lines));
    metadata->addMetadataListener(listener, false);
    Bytes const before = written(*metadata, true, SerializationOrder::AsLoaded);
    auto const refusing = std::make_shared<Recorder>(log, "b");
    metadata->addMetadataListener(refusing, false);
    metadata->addMetadataListener(std::make_shared<Recorder>(log, "c"), false);
    std::string const own = Platform::toUtf8(set.instanceUID()->toString());
    std::string const other = Platform::toUtf8(uid(5).toString());
    struct {
        std::string told, opposite;
        std::function<void()> action;
    } const rows[] = {
        {"created Storage", "removed Storage", [&] { metadata->createMetadataSet(storageKey); }},
        {"created Thing", "removed Thing", [&] { load(*metadata, klv(thingKey, uidItem(1))); }},
        {"removed Thing", "created Thing", [&] { metadata->removeMetadataSet(*set.instanceUID()); }},
        {"added Next=" + other, "dropped Next", [&] { set.value(next, StrongReference(uid(5))); }},
        {"updated Title:x>y", "updated Title:y>x", [&] { set.value(title, UTF16String(u"y")); }},
        {"updated InstanceUID:" + own + ">" + other, "updated InstanceUID:" + other + ">" + own,
         [&] { set.value(instanceUID, uid(5)); }},
        {"collection Lines:[1][2]>[3][4]", "collection Lines:[3][4]>[1][2]",
         [&] { set.value(lines, arrayOf(3, 4)); }},
        {"member Lines[1][2][5]2:->5", "member Lines[1][2]2:5>-", [&] { array.add(Types::Int32(5)); }},
        {"member Lines[5][2]0:1>5", "member Lines[1][2]0:5>1", [&] { array.set(0, Types::Int32(5)); }},
        {"dropped Title", "added Title=x", [&] { set.removeElement(title); }},
    };
    for (auto const& [told, opposite, action] : rows) {
        refusing->refuse = told;
        log.clear();
        EXPECT_EQ(thrownBy<Exceptions::InvalidChange>(action), "refused");
        EXPECT_EQ(log, "a " + told + "\nb " + told + "\na " + opposite + "\n");
        EXPECT_FALSE(metadata->isUndoing());
        EXPECT_TRUE(sameBytes(written(*metadata, true, SerializationOrder::AsLoaded), before)) << told;
        EXPECT_EQ(metadata->size(), 1u);
        EXPECT_EQ(metadata->find(*set.instanceUID()), &set);
        EXPECT_EQ(metadata->find(uid(5)), nullptr);
    }
    EXPECT_THROW(set.removeElement(instanceUID), Exceptions::InvalidChange);
    listener->refuse = "updated Title:y"; // the undoing, which nobody can refuse
    refusing->refuse = "updated Title:x";
    EXPECT_EQ(thrownBy([&] { set.value(title, UTF16String(u"y")); }), "refused");
    EXPECT_EQ(set.value<UTF16String>(title)->value(), u"x");
}

TEST(PartitionMetadata, LetsNoListenerChangeTheVeryThingThatItIsToldOf) {
    auto const metadata = emptyMetadata();
    std::string log;
    MetadataSet& set = metadata->createMetadataSet(thingKey);
    set.value(title, UTF16String(u"x"));
    struct Meddling : Recorder {
        using Recorder::Recorder;
        void createdMetadataSet(MetadataSet* created) override { meddle(*created); }
        void removedMetadataSet(MetadataSet* removed) override { meddle(*removed); }
        void updatedElement(MetadataSet& changed, MetaMetadata::MetaElement const*, Element&,
                            Types::SimpleDataType const&, Types::SimpleDataType const&) override {
            meddle(changed);
        }
        std::function<void(MetadataSet&)> meddle;
    };
    auto const meddling = std::make_shared<Meddling>(log, "a");
    metadata->addMetadataListener(meddling, false);
    metadata->addMetadataListener(std::make_shared<Recorder>(log, "b"), false);
    auto const remove = [&](MetadataSet& told) { metadata->removeMetadataSet(*told.instanceUID()); };
    auto const change = [](MetadataSet& told) { told.value(title, UTF16String(u"z")); };
    auto const drop = [](MetadataSet& told) { told.removeElement(title); };
    struct {
        std::function<void()> action;
        std::function<void(MetadataSet&)> meddle;
    } const rows[] = {
        {[&] { set.value(title, UTF16String(u"y")); }, change},
        {[&] { set.value(title, UTF16String(u"y")); }, drop},
        {[&] { set.value(title, UTF16String(u"y")); }, remove},
        {[&] { metadata->createMetadataSet(thingKey); }, remove},
        {[&] { remove(set); }, remove},
        {[&] { remove(set); }, change},
        {[&] { remove(set); }, [](MetadataSet& told) { told.value(lines, arrayOf(1, 2)); }},
    };
    for (auto const& row : rows) {
        meddling->meddle = row.meddle;
        EXPECT_THROW(row.action(), Exceptions::InvalidChange);
        EXPECT_EQ(set.size(), 2u);
        EXPECT_EQ(set.value<UTF16String>(title)->value(), u"x");
        EXPECT_EQ(metadata->size(), 1u);
    }
    EXPECT_EQ(log, "") << "the other one hears of nothing";
    meddling->meddle = [](MetadataSet&) {};
    remove(set);
}

TEST(PartitionMetadata, AllowsListenersToChangeWhatTheyAreToldOf) {
    auto const metadata = emptyMetadata();
    std::string log;
    auto const stamping = std::make_shared<Recorder>(log, "a");
    MetadataSet& set = metadata->createMetadataSet(thingKey);
    set.value(title, UTF16String(u"x"));
    set.value(next, StrongReference(uid(9)));
    // The elements move while one of them is being removed.
    stamping->onRemoved = [](MetadataSet& changed) {
        changed.value(lines, arrayOf(1, 2));
        changed.value(friends, Types::Batch(Types::Identifiers::WeakReference));
    };
    metadata->addMetadataListener(stamping, false);
    EXPECT_TRUE(set.removeElement(title));
    EXPECT_EQ(set.findElement(title), nullptr);
    EXPECT_EQ(set.size(), 4u);

    // A listener that adds a set when it is told of one, and then another one refuses the first.
    struct Adding : Recorder {
        using Recorder::Recorder;
        void createdMetadataSet(MetadataSet* created) override {
            if (created->key() == storageKey)
                made = &metadata->createMetadataSet(thingKey);
        }
        PartitionMetadata* metadata = nullptr;
        MetadataSet* made = nullptr;
    };
    auto const adding = std::make_shared<Adding>(log, "b");
    adding->metadata = metadata.get();
    auto const refusing = std::make_shared<Recorder>(log, "c");
    refusing->refuse = "created Storage";
    metadata->addMetadataListener(adding, false);
    metadata->addMetadataListener(refusing, false);
    EXPECT_THROW(metadata->createMetadataSet(storageKey), Exceptions::InvalidChange);
    EXPECT_EQ(metadata->size(), 2u);
    EXPECT_EQ(keysOf(written(*metadata, true, SerializationOrder::AsLoaded)), "primer thing thing ");
    EXPECT_EQ(metadata->find(*adding->made->instanceUID()), adding->made);
}

TEST(PartitionMetadata, HoldsSetsThatWereMadeElsewhere) {
    auto const metadata = emptyMetadata();
    std::string log;
    metadata->addMetadataListener(std::make_shared<Recorder>(log, "a"), false);
    auto loose = std::make_unique<MetadataSet>(
        thingKey, metadata->partitionDictionary().dictionary()->find(thingKey), nullptr);
    EXPECT_TRUE(thrownBy([&] {
                    metadata->addMetadataSet(std::make_unique<MetadataSet>(
                        thingKey, metadata->partitionDictionary().dictionary()->find(thingKey), nullptr));
                }).starts_with("InstanceUID not found in Metadata Set with key "));
    loose->value(instanceUID, uid(1));
    MetadataSet& added = metadata->addMetadataSet(std::move(loose));
    added.value(title, UTF16String(u"x"));
    EXPECT_EQ(log, "a created Thing\na added Title=x\n");
    EXPECT_EQ(added.owner(), metadata.get());
    added.value(instanceUID, uid(2));
    EXPECT_EQ(metadata->find(uid(1)), nullptr);
    EXPECT_EQ(metadata->find(uid(2)), &added);
    load(*metadata, klv(thingKey, uidItem(3)));
    EXPECT_TRUE(thrownBy([&] { added.value(instanceUID, uid(3)); }).ends_with(", already defined!"));
    EXPECT_EQ(metadata->find(uid(2)), &added);
    EXPECT_EQ(*added.instanceUID(), uid(2));
    EXPECT_TRUE(metadata->removeMetadataSet(*added.instanceUID()));
    EXPECT_FALSE(metadata->removeMetadataSet(uid(2)));
}

TEST(PartitionMetadata, KeepsSetsItDoesNotUnderstandInTheirPlaces) {
    auto const metadata = emptyMetadata();
    Bytes const parts[] = {klv(unknownKey, hex("01 02 03"), 9),
                           klv(prefaceKey, uidItem(1)),
                           klv(byteTagsKey, hex("3C 01"), 1),
                           klv(thingKey, uidItem(1)), // the UID of the preface
                           klv(thingKey, hex("80")),
                           klv(thingKey, uidItem(2))};
    Bytes all;
    for (auto const& part : parts) {
        OnePacket in(part);
        metadata->loadOrKeepDark(*in);
        all = all + part;
    }
    EXPECT_EQ(metadata->size(), 2u);
    EXPECT_EQ(metadata->darkSize(), 4u);
    ASSERT_EQ(metadata->faults().size(), 3u);
    EXPECT_EQ(metadata->faults()[0].message,
              "Invalid Metadata Set local field length or length field length");
    EXPECT_EQ(metadata->faults()[1].offset, 0u);
    EXPECT_EQ(metadata->faults()[2].message,
              (*metadata->darkBegin())->reason().empty() ? (*std::prev(metadata->darkEnd()))->reason() : "");
    auto const& primer = metadata->partitionDictionary().primer();
    Bytes const out = written(*metadata, true, SerializationOrder::AsLoaded);
    EXPECT_TRUE(sameBytes(out, written(primer) + all));
    EXPECT_EQ(out.size(), metadata->serializedSize(true));
    EXPECT_EQ(keysOf(written(*metadata, true, SerializationOrder::ByKey)),
              "primer preface thing dark dark thing thing ")
        << "the dark ones last";
}

TEST(PartitionMetadata, WritesSetsInTheOrderOfTheirReferences) {
    auto const metadata = emptyMetadata();
    MetadataSet& lone = metadata->createMetadataSet(thingKey);
    MetadataSet& second = metadata->createMetadataSet(thingKey);
    MetadataSet& first = metadata->createMetadataSet(thingKey);
    MetadataSet& root = metadata->createMetadataSet(prefaceKey);
    MetadataSet& middle = metadata->createMetadataSet(storageKey);
    metadata->addDarkMetadataSet(std::make_unique<DarkMetadataSet>(*OnePacket(klv(unknownKey, {}))));
    root.value(storage, to(middle));
    Types::Batch batch(Types::Identifiers::StrongReference);
    batch.add(to(first));
    middle.value(packages, batch);
    first.value(next, to(second));
    using Sets = std::vector<MetadataSet const*>;
    struct {
        bool forward, unreferenced;
        Sets expected;
    } const rows[] = {
        {true, false, {&root, &middle, &first, &second}},
        {true, true, {&root, &middle, &first, &second, &lone}},
        {false, false, {&second, &first, &middle, &root}},
    };
    for (auto const& row : rows) {
        Sets sets;
        metadata->calculateSerializationOrder(sets, row.forward, row.unreferenced);
        EXPECT_EQ(sets, row.expected);
    }
    EXPECT_EQ(keysOf(written(*metadata, true, SerializationOrder::ForwardReferences)),
              "primer preface storage thing thing thing dark ");
    EXPECT_EQ(keysOf(written(*metadata, true, SerializationOrder::AsLoaded)),
              "primer thing thing thing preface storage dark ");
    EXPECT_EQ(keysOf(written(*metadata, true, SerializationOrder::ByKey)),
              "primer storage preface thing thing thing dark ");
    DataIO::Memory::MemoryDataSink sink;
    metadata->serializeForwardReferences(sink, true, false);
    EXPECT_EQ(keysOf(writtenTo(sink)), "preface storage thing thing ");

    Templates::vector<MetadataSet*> parents;
    EXPECT_EQ(metadata->parentSets(&second, parents), 1u);
    EXPECT_EQ(parents.front(), &first);
    EXPECT_EQ(metadata->parentSets(&lone, parents), 0u);
    EXPECT_EQ(metadata->packages(), (Templates::vector<MetadataSet*>{&first}));
    second.value(title, UTF16String(u"x"));
    EXPECT_EQ(metadata->find(title, UTF16String(u"x")), (Templates::vector<MetadataSet*>{&second}));
    EXPECT_EQ(metadata->find(next, StrongReference(*second.instanceUID())).size(), 1u);
    EXPECT_TRUE(metadata->find(title, UTF16String(u"y")).empty());
}

TEST(PartitionMetadata, FindsCircularReferencesAndBearsLongChains) {
    auto const metadata = emptyMetadata();
    constexpr std::uint32_t count = 100'000;
    auto const numbered = [](std::uint32_t i) {
        Bytes const bytes = repeated(12, 7) + number(i);
        return bytes;
    };
    for (std::uint32_t i = 0; i < count; ++i) {
        Bytes const target = numbered(i + 1);
        load(*metadata, klv(thingKey, item(0x3C0A, numbered(i)) + item(0x8003, target)));
    }
    Templates::vector<MetadataSet const*> sets;
    metadata->calculateSerializationOrder(sets, true, true);
    ASSERT_EQ(sets.size(), count);
    EXPECT_EQ(*sets.back()->instanceUID(), Types::UUID(numbered(count - 1).data()));
    MetadataSet* const last = metadata->find(Types::UUID(numbered(count - 1).data()));
    Templates::vector<MetadataSet*> parents;
    EXPECT_EQ(metadata->parentSets(last, parents), 1u);

    last->value(next, StrongReference(Types::UUID(numbered(0).data()))); // closes the circle
    std::string const message =
        "Circular reference for this instanceUID: urn:uuid:07070707-0707-0707-0707-0707";
    EXPECT_TRUE(
        thrownBy([&] { metadata->calculateSerializationOrder(sets, true, true); }).starts_with(message));
    EXPECT_TRUE(thrownBy([&] { metadata->parentSets(last, parents); }).starts_with(message));
    EXPECT_THROW(written(*metadata, true, SerializationOrder::ForwardReferences),
                 Exceptions::InvalidStructure);
    EXPECT_NO_THROW(written(*metadata, true, SerializationOrder::AsLoaded));

    auto const small = emptyMetadata();
    auto& self = small->createMetadataSet(thingKey);
    self.value(next, to(self));
    EXPECT_EQ(thrownBy([&] { small->parentSets(&self, parents); }),
              "Circular reference for this instanceUID: " + Platform::toUtf8(self.instanceUID()->toString()));
}

TEST(PartitionMetadata, WantsOnePrefaceWithPackages) {
    auto const metadata = emptyMetadata();
    EXPECT_EQ(thrownBy([&] { metadata->preface(); }), "Preface not found in PartitionMetadata");
    EXPECT_EQ(thrownBy([&] { metadata->find(prefaceKey); }), "Didn't find MetadataSet with specified key.");
    auto& root = metadata->createMetadataSet(prefaceKey);
    EXPECT_EQ(&metadata->preface(), &root);
    EXPECT_EQ(&metadata->find(prefaceKey), &root);
    EXPECT_EQ(thrownBy([&] { metadata->contentStorage(); }), "No ContentStorage");
    root.value(storage, StrongReference(uid(99)));
    EXPECT_EQ(thrownBy([&] { metadata->contentStorage(); }), "No ContentStorage") << "a dangling reference";
    root.value(storage, to(metadata->createMetadataSet(storageKey)));
    EXPECT_EQ(thrownBy([&] { metadata->packages(); }), "No ContentStorage packages");
    metadata->createMetadataSet(prefaceKey);
    EXPECT_EQ(thrownBy([&] { metadata->preface(); }), "More than one Preface found in PartitionMetadata");
    EXPECT_EQ(
        thrownBy([&] { metadata->createMetadataSet(unknownKey); }),
        "A MetaMetadataSet with Key urn:smpte:ul:060e2b34.02530101.0d010101.01017f00 was not found in the "
        "Dictionary.");
}

TEST(PartitionMetadata, AsksItsIndexListener) {
    struct Index : Listeners::MetadataIndexListener {
        Templates::vector<MetadataSet*> find(UniversalLabel const&,
                                             Types::SimpleDataType const&) const override {
            return sets;
        }
        void metadataSetKey(KLV::Key&) override {}
        void createdMetadataSet(MetadataSet* set) override { sets.push_back(set); }
        void removedMetadataSet(MetadataSet*) override {}
        void addedElement(MetadataSet&, MetaMetadata::MetaElement const*, Element&,
                          Types::BaseType const&) override {}
        void updatedElement(MetadataSet&, MetaMetadata::MetaElement const*, Element&,
                            Types::Collection const&, Types::Collection const&) override {}
        void updatedElement(MetadataSet&, MetaMetadata::MetaElement const*, Element&,
                            Types::SimpleDataType const&, Types::SimpleDataType const&) override {}
        void updatedElementCollection(MetadataSet&, MetaMetadata::MetaElement const*, Element&,
                                      Types::Collection const&, std::size_t, Types::SimpleDataType const*,
                                      Types::SimpleDataType const*) override {}
        void removedElement(MetadataSet&, MetaMetadata::MetaElement const*, Element&,
                            Types::BaseType const&) override {}
        Templates::vector<MetadataSet*> sets;
    };
    auto const metadata = emptyMetadata();
    metadata->createMetadataSet(thingKey);
    metadata->setMetadataIndexListener(std::make_shared<Index>());
    metadata->createMetadataSet(prefaceKey);
    EXPECT_EQ(metadata->find(title, UTF16String(u"x")).size(), 2u);
    metadata->setMetadataIndexListener(nullptr);
    EXPECT_TRUE(metadata->find(title, UTF16String(u"x")).empty());
}

TEST(PartitionDictionary, ResolvesTagsAndLabels) {
    auto const metadata = emptyMetadata();
    auto& dictionary = metadata->partitionDictionary();
    dictionary.primer().add(LocalTag(0x1901), unknownKey); // a static tag of another label
    dictionary.primer().add(LocalTag(0x3C0A), instanceUID);
    EXPECT_EQ(dictionary.find(LocalTag(0x8001), true), UniversalLabel(title));
    EXPECT_EQ(dictionary.find(LocalTag(0x3B03), false), UniversalLabel(storage));
    EXPECT_EQ(dictionary.find(UniversalLabel(storage)), LocalTag(0x3B03));
    struct {
        std::uint16_t tag;
        bool strict;
        const char* message;
    } const rows[] = {
        {0x0000, false, "Invalid Local Tag '00.00'"},
        {0x0000, true, "Invalid Local Tag '00.00'"},
        {0x3B03, true, "Could not resolve local tag 3B.03 to Universal Label using primer."},
        {0x9000, true, "Could not resolve local tag 90.00 to Universal Label using primer."},
        {0x9000, false,
         "Could not resolve local tag 90.00 to Universal Label using either primer and the dictionary."},
        {0x7FFF, false, "Dictionary does not contain static Local Tag 7F.FF"},
        {0x1901, false, "Primer redefines a static assigned tag!"},
        {0x1901, true, "Primer redefines a static assigned tag!"},
    };
    for (auto const& row : rows)
        EXPECT_EQ(thrownBy([&] { dictionary.find(LocalTag(row.tag), row.strict); }), row.message);
    EXPECT_EQ(thrownBy([&] { dictionary.find(UniversalLabel(prefaceKey)); }),
              "No LocalTag defined for this UniversalLabel");
    EXPECT_EQ(dictionary.findOrGenerate(storage), LocalTag(0x3B03));
    EXPECT_EQ(*dictionary.primer().find(LocalTag(0x3B03)), UniversalLabel(storage))
        << "the primer is complete";
    EXPECT_EQ(dictionary.findOrGenerate(packages), LocalTag(0xFFFF)) << "its static tag is taken";
    EXPECT_EQ(dictionary.findOrGenerate(packages), LocalTag(0xFFFF));
    EXPECT_THROW(PartitionDictionary(nullptr, std::make_unique<Packs::PrimerPack>()),
                 Exceptions::InvalidValue);
    EXPECT_THROW(PartitionMetadata(nullptr), Exceptions::InvalidValue);
}

TEST(PartitionDictionary, WritesUnderNoTagThatItWouldNotReadBack) {
    auto const metadata = emptyMetadata();
    auto& dictionary = metadata->partitionDictionary();
    dictionary.primer().remove(title);
    dictionary.primer().remove(next);
    dictionary.primer().add(LocalTag(0x1901), instanceUID); // redefine static tags
    dictionary.primer().add(LocalTag(0x3B03), title);
    dictionary.primer().add(LocalTag(0x0000), next);
    Bytes const set = klv(thingKey, uidItem(1) + item(0x3B03, hex("0041")));
    load(*metadata, set);
    Bytes const all = written(dictionary.primer()) + set;
    EXPECT_TRUE(sameBytes(written(*metadata, true, SerializationOrder::AsLoaded), all));
    EXPECT_EQ(dictionary.find(UniversalLabel(instanceUID)), LocalTag(0x3C0A));
    EXPECT_THROW(dictionary.find(UniversalLabel(title)), Exceptions::NotFoundInPrimer);
    for (auto const& label : {title, next}) {
        LocalTag const tag = dictionary.findOrGenerate(label);
        EXPECT_TRUE(tag.isDynamic());
        EXPECT_EQ(dictionary.find(tag, true), UniversalLabel(label));
    }
}

TEST(PartitionDictionary, RunsOutOfDynamicTags) {
    auto const metadata = emptyMetadata();
    auto& dictionary = metadata->partitionDictionary();
    UniversalLabel label(unknownKey);
    for (std::uint32_t i = 0; i < 0x8000 - 5; ++i) {
        label[10] = static_cast<unsigned char>(i >> 8);
        label[11] = static_cast<unsigned char>(i & 0xFF);
        ASSERT_TRUE(dictionary.findOrGenerate(label).isDynamic());
    }
    EXPECT_EQ(dictionary.primer().count(), 0x8000u);
    EXPECT_EQ(thrownBy([&] { dictionary.findOrGenerate(prefaceKey); }), "All LocalTags are used");
    EXPECT_EQ(dictionary.findOrGenerate(label), LocalTag(0x8000));
}

TEST(PartitionDictionary, GivesNoTagThatASetUsesWithoutThePrimer) {
    auto const metadata = emptyMetadata();
    auto* const set = load(*metadata, klv(thingKey, uidItem(1) + item(0xFFFF, hex("00"))));
    KLV::Key const key = "060E2B34.02530101.0D010101.01017E00"_key;
    auto const& dictionary = metadata->partitionDictionary().dictionary();
    auto const fresh = std::make_shared<MetaMetadata::MetaAttribute>(
        *dictionary->findMetaElement(stranger), MetaMetadata::AttributeRequiredStatus::Optional);
    MetaMetadata::MetaMetadataSet wider(key, *dictionary->find(thingKey));
    wider.addMetaAttribute(fresh);
    dictionary->add(key, wider);
    metadata->partitionDictionary().primer().remove(stranger);
    metadata->createMetadataSet(key).value(stranger, Types::UInt8(std::uint8_t{1}));
    metadata->generateLocalTags();
    EXPECT_EQ(metadata->partitionDictionary().find(UniversalLabel(stranger)), LocalTag(0xFFFE))
        << "the element that nobody knows would get a meaning";
    EXPECT_EQ(set->invalidSize(), 1u);
}

} // namespace MXF::Zelm::Test
