/// Wraps an MPEG-2 video stream and a Wave file in an MXF file, a mono track for each channel.
///
///     example-wrap CLIP.m2v SOUND.wav OUT.mxf
#include <MXF/Zelm/DataIO/File/FileDataSink.h>
#include <MXF/Zelm/DataIO/File/FileSliceSource.h>
#include <MXF/Zelm/Essence/Wave/WaveReader.h>
#include <MXF/Zelm/Exceptions/Exceptions.h>
#include <MXF/Zelm/GenericContainer/Analyzers/MPEG2VideoAnalyzer.h>
#include <MXF/Zelm/GenericContainer/Analyzers/PCMAnalyzer.h>
#include <MXF/Zelm/Metadata/Structural/Initialize.h>
#include <MXF/Zelm/OPBuilders/GenericOPBuilder.h>
#include <MXF/ZelmDictionary/Dictionary.h>

#include <iostream>

using namespace MXF::Zelm;

std::shared_ptr<DataIO::File::FileSliceSource> open(const char* name) {
    return std::make_shared<DataIO::File::FileSliceSource>(std::string_view(name));
}

int main(int count, char** arguments) try {
    if (count != 4)
        return 2;
    Metadata::Structural::initialize();
    auto const picture = std::make_shared<GenericContainer::MPEG2VideoAnalyzer>(open(arguments[1]));
    if (!picture->preload()) {
        std::cerr << arguments[1] << ": is no MPEG-2 video\n";
        return 3;
    }
    Essence::Wave::WaveReader wave(open(arguments[2]));
    OPBuilders::FrameWrapping wrapping{.packageRate = picture->editRate(), .analyzers = {picture}};
    for (auto const& sound : GenericContainer::makePCMAnalyzers(wave, 1, {}))
        wrapping.analyzers.push_back(sound);

    OPBuilders::GenericOPBuilder builder(
        MXF::ZelmDictionary::standard(),
        {.product = {u"Example Company", u"example-wrap", u"1.0", Types::UUID::generate()},
         .materialName = u"Example",
         .startTimecode =
             Utils::TimeCode(Utils::TimeBase::ofEditRate(picture->editRate(), false), {.hours = 10})});
    builder.addFrameWrapped(wrapping);
    DataIO::File::FileDataSink sink{std::string_view(arguments[3])};
    auto const creator = builder.creator(sink);
    creator->run();
    sink.close();
    std::cout << creator->progress().packages(0) << " edit units\n";
} catch (Exceptions::BaseException const& fault) {
    std::cerr << fault.message() << "\n";
    return 1;
}
