#include "WrapKinds.h"

#include "FileSequence.h"
#include "WrapAncillary.h"
#include "WrapCodedSound.h"
#include "WrapImages.h"
#include "WrapPictures.h"
#include "WrapRefusals.h"
#include "WrapSounds.h"
#include "WrapStreams.h"
#include "WrapTimedText.h"

#include <MXF/Zelm/DataIO/File/FileSliceSource.h>
#include <MXF/Zelm/Essence/Wave/WaveReader.h>
#include <MXF/Zelm/Exceptions/Exceptions.h>
#include <MXF/Zelm/GenericContainer/Analyzers/DataEssenceAnalyzer.h>
#include <MXF/Zelm/GenericContainer/ElementKey.h>
#include <MXF/Zelm/MXFIO/PassThroughAnalyzer.h>
#include <MXF/Zelm/Metadata/Structural/DescriptorKeys.h>
#include <MXF/Zelm/Metadata/Structural/GenericDescriptor.h>

#include "MetadataChoice.h"
#include "SourceLayout.h"

#include <algorithm>
#include <set>

namespace Zelm {

using namespace MXF::Zelm;
using namespace MXF::Zelm::KLV::Literals;
using DataIO::File::FileSliceSource;
using GenericContainer::Wrapping;
namespace DescriptorKeys = Metadata::Structural::DescriptorKeys;

namespace {

bool isWave(InputHead const& head, TrackMaking const&) {
    return Essence::Wave::WaveReader::isWave(head.bytes.data(), head.bytes.size());
}

bool isMxf(InputHead const& head, TrackMaking const&) {
    static constexpr unsigned char start[] = {0x06, 0x0E, 0x2B, 0x34, 0x02, 0x05, 0x01,
                                              0x01, 0x0D, 0x01, 0x02, 0x01, 0x01, 0x02};
    auto const* const end = head.bytes.data() + head.bytes.size();
    return std::search(head.bytes.data(), end, std::begin(start), std::end(start)) != end;
}

/// Of the first stored edit unit, which stands before the zero point where there is an origin.
Utils::TimeCode timecodeOf(MXFIO::EssenceContainer const& container, MXFIO::EssenceTrack const& track) {
    constexpr std::int64_t mostBefore = 1 << 20; // edit units
    bool const isTold = track.editRate.numerator > 0 && track.editRate.denominator > 0;
    return isTold && track.origin >= 0 && track.origin <= mostBefore
               ? container.timecode.at(Utils::framesToSeconds(-track.origin, track.editRate))
               : Utils::TimeCode();
}

/// A file whose essence is passed on.
struct MxfInput {
    MxfInput(std::string const& name, SharedDictionary const& dictionary)
        : input(name, dictionary),
          containers(MXFIO::essenceContainers(chooseFinal(input, false).partition->metadata())) {}

