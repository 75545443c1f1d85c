/// The JSON of `zelm diff`.
#include "Diff.h"

namespace Zelm {

namespace {

Json sideJson(DiffSide const& side) {
    Json faults = Json::array();
    if (side.survey.fault)
        faults.push_back(toJson(side.survey.fault));
    for (auto const& fault : side.faults)
        faults.push_back(toJson(std::optional(fault)));
    return {{"file", side.input.name}, {"size", side.input.source.size()}, {"faults", std::move(faults)}};
}

Json valueJson(std::optional<DiffValue> const& value) { return value ? value->json : Json(nullptr); }

Json textJson(std::optional<DiffValue> const& value) { return value ? Json(value->text) : Json(nullptr); }

} // namespace

const char* areaName(DiffArea area) {
    switch (area) {
    case DiffArea::Partitions:
        return "partitions";
    case DiffArea::Metadata:
        return "metadata";
    case DiffArea::Index:
        return "index";
    case DiffArea::Essence:
        return "essence";
    case DiffArea::History:
        return "history";
    case DiffArea::Layout:
        break;
    }
    return "layout";
}

void printDiffJson(DiffReport const& report) {
    Json json = jsonReport();
    json["a"] = sideJson(report.a);
    json["b"] = sideJson(report.b);
    json["equal"] = report.equal();
    json["differences"] = Json::array();
    for (auto const& difference : report.findings.all())
        json["differences"].push_back({{"area", areaName(difference.area)},
                                       {"path", difference.path},
                                       {"counted", report.findings.counts(difference)},
                                       {"a", valueJson(difference.a)},
                                       {"b", valueJson(difference.b)},
                                       {"a_text", textJson(difference.a)},
                                       {"b_text", textJson(difference.b)}});
    print(json);
}

} // namespace Zelm
