/// A multiplexer of made-up streams, and what it makes.
#pragma once

#include "MXF/Zelm/DataIO/Memory/MemoryViewDataSource.h"
#include "MXF/Zelm/GenericContainer/Multiplexer/Mux.h"
#include "MXF/Zelm/GenericContainer/Multiplexer/SystemItemGenerator.h"
#include "support/EssenceBody.h"
#include "support/FakeAnalyzer.h"

namespace MXF::Zelm::Test {

inline constexpr Templates::Rational<std::int64_t> atStart = {0, 1};

/// A multiplexer of made-up streams that describes nothing, unless it is given a package.
struct TestMux {
    explicit TestMux(Metadata::Structural::SourcePackage* package = nullptr,
                     Templates::Rational<int> const& rate = {25, 1})
        : mux(package, {}, rate) {}
    explicit TestMux(GenericContainer::Multiplexer::Mux::PartitionMetadataPtr metadata)
        : mux(std::move(metadata), {}, {25, 1}) {}

    template <class Analyzer>
    TestMux& add(FakeEssence const& essence, Templates::Rational<std::int64_t> const& offset = atStart,
                 bool isTimecodeSource = false) {
        mux.addAnalyzer(std::make_shared<Analyzer>(essence), isTimecodeSource, offset);
        return *this;
    }
    TestMux& system(Utils::TimeCode const& start = {Utils::TimeBase(25), 100}) {
        mux.addAnalyzer(std::make_shared<GenericContainer::Multiplexer::SystemItemGenerator>(
                            Templates::Rational<int>{25, 1}, start, KLV::Key()),
                        true, atStart);
        return *this;
    }

    GenericContainer::Multiplexer::Mux mux;
};

inline FakeEssence sound(std::vector<std::size_t> sizes, unsigned boundedSize = 0) {
    return {.sizes = std::move(sizes),
            .boundedSize = boundedSize,
            .itemType = 0x16,
            .elementType = 0x03,
            .tag = 0x55};
}

/// All packages that are left.
inline std::vector<Bytes> packagesOf(GenericContainer::Source& source) {
    std::vector<Bytes> all;
    DataIO::Chain chain;
    bool mayStart = false;
    GenericContainer::Source::FutureUpdaterPtr updater;
    Templates::Rational<std::int64_t> position;
    while (source.next(chain, mayStart, updater, position)) {
        EXPECT_EQ(updater, nullptr);
        EXPECT_EQ(position, Utils::framesToSeconds(std::ssize(all), source.packageRate()));
        all.push_back(joined(chain));
    }
    EXPECT_TRUE(chain.empty());
    return all;
}

inline std::vector<Bytes> packagesOf(TestMux& test) { return packagesOf(*test.mux.commit()); }

/// Sizes of the packets of a package, fill in brackets: "120 [392] 70".
inline std::string layoutOf(Bytes const& package) {
    DataIO::Memory::MemoryViewDataSource source(package.data(), package.size());
    KLV::Reader reader(source);
    std::string text;
    while (!source.endOfStream()) {
        std::uint64_t skipped = 0;
        std::uint64_t const start = source.absoluteOffset();
        auto const packet = reader.nextKLV(skipped, 0);
        packet->value().discard();
        auto const size = std::to_string(source.absoluteOffset() - start);
        text += (text.empty() ? "" : " ") + (KLV::isFillItem(packet->key()) ? "[" + size + "]" : size);
    }
    return text;
}

} // namespace MXF::Zelm::Test
