/// Reads the essence of whole files: forwards, backwards, anywhere and from a pipe. What is read in one way
/// must be read in the others too.
#include "MXF/Zelm/MXFIO/EssenceReader.h"
#include "MXF/Zelm/MXFIO/SequentialReader.h"
#include "support.h"

using namespace MXF::Zelm;

namespace {

constexpr std::uint64_t searchLimit = 256;
constexpr std::int64_t mostUnits = 2000;

/// A source that cannot seek.
class Pipe : public DataIO::DataSource {
public:
    explicit Pipe(DataIO::DataSource& source) : source_(source) {}
    std::uint64_t absoluteOffset() const override { return source_.absoluteOffset(); }
    bool endOfStream() const override { return source_.endOfStream(); }
    std::uint64_t read(unsigned char* buffer, std::uint64_t size) override {
        return source_.read(buffer, size);
    }
    std::uint64_t skip(std::uint64_t size) override { return source_.skip(size); }

private:
    DataIO::DataSource& source_;
};

void useContainer(MXFIO::Reader2& reader, MXFIO::EssenceContainer const& container, std::uint64_t size) {
    MXFIO::EssenceReader essence(reader, container);
    MXFIO::EssenceUnit unit;
    while (essence.position() < mostUnits && essence.next(unit))
        for (auto const& element : unit.package.elements)
            Fuzz::require(element.valueOffset() <= size && element.length <= size - element.valueOffset() &&
                          element.data.size() == element.length);
    while (essence.previous(unit))
        essence.flags(unit.position);
    MXFIO::EssenceReader another(reader, container);
    another.read(3, unit);
    another.end();
    another.timecode(1);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size) {
    DataIO::Memory::MemoryViewDataSource source(data, size);
    MXFIO::Reader2 reader(source, Fuzz::dictionary(), searchLimit);
    Templates::vector<MXFIO::EssenceContainer> containers;
    Fuzz::passingOverBadInput([&] {
        if (auto* const partition = reader.firstPartitionWithFinalMetadata())
            containers = MXFIO::essenceContainers(partition->metadata());
    });
    containers.resize(containers.size() < 3 ? containers.size() : 3);
    containers.push_back({.bodySID = 1});
    for (auto const& container : containers)
        Fuzz::passingOverBadInput([&] { useContainer(reader, container, size); });
    Fuzz::passingOverBadInput([&] {
        DataIO::Memory::MemoryViewDataSource again(data, size);
        Pipe pipe(again);
        MXFIO::SequentialReader sequential(pipe, Fuzz::dictionary(), searchLimit);
        MXFIO::EssenceUnit unit;
        for (int i = 0; i < mostUnits && sequential.next(unit); ++i)
            continue;
    });
    return 0;
}
