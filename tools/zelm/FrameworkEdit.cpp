#include "FrameworkEdit.h"

#include "PropertyValue.h"

#include <MXF/Zelm/Exceptions/Exceptions.h>
#include <MXF/Zelm/Metadata/DMS1/ClipFramework.h>
#include <MXF/Zelm/Metadata/DMS1/DMS1MetadataKeys.h>
#include <MXF/Zelm/Metadata/Structural/GenericPackage.h>
#include <MXF/Zelm/Metadata/Structural/Tracks.h>
#include <MXF/Zelm/Platform/Text.h>

#include <algorithm>
#include <cctype>

namespace Zelm {

using namespace MXF::Zelm;
using Exceptions::InvalidValue;
namespace Structural = Metadata::Structural;
namespace Keys = Metadata::DMS1::DMS1MetadataKeys;

namespace {

/// Names may be written in words.
bool isNamePart(char c) { return std::isalnum(static_cast<unsigned char>(c)) != 0 || c == ' '; }

/// Where the value that begins at `from` ends: at a comma that a name and '=' follow, or with the text.
std::size_t endOfValue(std::string const& text, std::size_t from) {
    for (std::size_t comma = text.find(',', from); comma != std::string::npos;
         comma = text.find(',', comma + 1)) {
        auto const equals =
            std::find_if_not(text.begin() + static_cast<std::ptrdiff_t>(comma) + 1, text.end(), isNamePart);
        if (equals != text.end() && *equals == '=' && equals[-1] != ',')
            return comma;
    }
    return text.size();
}

KLV::Key keyOf(std::string const& kind) {
    if (kind == "clip")
        return Keys::clipFramework();
    if (kind == "scene")
        return Keys::sceneFramework();
    if (kind == "production")
        return Keys::productionFramework();
    throw InvalidValue("\"" + kind + "\" is no kind of framework: clip, scene or production");
}

std::uint32_t trackNumber(std::string const& text) {
    return Types::UInt32::fromText(Platform::toUtf16(text)).value();
}

/// The track that a clip framework describes unless another is named: the first picture track, or else the
/// first one with essence.
std::vector<std::uint32_t> mainTrack(Structural::GenericPackage const& package) {
    Templates::list<Structural::TimelineTrack*> tracks;
    Structural::getAllEssenceTracks(package, tracks);
    for (auto const* const track : tracks)
        if (track->trackID() != nullptr)
            return {track->trackID()->value()};
    return {};
}

/// A property by its name, in which the kind of the framework may be left out: "kind" is ClipKind.
MetaMetadata::MetaAttribute const& attributeOf(Metadata::MetadataSet const& framework,
                                               FrameworkEdit const& edit, std::string const& name) {
    for (auto const& full : {name, edit.kind + name})
        if (auto const* const attribute = findAttribute(*framework.metaMetadataSet(), full))
            return *attribute;
    throw InvalidValue("a " + edit.kind + " framework has no property \"" + name + "\"");
}

} // namespace

FrameworkEdit parseFramework(std::string const& text) {
    FrameworkEdit edit;
    std::size_t at = std::min(text.find(':'), text.size());
    edit.kind = text.substr(0, at);
    edit.key = keyOf(edit.kind);
    while (at < text.size()) {
        std::size_t const equals = text.find('=', ++at);
        if (equals == std::string::npos)
            throw InvalidValue("\"" + text.substr(at) + "\" is not NAME=VALUE");
        std::size_t const end = endOfValue(text, equals + 1);
        std::string name = text.substr(at, equals - at);
        std::erase(name, ' ');
        std::string const value = text.substr(equals + 1, end - equals - 1);
        if (name == "track")
            edit.track = trackNumber(value);
        else
            edit.properties.emplace_back(name, value);
        at = end;
    }
    return edit;
}

Metadata::MetadataSet& addFramework(Metadata::PartitionMetadata& metadata, FrameworkEdit const& edit) {
    auto& package =
        dynamic_cast<Structural::MaterialPackage&>(metadata.find(Structural::MaterialPackage::classKey()));
    auto const tracks = edit.track            ? std::vector{*edit.track}
                        : edit.kind == "clip" ? mainTrack(package)
                                              : std::vector<std::uint32_t>();
    auto& framework = *Metadata::DMS1::createFramework(metadata, package, edit.key, tracks);
    for (auto const& [name, text] : edit.properties) {
        auto const& definition = attributeOf(framework, edit, name).metaElement();
        framework.value(definition.universalLabel(), *parseValue(definition, text));
    }
    return package;
}

} // namespace Zelm
