// Takes the streams of an AVI file, a program stream or a transport stream out of it, each into a file; and
// turns PCM into SMPTE 302M packets or SMPTE 331M elements, and back.
#include <MXF/Zelm/DataIO/File/FileDataSink.h>
#include <MXF/Zelm/DataIO/File/FileDataSource.h>
#include <MXF/Zelm/DataIO/File/FileSliceSource.h>
#include <MXF/Zelm/Essence/AES3/S302M/Source.h>
#include <MXF/Zelm/Essence/AVI/Reader.h>
#include <MXF/Zelm/Essence/Converters/FrameSources.h>
#include <MXF/Zelm/Essence/MPEG/Demultiplexer.h>

#include <cstdlib>
#include <iostream>
#include <string>
#include <vector>

namespace {

using namespace MXF::Zelm;
using Source = Templates::SharedPtr<DataIO::SliceSource>;

constexpr const char* usage =
    R"(usage: example-unwrap avi|ps|ts FILE PREFIX           writes PREFIX0, PREFIX1 ...
       example-unwrap to302m|to331m IN OUT CHANNELS BITS RATE     RATE such as 25/1
       example-unwrap from302m IN OUT
       example-unwrap from331m IN OUT CHANNELS BITS
)";

void write(DataIO::SliceSource& source, std::string const& name) {
    DataIO::File::FileDataSink sink(name, DataIO::File::FileDataSink::Mode::Replace);
    DataIO::Chain piece;
    for (; source.read(1 << 20, piece) != 0; piece.clear())
        sink.write(piece);
    sink.close();
}

void unwrap(Essence::MPEG::Demultiplexer& demultiplexer, std::string const& prefix) {
    std::vector<Templates::SharedPtr<Essence::MPEG::ElementaryStream>> streams;
    std::vector<std::unique_ptr<DataIO::File::FileDataSink>> sinks;
    for (std::size_t i = 0; i < demultiplexer.streams().size(); ++i) {
        streams.push_back(demultiplexer.take(i));
        sinks.push_back(std::make_unique<DataIO::File::FileDataSink>(
            prefix + std::to_string(i), DataIO::File::FileDataSink::Mode::Replace));
    }
    for (bool isMore = true; isMore;) {
        isMore = false;
        for (std::size_t i = 0; i < streams.size(); ++i)
            if (Essence::MPEG::PESPacket packet; streams[i]->nextPacket(packet)) {
                sinks[i]->write(packet.payload);
                isMore = true;
            }
    }
    for (auto const& fault : demultiplexer.faults())
        std::cerr << fault.offset << ": " << fault.message << "\n";
}

void unwrapAVI(std::string const& name, std::string const& prefix) {
    Essence::AVI::Reader const reader(std::make_shared<DataIO::File::FileDataSource>(name));
    for (std::size_t i = 0; i < reader.streams().size(); ++i)
        write(*reader.open(i), prefix + std::to_string(i));
    for (auto const& fault : reader.faults())
        std::cerr << fault.offset << ": " << fault.message << "\n";
}

Templates::Rational<int> rate(std::string const& text) {
    return {std::atoi(text.c_str()), std::atoi(text.c_str() + text.find('/') + 1)};
}

unsigned number(std::string const& text) { return static_cast<unsigned>(std::stoul(text)); }

Source converted(std::vector<std::string> const& arguments) {
    auto const source = std::make_shared<DataIO::File::FileSliceSource>(arguments[1]);
    auto const& kind = arguments[0];
    if (kind == "from302m")
        return std::make_shared<Essence::AES3::S302M::Source>(
            source, Essence::AES3::S302M::Source::TwentyBits::In24Bits);
    if (arguments.size() < 5)
        return nullptr;
    unsigned const channels = number(arguments[3]), bits = number(arguments[4]);
    if (kind == "from331m")
        return std::make_shared<Essence::Converters::S331MToPCM>(source, Essence::PCMFormat{channels, bits});
    if (arguments.size() < 6)
        return nullptr;
    if (kind == "to302m")
        return std::make_shared<Essence::Converters::PCMToS302M>(
            source, Essence::AES3::S302M::PacketWriter({channels, bits, {48000, 1}}, rate(arguments[5])));
    if (kind == "to331m")
        return std::make_shared<Essence::Converters::PCMToS331M>(
            source, Essence::AES3::EightChannelWriter({channels, bits}, rate(arguments[5])));
    return nullptr;
}

bool run(std::vector<std::string> const& arguments) {
    if (arguments.size() < 3)
        return false;
    if (arguments[0] == "avi") {
        unwrapAVI(arguments[1], arguments[2]);
        return true;
    }
    if (arguments[0] == "ps" || arguments[0] == "ts") {
        auto const source = std::make_shared<DataIO::File::FileSliceSource>(arguments[1]);
        if (arguments[0] == "ps")
            unwrap(*std::make_unique<Essence::MPEG::ProgramStreamDemultiplexer>(source), arguments[2]);
        else
            unwrap(*std::make_unique<Essence::MPEG::TransportStreamDemultiplexer>(source), arguments[2]);
        return true;
    }
    auto const source = converted(arguments);
    if (source)
        write(*source, arguments[2]);
    return source != nullptr;
}

} // namespace

int main(int count, char** arguments) {
    try {
        if (run({arguments + 1, arguments + count}))
            return 0;
        std::cerr << usage;
        return 2;
    } catch (std::exception const& failure) {
        std::cerr << failure.what() << "\n";
        return 1;
    }
}
