#include "MXF/Zelm/Templates/SafeCast.h"

#include "support/Bytes.h"

#include <cerrno>
#include <system_error>

namespace MXF::Zelm::Test {

using namespace Exceptions;

TEST(Exceptions, SayWhereTheyWereThrown) {
    struct {
        const char* file;
        const char* expected;
    } const rows[] = {
        {"/home/me/zelm/src/MXF/Zelm/KLV/Reader.cpp", "src/MXF/Zelm/KLV/Reader"},
        {"C:\\work\\src\\MXF\\Zelm\\KLV\\Reader.cpp", "src\\MXF\\Zelm\\KLV\\Reader"},
        {"../include/MXF/Zelm/Templates/SafeCast.h", "include/MXF/Zelm/Templates/SafeCast"},
        {"/usr/src/MXFZelm-1.0/include/MXF/Zelm/KLV/Key.h", "include/MXF/Zelm/KLV/Key"},
        {"/usr/include/MXF/src/MXF/Zelm/KLV/Key.cpp", "src/MXF/Zelm/KLV/Key"},
        {"main.cpp", "main"},
        {"some.folder/noextension", "some.folder/noextension"},
    };
    for (auto const& row : rows)
        EXPECT_EQ(BaseException("m", SourceLocation{row.file, 7}).sourceFile(), row.expected);

    BaseException const here("m");
    unsigned const line = __LINE__ - 1;
    EXPECT_EQ(here.sourceLine(), line);
    EXPECT_TRUE(here.sourceFile().ends_with("tests/Ground/ExceptionsTest")) << here.sourceFile();
}

TEST(Exceptions, CarryMessageConditionAndTheNearestOffset) {
    BaseException failure(Condition{"a == b"}, "not alike");
    EXPECT_STREQ(failure.what(), "not alike");
    EXPECT_EQ(failure.condition(), "a == b");
    EXPECT_EQ(BaseException("m").condition(), "");
    EXPECT_FALSE(failure.offset());
    BaseException const copy = failure; // copies share one state
    failure.offset(0x10);
    failure.offset(0x20);
    EXPECT_EQ(copy.offset(), 0x10u);
    EXPECT_EQ(at(5, InvalidKey("k")).offset(), 5u);
    EXPECT_EQ(BaseException(u"\u00E9\U0001F600").message(), "\xC3\xA9\xF0\x9F\x98\x80");
    EXPECT_EQ(BaseException("\xC3\xA9").wideMessage(), u"\u00E9");
    EXPECT_EQ(InvalidLength("short", {1, 2}).bytes(), (std::vector<unsigned char>{1, 2}));
    EXPECT_TRUE(InvalidLength("short").bytes().empty());
}

TEST(Exceptions, OfTheSystemEndInItsOwnText) {
    SystemError const failure("a.mxf", "cannot open", ENOENT);
    EXPECT_EQ(failure.code(), ENOENT);
    EXPECT_EQ(failure.message(), "a.mxf: cannot open: " + std::system_category().message(ENOENT));
}

TEST(SafeCast, RefusesWhatDoesNotFit) {
    using Templates::safeCast;
    EXPECT_EQ(safeCast<std::uint32_t>(std::uint64_t{0xFFFFFFFF}), 0xFFFFFFFFu);
    EXPECT_EQ(safeCast<std::int8_t>(-128), -128);
    EXPECT_EQ(thrownBy([] { safeCast<std::int8_t>(128); }), "Type size exceeded");
    EXPECT_EQ(thrownBy([] { safeCast<std::uint32_t>(-1); }), "Type size exceeded");
    try {
        safeCast<std::uint32_t>(std::uint64_t{1} << 32);
        ADD_FAILURE();
    } catch (BaseException const& failure) {
        EXPECT_EQ(failure.message(), "Type size exceeded");
        EXPECT_EQ(failure.sourceFile(), "include\\MXF/Zelm/Templates/SafeCast");
        EXPECT_EQ(failure.sourceLine(), 26u);
    }
}

} // namespace MXF::Zelm::Test
