/// What an edit leaves behind when it is cut off at any step, and when the system refuses.
#include "MXFIO/EditableFile.h"
#include "MXFIO/FaultyOperations.h"

namespace MXF::Zelm::Test {

using namespace MXFIO;

namespace {

using Fault = FaultyOperations::Fault;

/// The bytes of the file after the same edit without a fault.
Bytes editedInPlace(EditableFile const& file) {
    auto const updater = file.open();
    rename(*updater, 12);
    updater->writeInPlace();
    Bytes const edited = file.content();
    file.reset();
    return edited;
}

/// Edits with a fault at a step; true when the step was reached.
bool editsInPlace(EditableFile const& file, Fault fault, std::size_t step) {
    FaultyOperations operations(fault, step);
    try {
        auto const updater = file.open(&operations);
        rename(*updater, 12);
        updater->writeInPlace();
    } catch (Killed const&) {
        // What is on the disk now stays.
    } catch (Exceptions::SystemError const&) {
        EXPECT_NE(fault, Fault::Kill);
    }
    return operations.failed();
}

/// Restores with a kill at a step; true when the step was reached.
bool restores(EditableFile const& file, std::size_t step) {
    FaultyOperations operations(Fault::Kill, step);
    try {
        UndoRecord(file.name, &operations).restore();
    } catch (Killed const&) {
        // The record is there still, or the file is restored.
    }
    return operations.failed();
}

std::vector<std::string> filesIn(TemporaryFolder const& folder) {
    std::vector<std::string> names;
    for (auto const& entry : std::filesystem::directory_iterator(folder.file("")))
        names.push_back(entry.path().filename().string());
    std::sort(names.begin(), names.end());
    return names;
}

} // namespace

TEST(UpdaterSafety, AnEditThatIsKilledCanBeUndone) {
    EditableFile const file;
    Bytes const edited = editedInPlace(file);
    std::size_t undone = 0;
    for (std::size_t step = 0; editsInPlace(file, Fault::Kill, step); ++step, file.reset()) {
        SCOPED_TRACE(step);
        if (!UndoRecord::exists(file.name)) {
            EXPECT_TRUE(file.content() == file.original || file.content() == edited);
            continue;
        }
        EXPECT_NE(thrownBy<Exceptions::InvalidChange>([&] { file.open(); }), "");
        UndoRecord record(file.name);
        EXPECT_TRUE(record.isComplete() || file.content() == file.original) << record.describe();
        undone += record.isComplete() && file.content() != file.original;
        record.restore();
        EXPECT_TRUE(sameBytes(file.content(), file.original));
        EXPECT_FALSE(UndoRecord::exists(file.name));
        EXPECT_TRUE(file.open()->changes().empty());
    }
    EXPECT_TRUE(sameBytes(file.content(), edited)); // the last round had no fault
    EXPECT_GT(undone, 2u);                          // or no kill fell into the writing
}

TEST(UpdaterSafety, ARestoreThatIsKilledCanBeRepeated) {
    EditableFile const file;
    editsInPlace(file, Fault::Kill, 8); // amid the writing
    std::string const record = UndoRecord::nameFor(file.name);
    Bytes const half = file.content(), recordBytes = readFile(record);
    ASSERT_NE(half, file.original);
    bool reached = true;
    for (std::size_t step = 0; reached; ++step) {
        writeFile(file.name, half);
        writeFile(record, recordBytes);
        reached = restores(file, step);
        if (UndoRecord::exists(file.name))
            UndoRecord(file.name).restore();
        EXPECT_TRUE(sameBytes(file.content(), file.original)) << step;
    }
}

TEST(UpdaterSafety, AnUndoRecordIsHeldAgainstItsFile) {
    EditableFile const file;
    editsInPlace(file, Fault::Kill, 8);
    std::string const name = UndoRecord::nameFor(file.name);
    Bytes const half = file.content(), whole = readFile(name);
    // Cut or damaged anywhere it is not complete: its own writing was cut off.
    for (std::size_t i = 0; i < whole.size(); i += 7) {
        writeFile(name, Bytes(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(i)));
        EXPECT_FALSE(UndoRecord(file.name).isComplete()) << i;
        Bytes damaged = whole;
        damaged[i] ^= 0x40;
        writeFile(name, damaged);
        EXPECT_FALSE(UndoRecord(file.name).isComplete()) << i;
    }
    UndoRecord(file.name).discard();
    EXPECT_TRUE(sameBytes(file.content(), half));
    // A file of another size is another file.
    writeFile(name, whole);
    writeFile(file.name, half + hex("00"));
    EXPECT_NE(thrownBy<Exceptions::InvalidStructure>([&] { UndoRecord(file.name).restore(); }), "");
    EXPECT_TRUE(UndoRecord::exists(file.name));
}

TEST(UpdaterSafety, ANewFileIsThereAsAWholeOrNotAtAll) {
    EditableFile const file;
    std::string const fresh = file.folder.file("new.mxf");
    Bytes const former = hex("0102");
    NewFileOptions replacing;
    replacing.existing = NewFileOptions::Existing::Replace;
    for (auto const fault : {Fault::Kill, Fault::FullOnce, Fault::Full}) {
        bool reached = true;
        for (std::size_t step = 0; reached; ++step) {
            SCOPED_TRACE(step);
            writeFile(fresh, former);
            FaultyOperations operations(fault, step);
            auto const updater = file.open(&operations);
            rename(*updater, 5000);
            try {
                updater->writeToFile(fresh, replacing);
            } catch (Killed const&) {
                EXPECT_TRUE(operations.failed());
            } catch (Exceptions::SystemError const&) {
                EXPECT_EQ(filesIn(file.folder), (std::vector<std::string>{"clip.mxf", "new.mxf"}));
            }
            reached = operations.failed();
            EXPECT_TRUE(file.content() == file.original);
            EXPECT_TRUE(readFile(fresh) == former ||
                        FileState(fresh).nameLengths == (std::vector<std::size_t>{5000, 5000}));
            for (auto const& name : filesIn(file.folder))
                if (name != "clip.mxf")
                    std::filesystem::remove(file.folder.file(name));
        }
    }
}

TEST(UpdaterSafety, AFullDiskLosesNothing) {
    EditableFile const file;
    Bytes const edited = editedInPlace(file);
    for (std::size_t step = 0; editsInPlace(file, Fault::FullOnce, step); ++step) {
        EXPECT_TRUE(sameBytes(file.content(), file.original)) << step;
        EXPECT_FALSE(UndoRecord::exists(file.name)) << step;
    }
    EXPECT_TRUE(sameBytes(file.content(), edited));
    file.reset();
    for (std::size_t step = 0; editsInPlace(file, Fault::Full, step); ++step) {
        EXPECT_EQ(UndoRecord::exists(file.name), step > 0); // the first write is that of the record
        if (UndoRecord::exists(file.name))
            UndoRecord(file.name).restore();
        EXPECT_TRUE(sameBytes(file.content(), file.original)) << step;
    }
}

TEST(UpdaterSafety, RefusesAFileThatIsBothInputAndOutput) {
    EditableFile const file;
    std::filesystem::path const path(file.name);
    std::filesystem::create_directory(path.parent_path() / "sub");
    std::filesystem::create_hard_link(path, path.parent_path() / "linked.mxf");
    std::error_code noLinks; // Windows wants a privilege for them
    std::filesystem::create_symlink(path, path.parent_path() / "sub" / "link.mxf", noLinks);
    NewFileOptions replacing;
    replacing.existing = NewFileOptions::Existing::Replace;
    auto const updater = file.open();
    rename(*updater, 12);
    for (auto const* const other :
         {"clip.mxf", "sub/../clip.mxf", noLinks ? "clip.mxf" : "sub/link.mxf", "linked.mxf"})
        EXPECT_NE(thrownBy<Exceptions::InvalidChange>(
                      [&] { updater->writeToFile(file.folder.file(other), replacing); }),
                  "")
            << other;
    EXPECT_TRUE(sameBytes(file.content(), file.original));
    // Nor is another file replaced unasked.
    std::string const existing = file.folder.file("existing.mxf");
    writeFile(existing, hex("01"));
    EXPECT_NE(thrownBy<Exceptions::InvalidChange>([&] { updater->writeToFile(existing); }), "");
    EXPECT_EQ(readFile(existing), hex("01"));
}

TEST(UpdaterSafety, LeavesAReadOnlyFileAlone) {
    EditableFile const file;
    using std::filesystem::perms;
    std::filesystem::permissions(file.name, perms::owner_read);
    auto const updater = file.open();
    rename(*updater, 12);
    try {
        DataIO::File::FileDataSink writable(file.name, DataIO::File::FileDataSink::Mode::Modify);
        GTEST_SKIP() << "this user may write in spite of the file's permissions";
    } catch (Exceptions::SystemError const&) {
        // As it should be.
    }
    EXPECT_NE(thrownBy<Exceptions::SystemError>([&] { updater->writeInPlace(); }), "");
    EXPECT_FALSE(UndoRecord::exists(file.name));
    EXPECT_TRUE(sameBytes(file.content(), file.original));
}

TEST(UpdaterSafety, ANewFileCanBeCalledOff) {
    EditableFile const file;
    auto const updater = file.open();
    NewFileOptions options;
    options.progress = [](std::uint64_t done, std::uint64_t total) { return done < total / 2; };
    EXPECT_NE(thrownBy<UpdateCancelled>([&] { updater->writeToFile(file.folder.file("new.mxf"), options); }),
              "");
    EXPECT_EQ(filesIn(file.folder), std::vector<std::string>{"clip.mxf"});
}

} // namespace MXF::Zelm::Test
