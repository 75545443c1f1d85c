#include "Frameworks.h"
#include "Json.h"
#include "SetValues.h"
#include "ValueText.h"

#include <MXF/Zelm/Metadata/Structural/GenericPackage.h>
#include <MXF/Zelm/Metadata/Structural/StructuralComponent.h>
#include <MXF/Zelm/Metadata/Structural/Track.h>
#include <MXF/Zelm/Platform/Text.h>

#include <unordered_set>

namespace Zelm {

using namespace MXF::Zelm;
using Metadata::MetadataSet;

namespace {

constexpr int deepestLevel = 16;

/// Sets as objects, what they own inside them. A set that was given before, or stands too deep, is given by
/// its class and instance UID alone.
class SetWriter {
public:
    Json write(MetadataSet const& set, int level = 0) {
        Json json;
        json["class"] = Platform::toUtf8(set.name());
        json["instance_uid"] = toJson(static_cast<Types::BaseType const*>(set.instanceUID()));
        json["offset"] = orNull(set.absoluteOffset());
        if (level > deepestLevel || !given_.insert(&set).second)
            return json;
        json["properties"] = Json::object();
        for (auto const& element : set)
            json["properties"][Platform::toUtf8(element->name())] = value(*element, level);
        return json;
    }

private:
    Json value(Metadata::Element const& element, int level) {
        auto const* const holder = dynamic_cast<Metadata::ReferenceHolder const*>(&element);
        if (holder != nullptr && holder->isStrong()) {
            Json sets = Json::array();
            for (auto const* const target : element.metadataSet().referencedSets(*element.universalLabel()))
                sets.push_back(write(*target, level + 1));
            return sets;
        }
        Json const plain = toJson(element.baseValue());
        std::string const name = valueName(element);
        return name.empty() ? plain : Json{{"value", plain}, {"name", name}};
    }

    std::unordered_set<MetadataSet const*> given_;
};

Json placeJson(FrameworkPlace const& place, SetWriter& writer) {
    auto const* const id = place.track->trackID();
    Json json;
    json["package_name"] = text(place.package->name());
    json["package_uid"] = toJson(static_cast<Types::BaseType const*>(place.package->packageUID()));
    json["track_id"] = id != nullptr ? Json(id->value()) : Json(nullptr);
    json["track_name"] = text(place.track->trackName());
    json["edit_rate"] = place.editRate ? Json(std::to_string(place.editRate->numerator) + "/" +
                                              std::to_string(place.editRate->denominator))
                                       : Json(nullptr);
    json["position"] = orNull(place.position);
    json["duration"] = orNull(place.duration);
    json["comment"] = text(place.segment->eventComment());
    json["described_tracks"] = place.describedTracks;
    json["framework"] = place.framework != nullptr ? writer.write(*place.framework) : Json(nullptr);
    return json;
}

} // namespace

void printFrameworksJson(std::string const& file, FrameworkReport const& report) {
    SetWriter writer;
    Json json = jsonReport();
    json["file"] = file;
    json["frameworks"] = Json::array();
    for (auto const& place : report.places)
        json["frameworks"].push_back(placeJson(place, writer));
    json["unplaced"] = Json::array();
    for (auto const* const set : report.unplaced)
        json["unplaced"].push_back(writer.write(*set));
    print(json);
}

} // namespace Zelm
