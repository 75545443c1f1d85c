/// What the updater writes: in place, and into a new file.
#include "MXFIO/EditableFile.h"

#include "MXF/Zelm/DataIO/File/FileDataSource.h"
#include "MXF/Zelm/Types/Strings.h"

namespace MXF::Zelm::Test {

using namespace MXFIO;
using Role = PartitionUpdate::Role;

namespace {

/// The bytes in which two files of one size differ are all inside of `ranges`.
bool differsOnlyIn(std::vector<ByteRange> const& ranges, Bytes a, Bytes b) {
    for (auto const& range : ranges)
        for (auto* const bytes : {&a, &b})
            std::fill_n(bytes->begin() + static_cast<std::ptrdiff_t>(range.offset), range.length, 0);
    return a == b;
}

std::vector<Role> rolesOf(UpdatePlan const& plan) {
    std::vector<Role> roles;
    for (auto const& partition : plan.partitions)
        roles.push_back(partition.role);
    return roles;
}

/// Holds the offsets in packs and random index pack against where the partitions stand.
void expectSoundOffsets(std::string const& name, std::uint64_t runIn) {
    DataIO::File::FileDataSource source(name);
    Reader2 reader(source, editingDictionary(), 65536);
    auto const footer = reader.footerPartition()->partitionAbsoluteOffset() - runIn;
    ASSERT_TRUE(reader.loadRIP());
    std::uint64_t before = 0;
    std::size_t count = 0;
    for (auto* at = reader.headerPartition(); at != nullptr; at = reader.nextPartition(at), ++count) {
        auto const& pack = at->partitionPack();
        EXPECT_EQ(pack.thisPartition(), at->partitionAbsoluteOffset() - runIn);
        EXPECT_EQ(pack.previousPartition(), before);
        EXPECT_EQ(pack.footerPartition(), footer);
        auto const entry = reader.rip()->offsetIndexedMap().find(pack.thisPartition());
        ASSERT_NE(entry, reader.rip()->offsetIndexedMap().end());
        EXPECT_EQ(entry->second, pack.bodySID());
        before = pack.thisPartition();
    }
    EXPECT_EQ(count, reader.rip()->size());
}

} // namespace

TEST(Updater, WritesInPlaceOnlyWhatDiffers) {
    EditableFile file;
    auto const updater = file.open();
    FileState const before(file.name);
    EXPECT_TRUE(updater->changes().empty());
    EXPECT_TRUE(updater->plan().ranges.empty());
    rename(*updater, 12);
    auto const report = updater->writeInPlace();

    Bytes const now = file.content();
    EXPECT_TRUE(differsOnlyIn(report.plan.ranges, now, file.original));
    EXPECT_EQ(rolesOf(report.plan),
              (std::vector{Role::Chosen, Role::NoMetadata, Role::NoMetadata, Role::Copy}));
    ASSERT_EQ(report.changes.size(), 1u);
    auto const& change = report.changes[0];
    EXPECT_EQ(change.kind, MetadataChange::Kind::PropertyChanged);
    EXPECT_EQ(change.setName + "." + change.propertyName + ": " + change.oldValue,
              "MaterialPackage.PackageName: old");
    EXPECT_EQ(change.newValue, std::string(12, 'n'));
    FileState const after(file.name);
    EXPECT_EQ(after.nameLengths, (std::vector<std::size_t>{12, 12}));
    EXPECT_EQ(after.essence, before.essence);
    EXPECT_GE(report.essenceBytesProven, after.essence.size());
    EXPECT_EQ(after.darkSets, before.darkSets);
    // The primer keeps its duplicate, the Preface its unknown item.
    for (auto const* const kept : {"3C0A 060E2B34 01010101 01011503 00000000", "8123 0001 AB"}) {
        auto const bytes = hex(kept);
        EXPECT_NE(std::search(now.begin(), now.end(), bytes.begin(), bytes.end()), now.end()) << kept;
    }
    EXPECT_NE(thrownBy<Exceptions::InvalidChange>([&] { updater->writeInPlace(); }), "");
}

TEST(Updater, FillsWhateverIsLeftOfTheRoom) {
    // From much room down to none and beyond: what is left is 0 to 16 bytes once, too few for a fill item.
    EditableFile file;
    bool fitted = true;
    for (std::size_t length = 118; length < 134; ++length) {
        file.reset();
        auto const updater = file.open();
        rename(*updater, length);
        auto const plan = updater->plan();
        EXPECT_TRUE(fitted || !plan.fitsInPlace) << length;
        fitted = plan.fitsInPlace;
        if (!fitted) {
            EXPECT_NE(plan.reason, "");
            continue;
        }
        updater->writeInPlace();
        FileState const after(file.name);
        EXPECT_EQ(after.nameLength, length);
        auto const again = file.open();
        for (auto const& fault : again->metadata().faults())
            ADD_FAILURE() << length << fault.message;
    }
    EXPECT_FALSE(fitted);
}

TEST(Updater, LeavesCopiesThatDoNotFitAndMetadataThatDiffers) {
    EditableFile file;
    auto updater = file.open();
    rename(*updater, 80);
    auto report = updater->writeInPlace();
    EXPECT_EQ(report.plan.partitions[3].role, Role::CopyLeft);
    EXPECT_NE(report.plan.partitions[3].remark, "");
    EXPECT_EQ(FileState(file.name).nameLengths, (std::vector<std::size_t>{80, 3}));

    updater = file.open(); // the footer differs by now
    rename(*updater, 4);
    report = updater->writeInPlace();
    EXPECT_EQ(report.plan.partitions[3].role, Role::Different);
    EXPECT_EQ(FileState(file.name).nameLengths, (std::vector<std::size_t>{4, 3}));

    // An open header is left alone when the footer is the one to be used.
    auto parts = editableParts();
    parts[0].status = PartitionPack::OpenIncomplete;
    parts[0].metadata = editableMetadata(300, 9);
    EditableFile const unfinished(editableFile(parts));
    updater = unfinished.open();
    rename(*updater, 20);
    EXPECT_EQ(rolesOf(updater->writeInPlace().plan),
              (std::vector{Role::Different, Role::NoMetadata, Role::NoMetadata, Role::Chosen}));
    EXPECT_EQ(FileState(unfinished.name).nameLengths, (std::vector<std::size_t>{3, 20}));
}

TEST(Updater, LaysANewFileOutAnew) {
    Bytes const tail = hex("DEADBEEF");
    for (bool const withTail : {false, true}) { // bytes that belong to nobody, behind the random index pack
        EditableFile file(withTail ? editableFile() + tail : editableFile());
        std::string const fresh = file.folder.file("new.mxf");
        FileState const before(file.name);
        auto const updater = file.open();
        rename(*updater, 5000);
        EXPECT_FALSE(updater->plan().fitsInPlace);
        auto const plan = updater->planNewFile();
        std::uint64_t last = 0, total = 0;
        NewFileOptions options;
        options.progress = [&](std::uint64_t done, std::uint64_t all) {
            EXPECT_GT(done, last);
            last = done;
            total = all;
            return true;
        };
        auto const report = updater->writeToFile(fresh, options);
        EXPECT_EQ(last, total);
        EXPECT_EQ(plan.newFileSize, readFile(fresh).size());
        EXPECT_GE(report.essenceBytesProven, before.essence.size());
        EXPECT_TRUE(sameBytes(file.content(), file.original));

        FileState const after(fresh);
        EXPECT_EQ(after.nameLengths, (std::vector<std::size_t>{5000, 5000}));
        EXPECT_EQ(after.essence, before.essence);
        EXPECT_EQ(after.darkSets, before.darkSets);
        EXPECT_EQ(after.grid, before.grid);
        Bytes const bytes = readFile(fresh);
        EXPECT_EQ(Bytes(bytes.begin(), bytes.begin() + 5), hex("0102030405"));
        if (withTail) {
            EXPECT_EQ(Bytes(bytes.end() - 4, bytes.end()), tail);
            writeFile(fresh, Bytes(bytes.begin(), bytes.end() - 4));
        }
        expectSoundOffsets(fresh, 5);

        Updater again(fresh, editingDictionary(), 65536);
        EXPECT_TRUE(again.metadata().faults().empty());
        rename(again, 6000); // within the reserve
        EXPECT_TRUE(again.plan().fitsInPlace);
    }
}

TEST(Updater, CopiesUnchangedFilesByteForByte) {
    EditableFile file;
    std::string const fresh = file.folder.file("new.mxf");
    auto const report = file.open()->writeToFile(fresh);
    EXPECT_TRUE(report.changes.empty());
    EXPECT_TRUE(sameBytes(readFile(fresh), file.original));
}

TEST(Updater, KeepsPacksInStepWithThePreface) {
    Types::UniversalLabel const pattern("060E2B34.04010101.0D010201.02010900"_key);
    EditableFile file;
    auto updater = file.open();
    updater->metadata().preface().value(operationalPattern, pattern);
    auto const report = updater->writeInPlace();
    for (auto const& partition : report.plan.partitions)
        EXPECT_TRUE(partition.packChanges);

    // One more essence container makes the packs longer.
    updater = file.open();
    Types::Batch containers(Types::Identifiers::UniversalLabel);
    containers.add(Types::UniversalLabel("060E2B34.04010101.0D010301.02010101"_key));
    updater->metadata().preface().value(essenceContainers, containers);
    EXPECT_FALSE(updater->plan().fitsInPlace);
    std::string const fresh = file.folder.file("new.mxf");
    FileState const before(file.name);
    updater->writeToFile(fresh);
    FileState const after(fresh);
    EXPECT_EQ(after.grid, before.grid);
    EXPECT_EQ(after.essence, before.essence);
    expectSoundOffsets(fresh, 5);
    DataIO::File::FileDataSource source(fresh);
    Reader2 reader(source, editingDictionary(), 65536);
    for (auto* at = reader.headerPartition(); at != nullptr; at = reader.nextPartition(at)) {
        EXPECT_EQ(at->partitionPack().operationalPattern(), pattern);
        EXPECT_EQ(at->partitionPack().essenceContainers(), containers);
    }
}

TEST(Updater, TellsOfSetsThatComeAndGo) {
    EditableFile file;
    auto const updater = file.open();
    auto& added = updater->metadata().createMetadataSet("060E2B34.02530101.0D010101.01013000"_key);
    updater->metadata().removeMetadataSet(uid(3));
    (*updater->metadata().darkBegin())->value(std::make_unique<Types::Unknown>(hex("0405")));
    auto const changes = updater->changes();
    ASSERT_EQ(changes.size(), 3u);
    EXPECT_EQ(changes[0].kind, MetadataChange::Kind::SetRemoved);
    EXPECT_EQ(changes[0].instanceUID, uid(3));
    EXPECT_EQ(changes[1].kind, MetadataChange::Kind::SetAdded);
    EXPECT_EQ(changes[1].instanceUID, *added.instanceUID());
    EXPECT_EQ(changes[2].kind, MetadataChange::Kind::DarkSetChanged);
    updater->writeInPlace();
    auto const again = file.open();
    EXPECT_EQ(again->metadata().find(uid(3)), nullptr);
    EXPECT_EQ(again->metadata().size(), 2u);
    EXPECT_EQ(written(**again->metadata().darkBegin()), klv(privateKey, hex("0405")));
}

TEST(Updater, RefusesWhatItWouldDamage) {
    // Bytes between the sets that belong to none of them.
    auto parts = editableParts();
    parts[0].metadata = parts[0].metadata + hex("00112233");
    EditableFile const unsound(editableFile(parts));
    EXPECT_NE(thrownBy<Exceptions::InvalidStructure>([&] { unsound.open(); }), "");

    // A length that cannot be decoded amid the body: other partitions may follow.
    parts = editableParts();
    parts[1].body = parts[1].body + hex("060E2B34 01020101 0D010301 15010501 FF");
    EditableFile const broken(editableFile(parts, {.footerOffset = false, .randomIndex = false}));
    auto const updater = broken.open();
    EXPECT_FALSE(updater->faults().empty());
    rename(*updater, 10);
    std::string const fresh = broken.folder.file("new.mxf");
    EXPECT_NE(thrownBy<Exceptions::InvalidStructure>([&] { updater->writeToFile(fresh); }), "");
    EXPECT_FALSE(std::filesystem::exists(fresh));
    updater->writeInPlace();
    EXPECT_EQ(broken.open()->metadata().find(thingKey).value<Types::UTF16String>(packageName)->value().size(),
              10u);

    // Somebody else was faster.
    EditableFile file;
    auto const slow = file.open(), fast = file.open();
    rename(*slow, 10);
    rename(*fast, 11);
    fast->writeInPlace();
    EXPECT_NE(thrownBy<Exceptions::InvalidChange>([&] { slow->writeInPlace(); }), "");
    EXPECT_EQ(FileState(file.name).nameLength, 11u);
}

TEST(Updater, SurvivesEveryFaultInAFile) {
    survivesEveryFault(editableFile({editableParts()[0], editableParts()[3]}), [](Bytes const& bytes) {
        static EditableFile const file;
        std::filesystem::remove(file.name); // a file that is cut and written again is flushed
        writeFile(file.name, bytes);
        auto const updater = file.open();
        updater->metadata().createMetadataSet(prefaceKey);
        updater->plan();
        updater->planNewFile();
    });
}

} // namespace MXF::Zelm::Test
