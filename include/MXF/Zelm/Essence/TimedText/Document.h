/// Documents of timed text, as far as a container must know them: TTML and its profiles (W3C), and the
/// subtitle documents of digital cinema (SMPTE 428-7 and their forerunner).
#pragma once

#include "MXF/Zelm/DataIO/Chain.h"
#include "MXF/Zelm/Templates/Rational.h"

#include <string>
#include <string_view>
#include <vector>

namespace MXF::Zelm::Essence::TimedText {

/// What `read` gives; texts are UTF-8 and empty where the document does not tell.
struct MXFZELM_EXPORT Document {
    /// No document is larger, in bytes.
    static constexpr std::uint64_t largest = std::uint64_t{64} << 20;

    /// "UTF-8" or "UTF-16".
    std::string encoding = {};

    /// Of the root element.
    std::string namespaceURI = {};

    /// The designator of the first profile that a TTML document says it follows.
    std::string profile = {};

    /// A language tag (RFC 5646).
    std::string language = {};

    /// The digits of the document's own UUID.
    std::string id = {};

    /// Frames a second that times are counted in; 0/0 where the document does not tell.
    Templates::Rational<int> frameRate = {};

    /// When the last text ends, in seconds from the document's start; 0 when it has no times. Elements of
    /// TTML that play one after the other (timeContainer "seq") are taken to play at once.
    double duration = 0;

    /// The digits of the UUIDs that the document names besides its own: fonts and pictures. Each once.
    std::vector<std::string> resources = {};

    /// Whether these first bytes of a file are those of such a document.
    static bool isDocument(std::string_view start);

    /// Throws Exceptions::InvalidFormat, with the offset in UTF-8, for what is no such document or no XML.
    static Document read(DataIO::Chain const& bytes);
};

} // namespace MXF::Zelm::Essence::TimedText
