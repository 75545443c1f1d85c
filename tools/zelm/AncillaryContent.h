/// What packets of VBI and ANC say, in words.
#pragma once

#include "AncillaryWalk.h"

namespace Zelm {

/// What is wrong with a packet, with its checksum and with the captions in it: "has a wrong checksum".
std::vector<const char*> faultTexts(AncillaryPacket const& packet);

/// "61/01", of type 1 "FF", of VBI "line 21".
std::string identifierText(AncillaryPacket const& packet);

/// What the identifier stands for; of VBI how lines are sampled. "unknown" when it is not known.
std::string identifierNameText(AncillaryPacket const& packet);

/// User data in hexadecimal, three digits a word where they are not of 8 bits; of VBI the payload.
std::string bytesText(AncillaryPacket const& packet);

/// What captions, active format or timecode say; empty for other packets.
std::string contentText(AncillaryPacket const& packet);

/// What many packets have in common: "CEA-608, field 1".
struct ContentFact {
    std::string what;
    std::string detail = {}; ///< what is another in each: a timecode
};

std::vector<ContentFact> contentFacts(AncillaryPacket const& packet);

} // namespace Zelm
