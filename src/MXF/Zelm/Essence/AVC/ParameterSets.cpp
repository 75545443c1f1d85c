#include "MXF/Zelm/Essence/AVC/ParameterSets.h"

#include "MXF/Zelm/Essence/AVC/ExpGolomb.h"
#include "MXF/Zelm/Exceptions/Exceptions.h"

#include <algorithm>
#include <iterator>

namespace MXF::Zelm::Essence::AVC {

using DataIO::BitSliceReader;

namespace {

/// The standard's limits.
constexpr std::uint32_t mostSequenceSets = 32;
constexpr std::uint32_t mostPictureSets = 256;
constexpr std::uint32_t mostReferenceOffsets = 255;
constexpr std::uint32_t mostReferenceFrames = 16;
constexpr std::uint32_t mostReferences = 32;
constexpr std::uint32_t mostSliceGroups = 8;

/// Macroblocks in a row or column: more than level 6.2 has.
constexpr std::uint32_t mostMacroblocks = 2048;
constexpr std::uint32_t macroblock = 16;

/// More than a set has that keeps to the limits.
constexpr std::size_t longestSet = 8192;

constexpr std::uint32_t anyNumber = UINT32_MAX - 1;

/// Profiles whose sets tell of chroma formats and bit depths.
constexpr std::uint8_t highProfiles[] = {44, 83, 86, 100, 110, 118, 122, 128, 134, 135, 138, 139, 244};

constexpr std::uint8_t intra444 = 44;
constexpr std::uint8_t profilesWithIntra[] = {110, 122, 244};
constexpr std::uint8_t thirdConstraint = 0x10;

/// By aspect_ratio_idc, from 1 on.
constexpr Templates::Rational<int> aspectRatios[] = {
    {1, 1},   {12, 11}, {10, 11}, {16, 11}, {40, 33},  {24, 11}, {20, 11}, {32, 11},
    {80, 33}, {18, 11}, {15, 11}, {64, 33}, {160, 99}, {4, 3},   {3, 2},   {2, 1}};
constexpr unsigned extendedAspectRatio = 255;

/// Macroblocks that decoders hold, by level (table A-1): up to that level, as many.
struct HeldMacroblocks {
    std::uint8_t level;
    std::uint32_t count;
};

constexpr HeldMacroblocks heldMacroblocks[] = {{10, 396},   {11, 900},    {20, 2376},   {21, 4752},
                                               {30, 8100},  {31, 18000},  {32, 20480},  {41, 32768},
                                               {42, 34816}, {50, 110400}, {52, 184320}, {255, 696320}};

template <std::size_t size>
bool isAmong(std::uint8_t value, std::uint8_t const (&values)[size]) {
    return std::find(std::begin(values), std::end(values), value) != std::end(values);
}

template <class Integer>
Integer number(BitSliceReader& bits, std::uint32_t most) {
    return static_cast<Integer>(readUnsigned(bits, most));
}

/// A scaling list ends where its next scale is 0.
void skipScalingList(BitSliceReader& bits, unsigned size) {
    int last = 8, next = 8;
    for (unsigned i = 0; i < size && next != 0; ++i) {
        next = static_cast<int>((last + std::int64_t{readSigned(bits)} + 256) % 256);
        last = next != 0 ? next : last;
    }
}

void readFormat(BitSliceReader& bits, SequenceParameterSet& set) {
    set.chromaFormat = number<std::uint8_t>(bits, 3);
    set.separateColourPlanes = set.chromaFormat == 3 && bits.readFlag();
    set.lumaBits = static_cast<std::uint8_t>(8 + readUnsigned(bits, 6));
    set.chromaBits = static_cast<std::uint8_t>(8 + readUnsigned(bits, 6));
    bits.skip(1); // transform bypass
    if (!bits.readFlag())
        return;
    unsigned const lists = set.chromaFormat == 3 ? 12 : 8;
    for (unsigned i = 0; i < lists; ++i)
        if (bits.readFlag())
            skipScalingList(bits, i < 6 ? 16 : 64);
}

void readOrder(BitSliceReader& bits, SequenceParameterSet& set) {
    set.frameNumberBits = static_cast<std::uint8_t>(4 + readUnsigned(bits, 12));
    set.orderCountType = number<std::uint8_t>(bits, 2);
    if (set.orderCountType == 0)
        set.orderCountBits = static_cast<std::uint8_t>(4 + readUnsigned(bits, 12));
    if (set.orderCountType != 1)
        return;
    set.deltaOrderAlwaysZero = bits.readFlag();
    set.offsetForNonReference = readSigned(bits);
    set.offsetForTopToBottom = readSigned(bits);
    auto const count = readUnsigned(bits, mostReferenceOffsets);
    for (std::uint32_t i = 0; i < count; ++i)
        set.offsetsForReferences.push_back(readSigned(bits));
}

void readCrop(BitSliceReader& bits, SequenceParameterSet& set) {
    bool const isSubsampled = set.chromaFormat == 1 || set.chromaFormat == 2;
    std::uint32_t const columns = isSubsampled ? 2 : 1;
    std::uint32_t const lines = (set.chromaFormat == 1 ? 2u : 1u) * (set.frameMacroblocksOnly ? 1u : 2u);
    set.cropLeft = columns * readUnsigned(bits, set.codedWidth);
    set.cropRight = columns * readUnsigned(bits, set.codedWidth);
    set.cropTop = lines * readUnsigned(bits, set.codedHeight);
    set.cropBottom = lines * readUnsigned(bits, set.codedHeight);
    if (set.cropLeft + set.cropRight >= set.codedWidth || set.cropTop + set.cropBottom >= set.codedHeight)
        throw Exceptions::InvalidValue("A sequence parameter set of AVC cuts the whole picture off");
}

void readSize(BitSliceReader& bits, SequenceParameterSet& set) {
    set.referenceFrames = number<std::uint8_t>(bits, mostReferenceFrames);
    bits.skip(1); // gaps in frame numbers
    set.codedWidth = macroblock * (1 + readUnsigned(bits, mostMacroblocks));
    std::uint32_t const rows = 1 + readUnsigned(bits, mostMacroblocks);
    set.frameMacroblocksOnly = bits.readFlag();
    set.codedHeight = macroblock * rows * (set.frameMacroblocksOnly ? 1 : 2);
    if (!set.frameMacroblocksOnly)
        set.adaptiveFrameField = bits.readFlag();
    bits.skip(1); // direct 8x8 inference
    if (bits.readFlag())
        readCrop(bits, set);
}

void readSampleAspect(BitSliceReader& bits, VideoUsability& usability) {
    auto const code = static_cast<unsigned>(bits.read(8));
    if (code == extendedAspectRatio) {
        auto const width = static_cast<int>(bits.read(16));
        usability.sampleAspectRatio = {width, static_cast<int>(bits.read(16))};
    } else if (code >= 1 && code <= std::size(aspectRatios)) {
        usability.sampleAspectRatio = aspectRatios[code - 1];
    }
}

void readSignal(BitSliceReader& bits, VideoUsability& usability) {
    bits.skip(3); // video format
    usability.fullRange = bits.readFlag();
    if (!bits.readFlag())
        return;
    usability.colourPrimaries = static_cast<std::uint8_t>(bits.read(8));
    usability.transferCharacteristics = static_cast<std::uint8_t>(bits.read(8));
    usability.matrixCoefficients = static_cast<std::uint8_t>(bits.read(8));
}

/// The parameters of a reference decoder.
void readDecoderModel(BitSliceReader& bits, VideoUsability& usability) {
    auto const buffers = 1 + readUnsigned(bits, 31);
    auto const scale = static_cast<unsigned>(bits.read(4));
    bits.skip(4); // scale of buffer sizes
    for (std::uint32_t i = 0; i < buffers; ++i) {
        std::uint64_t const rate = std::uint64_t{readUnsigned(bits, anyNumber)} + 1;
        usability.maximumBitRate = std::max(usability.maximumBitRate, rate << (6 + scale));
        readUnsigned(bits, anyNumber);
        bits.skip(1);
    }
    bits.skip(5); // the first removal delay
    usability.hasDelays = true;
    usability.removalDelayBits = static_cast<std::uint8_t>(bits.read(5) + 1);
    usability.outputDelayBits = static_cast<std::uint8_t>(bits.read(5) + 1);
    bits.skip(5); // length of time offsets
}

void readTiming(BitSliceReader& bits, VideoUsability& usability) {
    usability.unitsInTick = static_cast<std::uint32_t>(bits.read(32));
    usability.timeScale = static_cast<std::uint32_t>(bits.read(32));
    usability.fixedFrameRate = bits.readFlag();
}

void readRestrictions(BitSliceReader& bits, VideoUsability& usability) {
    bits.skip(1); // motion vectors beyond the borders
    for (int i = 0; i < 4; ++i)
        readUnsigned(bits, anyNumber);
    usability.reorderedFrames = number<std::uint8_t>(bits, mostReferenceFrames);
}

VideoUsability readUsability(BitSliceReader& bits) {
    VideoUsability usability;
    if (bits.readFlag())
        readSampleAspect(bits, usability);
    if (bits.readFlag())
        bits.skip(1); // overscan
    if (bits.readFlag())
        readSignal(bits, usability);
    if (bits.readFlag()) { // where chroma samples lie
        readUnsigned(bits, 5);
        readUnsigned(bits, 5);
    }
    if (bits.readFlag())
        readTiming(bits, usability);
    bool const hasModel = bits.readFlag();
    if (hasModel)
        readDecoderModel(bits, usability);
    bool const hasVideoModel = bits.readFlag();
    if (hasVideoModel)
        readDecoderModel(bits, usability);
    bits.skip(hasModel || hasVideoModel ? 1 : 0); // low delay
    usability.tellsPictureStructure = bits.readFlag();
    if (bits.readFlag())
        readRestrictions(bits, usability);
    return usability;
}

} // namespace

SequenceParameterSet SequenceParameterSet::read(NalUnit const& unit) {
    BitSliceReader bits(unit.bytes(longestSet));
    SequenceParameterSet set;
    set.profile = static_cast<std::uint8_t>(bits.read(8));
    set.constraints = static_cast<std::uint8_t>(bits.read(8));
    set.level = static_cast<std::uint8_t>(bits.read(8));
    set.id = number<std::uint8_t>(bits, mostSequenceSets - 1);
    if (isAmong(set.profile, highProfiles))
        readFormat(bits, set);
    readOrder(bits, set);
    readSize(bits, set);
    if (bits.readFlag())
        set.usability = readUsability(bits);
    return set;
}

Templates::Rational<std::int64_t> SequenceParameterSet::frameRate() const {
    if (!usability || usability->unitsInTick == 0 || usability->timeScale == 0)
        return {};
    return {usability->timeScale, std::int64_t{2} * usability->unitsInTick};
}

std::size_t SequenceParameterSet::mostReordered() const {
    if (orderCountType == 2)
        return 0;
    if (usability && usability->reorderedFrames)
        return *usability->reorderedFrames;
    if (isIntraProfile())
        return 0;
    auto const* const held = std::find_if(std::begin(heldMacroblocks), std::end(heldMacroblocks) - 1,
                                          [this](HeldMacroblocks const& row) { return level <= row.level; });
    std::uint32_t const macroblocks = codedWidth / macroblock * (codedHeight / macroblock);
    return std::min<std::size_t>(held->count / std::max(macroblocks, 1u), mostReferenceFrames);
}

bool SequenceParameterSet::isIntraProfile() const {
    return profile == intra444 ||
           (isAmong(profile, profilesWithIntra) && (constraints & thirdConstraint) != 0);
}

PictureParameterSet PictureParameterSet::read(NalUnit const& unit) {
    BitSliceReader bits(unit.bytes(longestSet));
    PictureParameterSet set;
    set.id = number<std::uint8_t>(bits, mostPictureSets - 1);
    set.sequenceID = number<std::uint8_t>(bits, mostSequenceSets - 1);
    set.arithmeticCoding = bits.readFlag();
    set.bottomFieldOrderPresent = bits.readFlag();
    set.hasSliceGroups = readUnsigned(bits, mostSliceGroups - 1) != 0;
    if (set.hasSliceGroups)
        return set;
    for (auto& count : set.references)
        count = static_cast<std::uint8_t>(1 + readUnsigned(bits, mostReferences - 1));
    set.weightedPrediction = bits.readFlag();
    set.weightedBiprediction = static_cast<std::uint8_t>(bits.read(2));
    for (int i = 0; i < 3; ++i)
        readSigned(bits); // quantizers
    bits.skip(2);         // deblocking, constrained prediction
    set.redundantPicturesPresent = bits.readFlag();
    return set;
}

void ParameterSets::take(SequenceParameterSet set) {
    auto const id = set.id;
    sequences_[id] = std::make_shared<SequenceParameterSet const>(std::move(set));
}

void ParameterSets::take(PictureParameterSet const& set) {
    pictures_[set.id] = std::make_shared<PictureParameterSet const>(set);
}

ParameterSets::Sequence const& ParameterSets::sequence(std::uint8_t id) const {
    static Sequence const none;
    auto const found = sequences_.find(id);
    return found != sequences_.end() ? found->second : none;
}

ParameterSets::PictureSet const& ParameterSets::picture(std::uint8_t id) const {
    static PictureSet const none;
    auto const found = pictures_.find(id);
    return found != pictures_.end() ? found->second : none;
}

} // namespace MXF::Zelm::Essence::AVC