    Input input;
    Templates::vector<MXFIO::EssenceContainer> containers;
};

char kindOf(MXFIO::PassThroughAnalyzer const& analyzer) {
    switch (analyzer.essenceAnalyzerType()) {
    case GenericContainer::EssenceAnalyzer::PictureAnalyzer:
    case GenericContainer::EssenceAnalyzer::CompoundAnalyzer:
        return 'v';
    case GenericContainer::EssenceAnalyzer::SoundAnalyzer:
        return 'a';
    default:
        return 'd';
    }
}

/// Clips of samples alone can be parted into edit units.
bool isOfSamples(MXFIO::EssenceContainer const& container) {
    return std::all_of(container.tracks.begin(), container.tracks.end(), [](auto const& track) {
        return track.samples.bytes != 0 && track.samples.rate.isKnown();
    });
}

/// The fonts and pictures of timed text, which its descriptor names.
std::vector<MXFIO::GenericStream> resourcesOf(Input& input, MXFIO::EssenceTrack const& track) {
    std::vector<MXFIO::GenericStream> found;
    if (track.descriptor == nullptr || track.descriptor->key() != DescriptorKeys::dcTimedTextDescriptor)
        return found;
    std::set<std::uint32_t> named;
    for (auto const* const set : track.descriptor->subDescriptors())
        if (auto const* const stream = set->value<Types::UInt32>(u"EssenceStreamID"))
            named.insert(stream->value());
    for (auto& stream : genericStreamsOf(input))
        if (named.count(stream.sid) != 0)
            found.push_back(std::move(stream));
    return found;
}

void addResources(InputHead const& head, std::vector<MXFIO::GenericStream> resources, TrackMaking& making,
                  WrapTrack& track) {
    if (resources.empty())
        return;
    if (making.hasResources || !making.options.resources.empty())
        throw CannotWrap(head.name +
                         ": its timed text has resources, which cannot be beside those of another");
    making.hasResources = true;
    track.streams = std::move(resources);
}

void addContainer(std::shared_ptr<MxfInput> const& file, MXFIO::EssenceContainer const& container,
                  InputHead const& head, TrackMaking& making, std::vector<WrapTrack>& tracks) {
    MXFIO::PassThroughOptions options;
    options.wrapping = making.layout.wrapping().value_or(Wrapping::Unknown);
    if (!making.layout.wrapping() && container.wrapping() == Wrapping::Clip && !making.wantsOwnSources() &&
        isOfSamples(container))
        options.wrapping = Wrapping::Frame;
    options.editRate = making.layout.rate().value_or(EditRate{});
    std::shared_ptr<MXFIO::PassThroughReader> reader;
    for (auto const& track : container.tracks) {
        if (!reader || making.wantsOwnSources()) {
            reader = std::make_shared<MXFIO::PassThroughReader>(file->input.reader, container, options);
            ++making.sources;
        }
        auto const analyzer = std::make_shared<MXFIO::PassThroughAnalyzer>(reader, track.trackNumber);
        addTrack(tracks, kindOf(*analyzer), head, "as in the file", analyzer, making.sources - 1, file);
        tracks.back().timecode = timecodeOf(container, track);
        tracks.back().wrapping =
            options.wrapping != Wrapping::Unknown ? options.wrapping : reader->wrapping();
        addResources(head, resourcesOf(file->input, track), making, tracks.back());
    }
}

void addMxf(InputHead const& head, TrackMaking& making, std::vector<WrapTrack>& tracks) {
    if (!head.isFile())
        throw CannotWrap(head.name + ": an MXF file inside of another file cannot be read");
    auto const file = std::make_shared<MxfInput>(head.name, making.dictionary);
    std::size_t const before = tracks.size();
    try {
        for (auto const& container : file->containers)
            addContainer(file, container, head, making, tracks);
    } catch (Exceptions::InvalidStructure const& refusal) {
        throw CannotWrap(head.name + ": " + refusal.message());
    }
    if (tracks.size() == before)
        throw CannotWrap(head.name + ": has no essence");
}

bool isSamples(InputHead const& head, TrackMaking const&) { return head.pcm.channels != 0; }

/// Auxiliary data (SMPTE 429-14), frame by frame: the mapping for data of any kind.
constexpr auto auxiliaryData = "060E2B34.0401010D.0D010301.02130201"_key;
constexpr unsigned char auxiliaryDataElement = 0x0D;

/// All data files together are one track: each is an edit unit.
void addData(InputHead const& head, TrackMaking& making, std::vector<WrapTrack>& tracks) {
    if (!head.isFile() && head.sequence.empty())
        throw CannotWrap(head.name + ": is no file, so that it is no edit unit");
    auto const names = head.sequence.empty() ? std::vector<std::string>(1, head.name) : head.sequence;
    if (making.dataFiles) {
        making.dataFiles->insert(making.dataFiles->end(), names.begin(), names.end());
        return;
    }
    making.dataFiles = std::make_shared<std::vector<std::string>>(names);
    auto next = [files = making.dataFiles,
                 i = std::size_t{0}]() mutable -> Templates::SharedPtr<DataIO::SliceSource> {
        return i < files->size() ? std::make_shared<FileSliceSource>(std::string_view((*files)[i++]))
                                 : nullptr;
    };
    GenericContainer::DataEssenceOptions options;
    options.essenceContainer = auxiliaryData;
    options.elementType = auxiliaryDataElement;
    options.editRate = making.rate;
    addTrack(tracks, 'd', head, "data",
             std::make_shared<GenericContainer::DataEssenceAnalyzer>(next, options), making.sources++);
}

constexpr InputKind inputKinds[] = {
    {"mxf", "MXF file", isMxf, true, addMxf},
    {"wave", "Wave file", isWave, false, addWave},
    {"avi", "AVI file", isAvi, false, nullptr, aviStreams},
    {"ps", "MPEG program stream", isProgramStream, false, nullptr, programStreams},
    {"ts", "MPEG transport stream", isTransportStream, false, nullptr, transportStreams},
    {"mpeg-audio", "MPEG audio", isMpegAudio, false, addMpegAudio},
    {"ac3", "AC-3 sound", isAc3, false, addAc3},
    {"aac", "AAC sound (ADTS)", isAac, false, addAac},
    {"dv", "DV video", isDv, true, addDv},
    {"jpeg2000", "JPEG 2000", isJpeg2000, false, addJpeg2000},
    {"timed-text", "timed text", isTimedText, false, addTimedText},
    {"d10", "D-10 video", isD10, true, addD10},
    {"mpeg2", "MPEG-2 video", isVideo, true, addMpeg},
    {"avc", "AVC video", isAvc, true, addAvc},
    {"302m", "SMPTE 302M sound", isS302M, false, nullptr, s302mStreams},
    {s302mPackets, "packets of SMPTE 302M (--packets)", nullptr, false, addS302MPackets},
    {"ancillary", "packets of VBI and ANC (JSON)", isAncillary, true, addAncillary},
    {"samples", "samples (--pcm)", isSamples, false, addSamples},
    {"data", "data (--as data)", nullptr, false, addData},
};

InputKind const& kindNamed(InputHead const& head) {
    for (auto const& kind : inputKinds)
        if (head.as == kind.name)
            return kind;
    throw CannotWrap(head.name + ": no kind of input is named " + head.as);
}

std::uint64_t sizeOf(std::string const& file) {
    if (file == "-")
        throw CannotWrap("standard input cannot be wrapped: inputs are read more than once, from files");
    return FileSliceSource{std::string_view(file)}.size();
}

} // namespace

InputHead::InputHead(std::string const& file)
    : name(file),
      opening_([file](Blocks const& blocks) {
          return std::make_shared<FileSliceSource>(std::string_view(file), blocks);
      }),
      isFile_(true) {
    fileSize = sizeOf(file);
    readStart();
}

InputHead::InputHead(std::string streamName, Opening opening)
    : name(std::move(streamName)), opening_(std::move(opening)) {
    readStart();
}

InputHead InputHead::ofSequence(std::string const& pattern, std::optional<std::uint64_t> first) {
    auto const files = std::make_shared<FileSequence const>(pattern, first);
    InputHead head(pattern, [files](Blocks const& blocks) { return files->open(blocks); });
    head.sequence = files->names();
    head.fileSize = files->bytes();
    return head;
}

void InputHead::readStart() {
    DataIO::Chain chain;
    opening_(std::make_shared<DataIO::Memory::MemoryBlockFactory>())->read(size, chain);
    bytes = chain.contiguous();
}

InputKind const& kindOf(InputHead const& head, TrackMaking const& making) {
    if (!head.as.empty())
        return kindNamed(head);
    if (auto const* const refusal = refusalOf(head))
        throw CannotWrap(head.name + ": " + refusal);
    std::string known;
    for (auto const& kind : inputKinds) {
        if (kind.recognises && kind.recognises(head, making))
            return kind;
        known += (known.empty() ? "" : ", ") + std::string(kind.description);
    }
    if (auto const* const refusal = refusalOfUnknown(head))
        throw CannotWrap(head.name + ": " + refusal);
    throw CannotWrap(head.name + ": is none of the inputs that can be wrapped: " + known);
}

std::vector<std::string> inputKindNames() {
    std::vector<std::string> names;
    for (auto const& kind : inputKinds)
        names.emplace_back(kind.name);
    return names;
}

void addTrack(std::vector<WrapTrack>& tracks, char kind, InputHead const& head, const char* essence,
              GenericContainer::EssenceAnalyzerPtr analyzer, std::size_t source,
              std::shared_ptr<void> keeps) {
    WrapTrack track;
    track.kind = kind;
    track.input = head.name;
    track.essence = essence;
    track.tap = std::make_shared<TrackTap>(std::move(analyzer));
    track.source = source;
    track.damage = head.damage;
    track.keeps = std::move(keeps);
    tracks.push_back(std::move(track));
}

} // namespace Zelm
