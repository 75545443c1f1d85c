/// Memory hook, singletons, licence hook, text conversion, random bytes, BER lengths.
#include "MXF/Zelm/ByteCoders/BER.h"
#include "MXF/Zelm/ByteCoders/Hexadecimal.h"
#include "MXF/Zelm/Platform/Initializer.h"
#include "MXF/Zelm/Platform/Licenser.h"
#include "MXF/Zelm/Platform/MemoryManager.h"
#include "MXF/Zelm/Platform/Random.h"
#include "MXF/Zelm/Platform/Text.h"
#include "MXF/Zelm/Templates/Memory.h"
#include "MXF/Zelm/Templates/Rational.h"

#include "support/Bytes.h"

#include <cstdlib>
#include <map>
#include <new>

namespace MXF::Zelm::Test {

namespace {

/// Counts, checks the sizes that it is given back, and has nothing to give beyond `limit`.
class CountingManager : public Platform::MemoryManager {
public:
    void* allocate(std::size_t size) override {
        if (size > limit)
            return nullptr;
        void* const block = std::malloc(size);
        blocks[block] = size;
        ++allocations;
        return block;
    }
    void deallocate(void* block, std::size_t size) noexcept override {
        EXPECT_EQ(blocks[block], size);
        blocks.erase(block);
        std::free(block);
    }
    void* reallocate(void* block, std::size_t oldSize, std::size_t newSize) override {
        EXPECT_EQ(blocks[block], oldSize);
        if (newSize > limit)
            return nullptr;
        blocks.erase(block);
        void* const moved = std::realloc(block, newSize);
        blocks[moved] = newSize;
        return moved;
    }

