/// Subframes as words of 32 bits, as SMPTE 331M has them.
///
///     little-endian    bits 0 to 2 channel, 3 block start, 4 to 27 sample, 28 V, 29 U, 30 C, 31 P
#pragma once

#include "MXF/Zelm/Essence/AES3/ChannelStatus.h"
#include "MXF/Zelm/Essence/PCMFormat.h"

#include <vector>

namespace MXF::Zelm::Essence::AES3 {

inline constexpr std::size_t subframeSize = 4;

/// Channels of an element.
inline constexpr unsigned elementChannels = 8;

/// Writes samples of little-endian PCM of 16, 20 or 24 bits into words, `wordChannels` of them an instant;
/// channels that the PCM does not have are silent. Flags are 0.
void packSubframes(PCMFormat const& format, const unsigned char* pcm, std::size_t instants,
                   unsigned wordChannels, unsigned char* words);

/// Takes the samples of the channels of `format`, which is as above, out of words. Lower bits are cut off.
void unpackSubframes(PCMFormat const& format, const unsigned char* words, std::size_t instants,
                     unsigned wordChannels, unsigned char* pcm);

/// The same for the eight channels of an element, `format` having the first of them. Those that `flags`
/// leaves out are silent: bit n is set where channel n + 1 is there, none where the writer left the flags
/// out.
void unpackElement(PCMFormat const& format, const unsigned char* words, std::size_t instants, unsigned flags,
                   unsigned char* pcm);

/// Sets the block start, channel status and parity bits of words with flags of 0. `statuses` has a block for
/// each of `wordChannels` channels; the first instant stands at `blockPosition` of a block of 192. Returns
/// the position behind the last.
unsigned setSubframeFlags(std::vector<ChannelStatus> const& statuses, unsigned blockPosition,
                          unsigned char* words, std::size_t instants);

} // namespace MXF::Zelm::Essence::AES3
