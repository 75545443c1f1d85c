// The header of a frame of an audio data transport stream (ISO/IEC 14496-3, 1.A.2):
//
//     11111111    1111 id, 00, no CRC    profile (2) sampling rate (4) private, channels (3), original, home
//     copyright (2) size (13) fullness (11) blocks less one (2)
#include "MXF/Zelm/Essence/CodedSound/FrameHeader.h"

#include "MXF/Zelm/ByteCoders/BigEndian.h"

namespace MXF::Zelm::Essence::CodedSound {

namespace {

constexpr std::size_t headerSize = 7, crcSize = 2;

constexpr std::uint32_t samplingRates[] = {96000, 88200, 64000, 48000, 44100, 32000, 24000,
                                           22050, 16000, 12000, 11025, 8000,  7350};

// 0 is told within the frame.
constexpr std::uint8_t channelCounts[] = {0, 1, 2, 3, 4, 5, 6, 8};

bool read(const unsigned char* bytes, FrameHeader& header) {
    constexpr unsigned samplesOfBlock = 1024;
    unsigned const rate = bytes[2] >> 2 & 15u;
    if (bytes[0] != 0xFF || (bytes[1] & 0xF6u) != 0xF0 || rate >= std::size(samplingRates))
        return false;
    header = {};
    header.coding = (bytes[1] & 8u) != 0 ? Coding::MPEG2AAC : Coding::MPEG4AAC;
    header.samplingRate = samplingRates[rate];
    header.channels = channelCounts[(bytes[2] & 1u) << 2 | bytes[3] >> 6];
    header.size = ByteCoders::decodeInteger<std::uint32_t>(bytes + 3) >> 13 & 0x1FFF;
    header.samples = ((bytes[6] & 3u) + 1) * samplesOfBlock;
    bool const hasCRC = (bytes[1] & 1u) == 0;
    return header.size > headerSize + (hasCRC ? crcSize : 0);
}

constexpr Format format{"AAC", headerSize, read};

} // namespace

Format const& adts() { return format; }

} // namespace MXF::Zelm::Essence::CodedSound
