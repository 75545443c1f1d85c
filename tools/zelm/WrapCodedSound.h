/// Tracks of sound in coded frames (MPEG audio, AC-3, AAC), for `zelm wrap`. The frames stay as they are.
#pragma once

#include "WrapKinds.h"

#include <MXF/Zelm/Essence/CodedSound/FrameHeader.h>

namespace Zelm {

struct CodedSoundFacts {
    MXF::Zelm::Essence::CodedSound::Format const* format;
    std::uint32_t samplingRate;
};

/// What the frames are that a stream consists of, which may begin amid a frame; none when there are none.
std::optional<CodedSoundFacts> codedSoundIn(InputHead const& head, TrackMaking const& making);

/// The name of the kind of an input of such frames.
const char* kindOfCodedSound(MXF::Zelm::Essence::CodedSound::Format const& format);

bool isMpegAudio(InputHead const& head, TrackMaking const& making);
bool isAc3(InputHead const& head, TrackMaking const& making);
bool isAac(InputHead const& head, TrackMaking const& making);

void addMpegAudio(InputHead const& head, TrackMaking& making, std::vector<WrapTrack>& tracks);
void addAc3(InputHead const& head, TrackMaking& making, std::vector<WrapTrack>& tracks);
void addAac(InputHead const& head, TrackMaking& making, std::vector<WrapTrack>& tracks);

} // namespace Zelm
