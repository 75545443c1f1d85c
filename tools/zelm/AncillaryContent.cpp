#include "AncillaryContent.h"

#include "Text.h"
#include "TimeText.h"

#include <MXF/Zelm/ByteCoders/Hexadecimal.h>
#include <MXF/Zelm/Essence/Ancillary/ActiveFormat.h>
#include <MXF/Zelm/Essence/Ancillary/CaptionPacket.h>
#include <MXF/Zelm/Essence/Ancillary/Identifiers.h>
#include <MXF/Zelm/Essence/Ancillary/Timecode.h>
#include <MXF/Zelm/Platform/Text.h>

#include <algorithm>
#include <cstdio>

namespace Zelm {

using namespace MXF::Zelm;
using namespace Essence::Ancillary;
using namespace GenericContainer::S436M;

namespace {

constexpr EditRate defaultRate{25, 1}; // where the file tells none

bool is(AncillaryPacket const& packet, unsigned char did, unsigned char sdid) {
    return packet.track.isANC() && packet.content.packet.did == did && packet.content.packet.sdid == sdid;
}

std::optional<CaptionPacket> captionsIn(AncillaryPacket const& packet) {
    if (!is(packet, captionDID, captionSDID))
        return std::nullopt;
    return readCaptionPacket(packet.content.packet.bytes());
}

std::optional<ActiveFormat> activeFormatIn(AncillaryPacket const& packet) {
    if (!is(packet, activeFormatDID, activeFormatSDID))
        return std::nullopt;
    return readActiveFormat(packet.content.packet.bytes());
}

std::optional<Timecode> timecodeIn(AncillaryPacket const& packet) {
    if (!is(packet, timecodeDID, timecodeSDID))
        return std::nullopt;
    auto const& rate = packet.track.editRate;
    bool const isUsable =
        rate.numerator > 0 && rate.denominator > 0 && rate.toDouble() < 1000 && rate.toDouble() >= 1;
    return readTimecode(packet.content.packet.bytes(),
                        Utils::TimeBase::ofEditRate(isUsable ? rate : defaultRate, false).framesPerSecond());
}

std::string text(ActiveFormat const& format) {
    std::string words = std::string(format.text()) + ", in a " + (format.isWide ? "16:9" : "4:3") + " frame";
    for (auto const& [name, bar] : {std::pair("top", format.top),
                                    {"bottom", format.bottom},
                                    {"left", format.left},
                                    {"right", format.right}})
        if (bar)
            words += std::string(", ") + name + " bar " + std::to_string(*bar);
    return words;
}

constexpr const char* dataNames[] = {"CEA-608, field 1", "CEA-608, field 2", "CEA-708", "CEA-708"};

/// A pair that says nothing: two zeros, with parity.
bool isEmpty(CaptionData const& data) {
    return !data.isValid || (data.type < CaptionData::DTVCCContinues && (data.bytes[0] & 0x7F) == 0 &&
                             (data.bytes[1] & 0x7F) == 0);
}

std::string text(CaptionService const& service) {
    return (service.isDigital ? "CEA-708 service " : "CEA-608 service of field ") +
           std::to_string(service.number) + ", language " + printable(service.language) +
           (service.isEasyReader ? ", easy reader" : "");
}

std::string text(CaptionPacket const& captions) {
    std::string words =
        rateText(captions.frameRate) + " a second, number " + std::to_string(captions.sequence);
    if (captions.timecode.isDefined())
        words += ", " + Platform::toUtf8(captions.timecode.toString());
    for (auto const& data : captions.data)
        if (!isEmpty(data))
            words += std::string("; ") + dataNames[data.type] + ": " +
                     ByteCoders::toHexadecimal(data.bytes.data(), data.bytes.size());
    for (auto const& service : captions.services)
        words += "; " + text(service);
    return words;
}

std::string timeText(Timecode const& timecode) { return Platform::toUtf8(timecode.time.toString()); }

void append(CaptionPacket const& captions, std::vector<ContentFact>& facts) {
    auto const add = [&facts](std::string what) {
        if (std::none_of(facts.begin(), facts.end(), [&](auto const& fact) { return fact.what == what; }))
            facts.push_back({std::move(what)});
    };
    for (auto const& data : captions.data)
        if (!isEmpty(data))
            add(dataNames[data.type]);
    for (auto const& service : captions.services)
        add(text(service));
}

} // namespace

std::vector<const char*> faultTexts(AncillaryPacket const& packet) {
    std::vector<const char*> texts;
    for (auto const fault : FoundPacket::everyFault())
        if ((packet.found.faults & fault) != 0)
            texts.push_back(FoundPacket::faultText(fault));
    if (!packet.track.isANC())
        return texts;
    for (auto const fault : ReadPacket::everyFault())
        if ((packet.content.faults & fault) != 0)
            texts.push_back(ReadPacket::faultText(fault));
    if (auto const captions = captionsIn(packet))
        for (auto const fault : CaptionPacket::everyFault())
            if ((captions->faults & fault) != 0)
                texts.push_back(CaptionPacket::faultText(fault));
    if (hasParityError(packet.found.stored.coding))
        texts.push_back("had a parity error before it was stored");
    return texts;
}

std::string identifierText(AncillaryPacket const& packet) {
    if (!packet.track.isANC())
        return "line " + std::to_string(packet.found.stored.line());
    auto const& content = packet.content.packet;
    unsigned char const bytes[] = {content.did, content.sdid};
    return ByteCoders::toHexadecimal(bytes, content.isType1() ? 1 : 2, '/');
}

std::string identifierNameText(AncillaryPacket const& packet) {
    auto const& stored = packet.found.stored;
    if (!packet.track.isANC())
        return std::string(textOf(stored.coding)) + ", " + textOf(stored.wrapping);
    auto const name = identifierName(packet.content.packet.did, packet.content.packet.sdid);
    return std::string(name.empty() ? "unknown" : name);
}

std::string bytesText(AncillaryPacket const& packet) {
    auto const& payload = packet.found.stored.payload;
    if (!packet.track.isANC())
        return ByteCoders::toHexadecimal(payload.data(), payload.size());
    auto const& words = packet.content.packet.userData;
    if (std::all_of(words.begin(), words.end(), hasParity)) {
        auto const bytes = packet.content.packet.bytes();
        return ByteCoders::toHexadecimal(bytes.data(), bytes.size());
    }
    std::string text;
    for (auto const word : words) {
        char digits[8];
        std::snprintf(digits, sizeof digits, "%03X", unsigned{word});
        text += digits;
    }
    return text;
}

std::string contentText(AncillaryPacket const& packet) {
    if (auto const captions = captionsIn(packet))
        return captions->faults == 0 ? text(*captions) : std::string();
    if (auto const format = activeFormatIn(packet))
        return text(*format);
    if (auto const timecode = timecodeIn(packet))
        return std::string(timecode->sourceText()) + " " + timeText(*timecode);
    return {};
}

std::vector<ContentFact> contentFacts(AncillaryPacket const& packet) {
    std::vector<ContentFact> facts;
    if (auto const captions = captionsIn(packet))
        append(*captions, facts);
    else if (auto const format = activeFormatIn(packet))
        facts.push_back({text(*format)});
    else if (auto const timecode = timecodeIn(packet))
        facts.push_back({timecode->sourceText(), timeText(*timecode)});
    return facts;
}

} // namespace Zelm
