#include "Frameworks.h"
#include "SetValues.h"
#include "Text.h"
#include "TimeText.h"
#include "ValueText.h"

#include <MXF/Zelm/Metadata/Structural/GenericPackage.h>
#include <MXF/Zelm/Metadata/Structural/Properties.h>
#include <MXF/Zelm/Metadata/Structural/StructuralComponent.h>
#include <MXF/Zelm/Metadata/Structural/Track.h>
#include <MXF/Zelm/Platform/Text.h>

#include <algorithm>
#include <iostream>
#include <sstream>
#include <unordered_set>

namespace Zelm {

using namespace MXF::Zelm;
using Metadata::MetadataSet;
namespace Structural = Metadata::Structural;

namespace {

constexpr int deepestLevel = 16;
constexpr std::size_t widestName = 40;

/// What only machines read.
bool isHousekeeping(Metadata::Element const& element) {
    auto const& label = element.metaElement()->universalLabel();
    return label == Types::UniversalLabel(Structural::Properties::instanceUID.label) ||
           label == Types::UniversalLabel(Structural::Properties::generationUID.label);
}

std::string nameOf(MetadataSet const& set) { return words(Platform::toUtf8(set.name())); }

constexpr std::size_t mostTextBytes = 2048;

/// Text that lies in a property of raw bytes, as whole documents do; empty when the bytes are no UTF-8.
std::string embeddedText(Metadata::Element const& element) {
    auto const* const bytes = Types::valueCast<Types::DataValue>(element.baseValue());
    if (bytes == nullptr || bytes->size() == 0 || bytes->size() > mostTextBytes)
        return {};
    std::string const text(reinterpret_cast<const char*>(bytes->rawBuffer()), bytes->size());
    bool const isText = std::none_of(text.begin(), text.end(), [](char c) {
        return (static_cast<unsigned char>(c) < 0x20 && c != '\n' && c != '\r' && c != '\t') || c == 0x7F;
    });
    return isText && Platform::toUtf8(Platform::toUtf16(text)) == text ? text : std::string();
}

std::ostream& line(int level) { return std::cout << std::string(2 * static_cast<std::size_t>(level), ' '); }

/// Prints sets with what they own below them, each once.
class Printer {
public:
    void printProperties(MetadataSet const& set, int level) {
        shown_.insert(&set);
        std::size_t width = 0;
        for (auto const& element : set)
            if (dynamic_cast<Metadata::ReferenceHolder const*>(element.get()) == nullptr)
                width = std::max(width, words(Platform::toUtf8(element->name())).size());
        for (auto const& element : set)
            if (!isHousekeeping(*element))
                printElement(*element, level, std::min(width, widestName));
    }

private:
    void printElement(Metadata::Element const& element, int level, std::size_t width) {
        std::string name = words(Platform::toUtf8(element.name()));
        auto const* const holder = dynamic_cast<Metadata::ReferenceHolder const*>(&element);
        if (holder == nullptr) {
            if (std::string const document = embeddedText(element); !document.empty()) {
                printDocument(name, document, level);
                return;
            }
            name.resize(std::max(width, name.size()), ' ');
            line(level) << name << "  " << valueText(element) << "\n";
            return;
        }
        for (auto const* const target : element.metadataSet().referencedSets(*element.universalLabel()))
            printTarget(name, *target, holder->isStrong(), level);
    }

    static void printDocument(std::string const& name, std::string const& document, int level) {
        line(level) << name << "\n";
        std::istringstream lines(document);
        for (std::string each; std::getline(lines, each);)
            line(level + 1) << printable(each) << "\n";
    }

    void printTarget(std::string const& name, MetadataSet const& target, bool strong, int level) {
        bool const below = strong && level < deepestLevel && !shown_.contains(&target);
        line(level) << name << ": " << nameOf(target)
                    << (below    ? ""
                        : strong ? " (shown elsewhere)"
                                 : " (referred to)")
                    << "\n";
        if (below)
            printProperties(target, level + 1);
    }

    std::unordered_set<MetadataSet const*> shown_;
};

std::string packageText(Structural::GenericPackage const& package) {
    std::string const name = text(package.name());
    bool const material = dynamic_cast<Structural::MaterialPackage const*>(&package) != nullptr;
    return std::string(material ? "Material package" : "Source package") +
           (name.empty() ? "" : " \"" + printable(name) + "\"");
}

std::string trackText(Structural::Track const& track) {
    auto const* const id = track.trackID();
    std::string const name = text(track.trackName());
    return "track " + (id != nullptr ? std::to_string(id->value()) : "without ID") +
           (name.empty() ? "" : " \"" + printable(name) + "\"");
}

/// "00:00:04.000 (100 edit units)".
std::string stretchText(std::int64_t editUnits, std::optional<EditRate> const& rate) {
    std::string const time = rate ? durationText(editUnits, *rate) : std::string();
    std::string const count = std::to_string(editUnits) + " edit units";
    return time.empty() ? count : time + " (" + count + ")";
}

std::string whenText(FrameworkPlace const& place) {
    if (!place.editRate && !place.position)
        return "at all times";
    return "from " + (place.position ? stretchText(*place.position, place.editRate) : "an unknown position") +
           (place.duration ? " for " + stretchText(*place.duration, place.editRate) : "");
}

std::string tracksText(std::vector<std::uint32_t> const& tracks) {
    std::string text;
    for (std::uint32_t const track : tracks)
        text += (text.empty() ? tracks.size() == 1 ? ", about track " : ", about tracks " : ", ") +
                std::to_string(track);
    return text;
}

void printPlace(FrameworkPlace const& place, Printer& printer) {
    line(1) << (place.framework != nullptr ? nameOf(*place.framework)
                                           : "Nothing (the framework is not there)")
            << ", " << whenText(place) << tracksText(place.describedTracks) << "\n";
    if (std::string const comment = text(place.segment->eventComment()); !comment.empty())
        line(2) << "Comment: " << printable(comment) << "\n";
    if (place.framework != nullptr)
        printer.printProperties(*place.framework, 2);
}

} // namespace

void printFrameworksText(FrameworkReport const& report) {
    if (report.places.empty() && report.unplaced.empty())
        std::cout << "There is no descriptive metadata.\n";
    Printer printer;
    Structural::Track const* track = nullptr;
    for (auto const& place : report.places) {
        if (place.track != track)
            std::cout << packageText(*place.package) << ", " << trackText(*place.track) << "\n";
        track = place.track;
        printPlace(place, printer);
    }
    if (!report.unplaced.empty())
        std::cout << "Descriptive sets that no segment refers to\n";
    for (auto const* const set : report.unplaced) {
        line(1) << nameOf(*set) << "\n";
        printer.printProperties(*set, 2);
    }
}

} // namespace Zelm
