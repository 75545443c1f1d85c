#include "MXF/Zelm/Essence/TimedText/Document.h"
#include "MXF/Zelm/Exceptions/Exceptions.h"
#include "support/Bytes.h"

#include <gtest/gtest.h>

namespace MXF::Zelm::Test {

using Essence::TimedText::Document;

namespace {

Document read(std::string_view text) {
    return Document::read(
        DataIO::Slice::copyOf(reinterpret_cast<const unsigned char*>(text.data()), text.size()));
}

/// With a body.
std::string ttml(std::string const& attributes, std::string const& body) {
    return "<?xml version='1.0'?>\n<!DOCTYPE tt [<!ENTITY a 'b'>]><!-- > -->\n<tt "
           "xmlns='http://www.w3.org/ns/ttml' " +
           attributes + "><body>" + body + "</body></tt>\n";
}

std::string nested(std::size_t depth) {
    std::string text;
    for (std::size_t i = 0; i < depth; ++i)
        text += "<div>";
    for (std::size_t i = 0; i < depth; ++i)
        text += "</div>";
    return text;
}

} // namespace

TEST(TimedText, ReadsTtml) {
    auto const document =
        read(ttml("xml:lang=\"de-AT\" ttp:frameRate='24' ttp:frameRateMultiplier='1000 1001' "
                  "ttp:contentProfiles='http://example.org/one http://example.org/two'",
                  "<div begin='10s'><p begin='1s' end='00:00:02.500'>&lt;a&#x3E;</p>"
                  "<image src='urn:uuid:1A2B3C4D-0000-4000-8000-0123456789ab'/></div><![CDATA[</body>]]>"));
    EXPECT_EQ(document.encoding, "UTF-8");
    EXPECT_EQ(document.namespaceURI, "http://www.w3.org/ns/ttml");
    EXPECT_EQ(document.profile, "http://example.org/one");
    EXPECT_EQ(document.language, "de-AT");
    EXPECT_EQ(document.frameRate, (Templates::Rational<int>{24000, 1001}));
    EXPECT_EQ(document.duration, 12.5) << "times count from the parent's begin";
    EXPECT_EQ(document.resources, std::vector<std::string>{"1a2b3c4d-0000-4000-8000-0123456789ab"});
}

TEST(TimedText, CountsTimesInAllUnits) {
    for (auto const& [attributes, seconds] :
         std::initializer_list<std::pair<const char*, double>>{{"end='00:01:02:12'", 62.5},
                                                               {"end='48f'", 2},
                                                               {"end='100t'", 10},
                                                               {"dur='1.5h'", 5400},
                                                               {"begin='1m' dur='500ms'", 60.5},
                                                               {"end='1:2'", 0},
                                                               {"end='x'", 0},
                                                               {"end='99999999999h'", 0}})
        EXPECT_DOUBLE_EQ(
            read(ttml("ttp:frameRate='24' ttp:tickRate='10'", "<p " + std::string(attributes) + "/>"))
                .duration,
            seconds)
            << attributes;
}

TEST(TimedText, ReadsSubtitlesOfCinema) {
    std::string const text =
        "<dcst:SubtitleReel xmlns:dcst='http://www.smpte-ra.org/schemas/428-7/2010/DCST'>"
        "<dcst:Id>urn:uuid:00000000-1111-4222-8333-444444444444</dcst:Id><dcst:Language>fr</dcst:Language>"
        "<dcst:EditRate>25 1</dcst:EditRate><dcst:TimeCodeRate>25</dcst:TimeCodeRate>"
        "<dcst:LoadFont ID='f'>urn:uuid:55555555-1111-4222-8333-444444444444</dcst:LoadFont>"
        "<dcst:Subtitle TimeIn='00:00:01:00' TimeOut='00:00:04:05'/></dcst:SubtitleReel>";
    auto const document = read(text);
    EXPECT_EQ(document.id, "00000000-1111-4222-8333-444444444444");
    EXPECT_EQ(document.language, "fr");
    EXPECT_EQ(document.frameRate, (Templates::Rational<int>{25, 1}));
    EXPECT_DOUBLE_EQ(document.duration, 4.2);
    EXPECT_EQ(document.resources.size(), 1u);
    std::string wide = "\xFF\xFE";
    for (char const letter : text)
        wide += {letter, '\0'};
    EXPECT_TRUE(Document::isDocument(wide));
    EXPECT_EQ(read(wide).id, document.id);
    EXPECT_EQ(read(wide).encoding, "UTF-16");
}

TEST(TimedText, RefusesWhatIsNone) {
    std::string const whole = ttml("a='b'", "<p end='1s'>text</p>");
    for (std::size_t size = 0; size < whole.size() - 1; ++size)
        EXPECT_THROW(read(whole.substr(0, size)), Exceptions::InvalidFormat) << size;
    for (auto const& body : {"<p>", "</p>", "<p></q>", "<p a></p>", "<p a=b/>", "<!-- ", "<p a='b>"})
        EXPECT_THROW(read(ttml("", body)), Exceptions::InvalidFormat) << body;
    EXPECT_NO_THROW(read(ttml("", nested(200))));
    EXPECT_THROW(read(ttml("", nested(1000))), Exceptions::InvalidFormat);
    EXPECT_FALSE(Document::isDocument("<html/>"));
    EXPECT_FALSE(Document::isDocument("RIFF"));
    EXPECT_TRUE(Document::isDocument(std::string_view(whole).substr(0, whole.size() - 30)));
}

} // namespace MXF::Zelm::Test
