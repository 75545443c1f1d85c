/// Reads the essence of an MXF file, or of one that comes through standard input, and says what it read.
///
///     example-essence FILE              all of it: edit units and bytes of each track
///     example-essence FILE POSITION     one edit unit
///     example-essence FILE list         all elements: position, track number, offset and size of the value
///     example-essence FILE back         all of it, backwards
///     example-essence -                 all of it, from a pipe
#include <MXF/Zelm/DataIO/File/FileDataSource.h>
#include <MXF/Zelm/Exceptions/Exceptions.h>
#include <MXF/Zelm/MXFIO/EssenceReader.h>
#include <MXF/Zelm/MXFIO/SequentialReader.h>
#include <MXF/Zelm/Metadata/Structural/FurtherDescriptors.h>
#include <MXF/Zelm/Metadata/Structural/Initialize.h>
#include <MXF/ZelmDictionary/Dictionary.h>

#include <algorithm>
#include <cstdio>
#include <iostream>
#include <map>
#include <memory>
#include <string>

namespace {

using namespace MXF::Zelm;

/// Standard input.
class Pipe : public DataIO::DataSource {
public:
    std::uint64_t absoluteOffset() const override { return position_; }
    bool endOfStream() const override { return std::feof(stdin) != 0; }
    std::uint64_t read(unsigned char* buffer, std::uint64_t size) override {
        std::size_t const got = std::fread(buffer, 1, static_cast<std::size_t>(size), stdin);
        position_ += got;
        return got;
    }
    std::uint64_t skip(std::uint64_t size) override {
        unsigned char passed[65536];
        std::uint64_t done = 0;
        while (done < size) {
            auto const got = read(passed, std::min<std::uint64_t>(size - done, sizeof passed));
            if (got == 0)
                break;
            done += got;
        }
        return done;
    }

private:
    std::uint64_t position_ = 0;
};

/// Edit units and bytes of each track of each container.
class Tally {
public:
    void add(MXFIO::EssenceUnit const& unit) {
        for (auto const& element : unit.package.elements) {
            auto& [count, bytes] = tracks_[{unit.bodySID, element.trackNumber()}];
            ++count;
            bytes += element.data.size();
        }
    }
    void print() const {
        for (auto const& [track, sums] : tracks_)
            std::printf("%u %08x %llu %llu\n", track.first, track.second, sums.first, sums.second);
    }

private:
    std::map<std::pair<std::uint32_t, std::uint32_t>, std::pair<unsigned long long, unsigned long long>>
        tracks_;
};

void list(MXFIO::EssenceUnit const& unit) {
    for (auto const& element : unit.package.elements)
        std::printf("%lld %08x %llu %llu\n", static_cast<long long>(unit.position), element.trackNumber(),
                    static_cast<unsigned long long>(element.valueOffset()),
                    static_cast<unsigned long long>(element.data.size()));
}

void readPipe(std::shared_ptr<MetaMetadata::Dictionary> const& dictionary) {
    Pipe pipe;
    MXFIO::SequentialReader reader(pipe, dictionary);
    MXFIO::EssenceUnit unit;
    Tally tally;
    while (reader.next(unit))
        tally.add(unit);
    tally.print();
}

void readContainer(MXFIO::EssenceReader& reader, std::string const& what) {
    MXFIO::EssenceUnit unit;
    Tally tally;
    if (what == "back") {
        for (reader.seek(reader.end().value_or(0)); reader.previous(unit);)
            tally.add(unit);
    } else if (what.empty() || what == "list") {
        while (reader.next(unit))
            what.empty() ? tally.add(unit) : list(unit);
    } else if (reader.read(std::stoll(what), unit)) {
        list(unit);
    }
    tally.print();
}

} // namespace

int main(int count, char** arguments) try {
    std::string const name = count > 1 ? arguments[1] : "-";
    // Never destroyed: the system takes its memory back faster.
    static auto const& dictionary = *new auto(MXF::ZelmDictionary::standard());
    Metadata::Structural::initialize();
    Metadata::Structural::registerFurtherDescriptors(*dictionary);
    if (name == "-") {
        readPipe(dictionary);
        return 0;
    }
    DataIO::File::FileDataSource file{std::string_view(name)};
    MXFIO::Reader2 reader(file, dictionary, 65536);
    auto* const partition = reader.firstPartitionWithFinalMetadata();
    for (auto const& container : MXFIO::essenceContainers(partition->metadata())) {
        MXFIO::EssenceReader essence(reader, container);
        readContainer(essence, count > 2 ? arguments[2] : "");
    }
    return 0;
} catch (MXF::Zelm::Exceptions::BaseException const& fault) {
    std::cerr << fault.message() << "\n";
    return 1;
}