    std::map<void*, std::size_t> blocks;
    std::size_t limit = 1u << 20;
    int allocations = 0;
};

} // namespace

TEST(MemoryManager, ServesTheLibrarysObjects) {
    using Platform::malloc_alloc;
    CountingManager manager;
    ASSERT_EQ(malloc_alloc::memoryManager(&manager), nullptr);
    {
        auto const* const source = new DataIO::Memory::MemoryDataSource(Bytes{1, 2, 3});
        EXPECT_EQ(manager.blocks.size(), 1u);
        DataIO::DataSource const* const base = source; // deleted through a base with the size of the whole
        delete base;
        delete[] new DataIO::Memory::MemoryDataSink[3];
    }
    void* block = malloc_alloc::allocate(0);
    block = malloc_alloc::reallocate(block, 0, 100);
    EXPECT_THROW(malloc_alloc::allocate(manager.limit + 1), std::bad_alloc);
    EXPECT_THROW(malloc_alloc::reallocate(block, 100, manager.limit + 1), std::bad_alloc);
    malloc_alloc::deallocate(block, 100);
    malloc_alloc::deallocate(nullptr, 5);
    EXPECT_TRUE(manager.blocks.empty());
    EXPECT_EQ(manager.allocations, 3);
    EXPECT_EQ(malloc_alloc::memoryManager(nullptr), &manager);

    alignas(DataIO::Memory::MemoryDataSink) unsigned char place[sizeof(DataIO::Memory::MemoryDataSink)];
    auto* const placed = new (place) DataIO::Memory::MemoryDataSink;
    EXPECT_EQ(static_cast<void*>(placed), static_cast<void*>(place));
    placed->~MemoryDataSink();
}

namespace {

struct Registered {
    explicit Registered(int number) : number_(number) {}
    ~Registered() { destroyed.push_back(number_); }
    static inline std::vector<int> destroyed;

private:
    int number_;
};
constinit Platform::Singleton<Registered> first, second;
Registered& makeFirst() {
    return first.get([] { return new Registered(1); }, [] { first.reset(); });
}
Registered& makeSecond() {
    return second.get(
        [] {
            makeFirst();
            return new Registered(2);
        },
        [] { second.reset(); });
}

} // namespace

TEST(Initializer, DestroysSingletonsLastFirstAndLetsThemBeMadeAnew) {
    EXPECT_EQ(&Initializer::instance(), &Initializer::instance());
    Registered* const made = &makeSecond();
    EXPECT_EQ(&makeSecond(), made);
    Initializer::shutdown();
    EXPECT_EQ(Registered::destroyed, (std::vector<int>{2, 1}));
    Initializer::shutdown();
    EXPECT_EQ(Registered::destroyed.size(), 2u);
    makeFirst();
    Initializer::shutdown();
    EXPECT_EQ(Registered::destroyed, (std::vector<int>{2, 1, 1}));
}

TEST(Licenser, AsksTheInstalledManager) {
    struct : Platform::LicenseManager {
        bool isLicensed(std::string_view feature) override { return feature == "granted"; }
    } manager;
    Platform::Licenser::check("anything");
    EXPECT_EQ(Platform::Licenser::licenseManager(&manager), nullptr);
    Platform::Licenser::check("granted");
    EXPECT_NE(
        thrownBy<Exceptions::InvalidLicense>([] { Platform::Licenser::check("refused"); }).find("refused"),
        std::string::npos);
    EXPECT_EQ(Platform::Licenser::licenseManager(nullptr), &manager);
    Platform::Licenser::check("refused");
}

TEST(Text, ConvertsAndReplacesWhatIsBroken) {
    struct {
        std::string utf8;
        std::u16string utf16;
    } const wellFormed[] = {
        {"", u""},
        {"a\x7F", u"a\u007F"},
        {"\xC2\x80\xDF\xBF", u"\u0080\u07FF"},
        {"\xE0\xA0\x80\xED\x9F\xBF\xEE\x80\x80\xEF\xBF\xBF", u"\u0800\uD7FF\uE000\uFFFF"},
        {"\xF0\x90\x80\x80\xF4\x8F\xBF\xBF", u"\U00010000\U0010FFFF"},
        {std::string("a\0b", 3), std::u16string(u"a\0b", 3)},
    };
    for (auto const& row : wellFormed) {
        EXPECT_EQ(Platform::toUtf16(row.utf8), row.utf16);
        EXPECT_EQ(Platform::toUtf8(row.utf16), row.utf8);
    }
    struct {
        std::string_view utf8;
        std::size_t replacements; // each byte is one, what is no U+FFFD is 'x'
    } const broken[] = {
        {"\x80x", 1},
        {"\xC0\x80x", 2},
        {"\xC1\xBFx", 2},
        {"\xE0\x9F\xBFx", 3},
        {"\xED\xA0\x80x", 3},
        {"\xF0\x8F\xBF\xBFx", 4},
        {"\xF4\x90\x80\x80x", 4},
        {"\xF5x", 1},
        {"\xFFx", 1},
        {"\xE2\x82x", 2},
        {"x\xC3", 1},
        {"x\xF0\x9F\x98", 3},
    };
    for (auto const& row : broken) {
        std::u16string text = Platform::toUtf16(row.utf8);
        EXPECT_EQ(text.size(), row.replacements + 1) << row.utf8;
        std::erase(text, u'\uFFFD');
        EXPECT_EQ(text, u"x");
    }
    for (std::u16string const& text :
         {std::u16string(1, char16_t{0xD800}), std::u16string(1, char16_t{0xDC00})}) {
        EXPECT_EQ(Platform::toUtf8(text), "\xEF\xBF\xBD");
        EXPECT_EQ(Platform::toUtf8(text + u"x"), "\xEF\xBF\xBDx");
    }
    EXPECT_EQ(Platform::toUtf8(std::u16string{0xDE00, 0xD83D}), "\xEF\xBF\xBD\xEF\xBF\xBD");
}

TEST(Random, FillsEveryByte) {
    Bytes seen(13, 0);
    for (int i = 0; i < 64; ++i) {
        Bytes bytes(13, 0);
        Platform::randomBytes(bytes.data(), bytes.size());
        for (std::size_t at = 0; at < bytes.size(); ++at)
            seen[at] = static_cast<unsigned char>(seen[at] | bytes[at]);
    }
    EXPECT_EQ(seen, Bytes(13, 0xFF)); // a bit of a good source stays 0 with probability 2^-64
}

TEST(Rational, ComparesByWorth) {
    using R = Templates::Rational<std::int64_t>;
    EXPECT_TRUE((R{25, 1} == R{50, 2}));
    EXPECT_FALSE((R{25, 1} == R{24, 1}));
    EXPECT_FALSE((R{0, 0} == R{5, 1}));
    EXPECT_TRUE((R{0, 0} == R{0, 0}));
    EXPECT_FALSE((R{INT64_MAX, 1} == R{INT64_MAX - 1, 1}));
    EXPECT_EQ((R{1, 0}.toDouble()), 0.0);
}

TEST(BER, CodesAndDecodesAllWidths) {
    using namespace ByteCoders;
    struct {
        std::uint64_t value;
        unsigned char size; // the smallest
    } const rows[] = {{0, 1},          {0x7F, 1},       {0x80, 2},       {0xFF, 2},       {0x100, 3},
                      {0xFFFF, 3},     {0x10000, 4},    {0xFFFFFF, 4},   {0x1000000, 5},  {0xFFFFFFFF, 5},
                      {1ull << 32, 6}, {1ull << 40, 7}, {1ull << 48, 8}, {1ull << 56, 9}, {~0ull, 9}};
    for (auto const& row : rows) {
        EXPECT_EQ(calculateBERSize(row.value), row.size);
        for (unsigned char size = row.size; size <= maximumBERSize; ++size) {
            Bytes field(size);
            codeBER(row.value, size, field.data());
            EXPECT_EQ(decodeBERSize(field[0]), size);
            EXPECT_EQ(decodeBER(field.data(), size), row.value);
        }
    }
    unsigned char field[9] = {};
    codeBER(0x8123, 1, field); // not checked: the low byte
    EXPECT_EQ(field[0], 0x23);
    codeBER(0x123456, 3, field); // the low bytes
    EXPECT_TRUE(sameBytes({field, field + 3}, hex("82 34 56")));
    EXPECT_EQ(thrownBy([&] { codeBER(1, 0, field); }), "Invalid BER size");
    EXPECT_EQ(thrownBy([&] { codeBER(1, 10, field); }), "Invalid BER size");
    EXPECT_EQ(thrownBy([] { decodeBERSize(0x80); }), "Invalid BER size: 0x80");
    EXPECT_EQ(thrownBy([] { decodeBERSize(0xFF); }), "Invalid BER size: 0xFF");
    EXPECT_EQ(decodeBERSize(0xFE), 0x7F);
}

TEST(Hexadecimal, HasNoLeadingZeros) {
    EXPECT_EQ(ByteCoders::toHexadecimal(0), "0");
    EXPECT_EQ(ByteCoders::toHexadecimal(0xABC0), "ABC0");
    EXPECT_EQ(ByteCoders::toHexadecimal(~0ull), "FFFFFFFFFFFFFFFF");
}

} // namespace MXF::Zelm::Test
