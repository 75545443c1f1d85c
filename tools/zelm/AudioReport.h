/// What `zelm audio` prints and draws.
#pragma once

#include "AudioInfo.h"

namespace Zelm {

void printAudioText(AudioFile const& file);
void printAudioJson(std::vector<AudioFile> const& files);

/// Draws the wave of each channel as SVG. `options` are those that the levels were measured with.
std::string drawAudio(AudioFile const& file, AudioOptions const& options);

/// Points of an outline that the drawing asks for.
inline constexpr std::size_t audioPlotPoints = 1064;

} // namespace Zelm
