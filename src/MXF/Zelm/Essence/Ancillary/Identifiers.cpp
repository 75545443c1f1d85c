#include "MXF/Zelm/Essence/Ancillary/Identifiers.h"

#include <algorithm>
#include <iterator>

namespace MXF::Zelm::Essence::Ancillary {

namespace {

struct Row {
    unsigned char did;
    unsigned char firstSDID, lastSDID;
    std::string_view name;
};

constexpr Row rows[] = {
    {0x00, 0x00, 0xFF, "undefined"},
    {0x40, 0x01, 0x01, "SDTI (SMPTE 305M)"},
    {0x40, 0x02, 0x02, "HD-SDTI (SMPTE 348M)"},
    {0x41, 0x01, 0x01, "payload identification (SMPTE 352M)"},
    {0x41, 0x05, 0x05, "active format description and bar data (SMPTE 2016-3)"},
    {0x41, 0x06, 0x06, "pan and scan (SMPTE 2016-4)"},
    {0x41, 0x07, 0x07, "splice messages, ANSI/SCTE 104 (SMPTE 2010)"},
    {0x41, 0x08, 0x08, "DVB and SCTE VBI data (SMPTE 2031)"},
    {0x43, 0x01, 0x01, "inter-station control data (ITU-R BT.1685)"},
    {0x43, 0x02, 0x02, "subtitles, OP-47 distribution packet (SMPTE RDD 8)"},
    {0x43, 0x03, 0x03, "OP-47 multipacket (SMPTE RDD 8)"},
    {0x43, 0x05, 0x05, "acquisition metadata (SMPTE RDD 18)"},
    {0x44, 0x04, 0x04, "KLV metadata or essence, VANC (SMPTE RP 214)"},
    {0x44, 0x14, 0x14, "KLV metadata or essence, HANC (SMPTE RP 214)"},
    {0x44, 0x44, 0x44, "UMID and programme identification (SMPTE RP 223)"},
    {0x45, 0x01, 0x01, "audio metadata, no channels named (SMPTE 2020)"},
    {0x45, 0x02, 0x09, "audio metadata of a channel pair (SMPTE 2020)"},
    {0x50, 0x01, 0x01, "wide screen signalling (SMPTE RDD 8)"},
    {0x51, 0x01, 0x01, "film codes (SMPTE RP 215)"},
    {0x60, 0x60, 0x60, "ancillary timecode (SMPTE 12M-2)"},
    {0x61, 0x01, 0x01, "captions, CEA-708 caption distribution packet (SMPTE 334M)"},
    {0x61, 0x02, 0x02, "captions, CEA-608 (SMPTE 334M)"},
    {0x62, 0x01, 0x01, "programme description (SMPTE RP 207)"},
    {0x62, 0x02, 0x02, "data broadcast (SMPTE 334M)"},
    {0x62, 0x03, 0x03, "VBI data (SMPTE RP 208)"},
    {0x64, 0x64, 0x64, "LTC in ancillary data (SMPTE RP 196)"},
    {0x64, 0x7F, 0x7F, "VITC in ancillary data (SMPTE RP 196)"},
    {0x80, 0x00, 0xFF, "marked for deletion"},
    {0x84, 0x00, 0xFF, "end marker"},
    {0x88, 0x00, 0xFF, "start marker"},
    {0xE0, 0x00, 0xFF, "HD audio control, group 4 (SMPTE 299M)"},
    {0xE1, 0x00, 0xFF, "HD audio control, group 3 (SMPTE 299M)"},
    {0xE2, 0x00, 0xFF, "HD audio control, group 2 (SMPTE 299M)"},
    {0xE3, 0x00, 0xFF, "HD audio control, group 1 (SMPTE 299M)"},
    {0xE4, 0x00, 0xFF, "HD audio, group 4 (SMPTE 299M)"},
    {0xE5, 0x00, 0xFF, "HD audio, group 3 (SMPTE 299M)"},
    {0xE6, 0x00, 0xFF, "HD audio, group 2 (SMPTE 299M)"},
    {0xE7, 0x00, 0xFF, "HD audio, group 1 (SMPTE 299M)"},
    {0xEC, 0x00, 0xFF, "SD audio control, group 4 (SMPTE 272M)"},
    {0xED, 0x00, 0xFF, "SD audio control, group 3 (SMPTE 272M)"},
    {0xEE, 0x00, 0xFF, "SD audio control, group 2 (SMPTE 272M)"},
    {0xEF, 0x00, 0xFF, "SD audio control, group 1 (SMPTE 272M)"},
    {0xF0, 0x00, 0xFF, "camera position (SMPTE 315M)"},
    {0xF4, 0x00, 0xFF, "error detection, EDH (SMPTE RP 165)"},
    {0xF8, 0x00, 0xFF, "SD extended audio, group 4 (SMPTE 272M)"},
    {0xF9, 0x00, 0xFF, "SD audio, group 4 (SMPTE 272M)"},
    {0xFA, 0x00, 0xFF, "SD extended audio, group 3 (SMPTE 272M)"},
    {0xFB, 0x00, 0xFF, "SD audio, group 3 (SMPTE 272M)"},
    {0xFC, 0x00, 0xFF, "SD extended audio, group 2 (SMPTE 272M)"},
    {0xFD, 0x00, 0xFF, "SD audio, group 2 (SMPTE 272M)"},
    {0xFE, 0x00, 0xFF, "SD extended audio, group 1 (SMPTE 272M)"},
    {0xFF, 0x00, 0xFF, "SD audio, group 1 (SMPTE 272M)"},
};

} // namespace

std::string_view identifierName(unsigned char did, unsigned char sdid) {
    auto const row = std::find_if(std::begin(rows), std::end(rows), [&](Row const& candidate) {
        return candidate.did == did && candidate.firstSDID <= sdid && sdid <= candidate.lastSDID;
    });
    return row != std::end(rows) ? row->name : std::string_view();
}

} // namespace MXF::Zelm::Essence::Ancillary
