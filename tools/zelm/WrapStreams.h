/// Files that hold streams, for `zelm wrap`: each of their streams is an input of its own. Sound begins where
/// the first pictures begin, by the times in the file: what is before them is left out, what is missing is
/// silence. Sound that cannot be wrapped is left out with a note, pictures are refused.
#pragma once

#include "StreamSound.h"
#include "WrapKinds.h"

namespace Zelm {

/// A program stream (ISO/IEC 13818-1, 11172-1), or packets of streams without packs.
bool isProgramStream(InputHead const& head, TrackMaking const& making);
std::vector<InputHead> programStreams(InputHead const& head, TrackMaking& making);

bool isTransportStream(InputHead const& head, TrackMaking const& making);
std::vector<InputHead> transportStreams(InputHead const& head, TrackMaking& making);

bool isAvi(InputHead const& head, TrackMaking const& making);
std::vector<InputHead> aviStreams(InputHead const& head, TrackMaking& making);

/// SMPTE 302M packets, one behind the other.
bool isS302M(InputHead const& head, TrackMaking const& making);
std::vector<InputHead> s302mStreams(InputHead const& head, TrackMaking& making);

/// The kind of an input whose packets stay as they are, as `--as` names it.
inline constexpr const char* s302mPackets = "302m-packets";

/// A track of packets as they are.
void addS302MPackets(InputHead const& head, TrackMaking& making, std::vector<WrapTrack>& tracks);

/// A sound inside of a file. `opening` gives samples of `format`, which `shift` moves, in instants.
InputHead soundInput(std::string const& name, InputHead::Opening const& opening,
                     MXF::Zelm::Essence::Wave::WaveFormat const& format, std::int64_t shift,
                     TrackMaking const& making);

/// The same of a source of SMPTE 302M packets, which stay packets where the options say so.
InputHead s302mInput(std::string const& name, InputHead::Opening const& opening, std::int64_t shift,
                     TrackMaking const& making);

/// Instants from one time to another, in seconds; none where the two are more than a minute apart, as of
/// clocks that have nothing to do with each other.
std::optional<std::int64_t> instantsBetween(double from, double to, std::uint32_t samplingRate);

} // namespace Zelm
