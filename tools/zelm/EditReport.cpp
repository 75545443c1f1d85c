#include "EditReport.h"

#include "Json.h"
#include "PropertyValue.h"
#include "Text.h"
#include "ValueText.h"

#include <MXF/Zelm/Platform/Text.h>

#include <algorithm>
#include <iostream>
#include <map>

namespace Zelm {

using namespace MXF::Zelm;
using MXFIO::MetadataChange;
using Kind = MetadataChange::Kind;

namespace {

constexpr std::size_t mostRanges = 24;

/// The path of what changed.
class ChangePaths {
public:
    explicit ChangePaths(SetPaths const& paths) {
        for (auto const& place : paths.places())
            if (auto const* const uid = place.set->instanceUID())
                byUID_.emplace(*uid, &place);
    }

    std::string path(MetadataChange const& change) const {
        auto const found = change.instanceUID ? byUID_.find(*change.instanceUID) : byUID_.end();
        std::string const set = found != byUID_.end() ? found->second->path : change.setName;
        if (change.propertyName.empty())
            return set;
        return set + "/" + propertyName(change, found != byUID_.end() ? found->second->set : nullptr);
    }

private:
    /// What SMPTE 377M calls it, also when the set does not have it any more.
    static std::string propertyName(MetadataChange const& change, Metadata::MetadataSet const* set) {
        auto const attribute = set != nullptr && change.label
                                   ? set->metaMetadataSet()->findMetaAttribute(*change.label)
                                   : nullptr;
        return attribute ? preferredName(attribute->metaElement()) : change.propertyName;
    }

    std::map<Types::UUID, SetPaths::Place const*> byUID_;
};

const char* kindName(Kind kind) {
    switch (kind) {
    case Kind::PropertyChanged:
        return "changed";
    case Kind::PropertyAdded:
        return "added";
    case Kind::PropertyRemoved:
        return "removed";
    case Kind::SetAdded:
        return "set added";
    case Kind::SetRemoved:
        return "set removed";
    case Kind::DarkSetChanged:
        break;
    }
    return "dark set changed";
}

bool refersTo(std::string const& value, Types::UUID const& instanceUID) {
    return value.find(Platform::toUtf8(instanceUID.toString())) != std::string::npos;
}

/// The properties of sets that are new as a whole, and what refers to those.
bool goesWithoutSaying(MetadataChange const& change, std::vector<MetadataChange> const& all) {
    return std::any_of(all.begin(), all.end(), [&](MetadataChange const& other) {
        return other.kind == Kind::SetAdded && !change.propertyName.empty() &&
               (other.instanceUID == change.instanceUID || refersTo(change.newValue, *other.instanceUID));
    });
}

std::string shown(std::string const& value, bool isThere) { return isThere ? printable(value) : "(none)"; }

void printChanges(EditReport const& report, SetPaths const& paths) {
    ChangePaths const names(paths);
    Table table({{"path"}, {"old"}, {"new"}});
    for (auto const& change : report.changes) {
        if (goesWithoutSaying(change, report.changes))
            continue;
        bool const hasOld = change.kind != Kind::PropertyAdded && change.kind != Kind::SetAdded;
        bool const hasNew = change.kind != Kind::PropertyRemoved && change.kind != Kind::SetRemoved;
        bool const isSet = change.kind == Kind::SetAdded || change.kind == Kind::SetRemoved;
        table.add({names.path(change), shown(isSet ? change.setName : change.oldValue, hasOld),
                   shown(isSet ? change.setName : change.newValue, hasNew)});
    }
    if (report.changes.empty())
        std::cout << "no value is changed\n";
    else
        table.print(std::cout);
}

std::string bytesCount(std::uint64_t bytes) { return grouped(bytes) + (bytes == 1 ? " byte" : " bytes"); }

void printRanges(MXFIO::UpdatePlan const& plan) {
    std::uint64_t sum = 0;
    for (auto const& range : plan.ranges)
        sum += range.length;
    std::cout << "in place: " << bytesCount(sum) << (plan.ranges.size() == 1 ? " in 1 place" : " in ");
    if (plan.ranges.size() != 1)
        std::cout << plan.ranges.size() << " places";
    std::cout << "\n";
    for (std::size_t i = 0; i < std::min(plan.ranges.size(), mostRanges); ++i)
        std::cout << "  " << hex(plan.ranges[i].offset) << "  " << bytesCount(plan.ranges[i].length) << "\n";
    if (plan.ranges.size() > mostRanges)
        std::cout << "  …\n";
}

/// Partitions whose metadata stays as it is.
void printRemarks(EditReport const& report) {
    auto const& plan = report.placePlan ? report.placePlan : report.filePlan;
    if (!plan)
        return;
    for (auto const& partition : plan->partitions)
        if (!partition.remark.empty() && partition.remark != plan->reason)
            std::cout << "the partition at " << hex(partition.offset)
                      << " keeps its metadata: " << partition.remark
                      << (partition.role == MXFIO::PartitionUpdate::Role::CopyLeft
                              ? "; programs that read that copy see the old values (-o brings it in step)"
                              : "")
                      << "\n";
}

void printPlan(EditReport const& report) {
    std::cout << "\n";
    if (report.placePlan && report.placePlan->fitsInPlace)
        printRanges(*report.placePlan);
    else if (report.placePlan)
        std::cout << "in place: not possible, " << report.placePlan->reason << "\n";
    if (report.filePlan)
        std::cout << "new file: " << bytesCount(report.filePlan->newFileSize) << ", now "
                  << grouped(report.filePlan->fileSize) << "\n";
}

Json planJson(std::optional<MXFIO::UpdatePlan> const& plan) {
    if (!plan)
        return nullptr;
    Json ranges = Json::array();
    for (auto const& range : plan->ranges)
        ranges.push_back({{"offset", range.offset}, {"length", range.length}});
    return {{"fits", plan->fitsInPlace},
            {"reason", plan->reason},
            {"ranges", std::move(ranges)},
            {"file_size", plan->fileSize},
            {"new_file_size", plan->newFileSize}};
}

/// Calls `visit` with path and element of every property that can be set.
template <class Visit>
void forEachProperty(SetPaths const& paths, Visit visit) {
    for (auto const& place : paths.places())
        for (auto const& element : *place.set)
            if (dynamic_cast<Metadata::ReferenceHolder const*>(element.get()) == nullptr &&
                element->baseValue() != nullptr && !isCalled(*element->metaElement(), "InstanceUID"))
                visit(place.path + "/" + preferredName(*element), *element);
}

} // namespace

void printEditText(EditReport const& report, SetPaths const& paths) {
    printChanges(report, paths);
    if (!report.written) {
        printPlan(report);
        printRemarks(report);
        std::cout << "nothing was written\n";
        return;
    }
    std::cout << "\n"
              << (report.inPlace ? report.file + ": " : report.output + ": ")
              << bytesCount(report.bytesWritten) << (report.inPlace ? " written in place; " : " written; ")
              << bytesCount(report.essenceBytesProven) << " of essence and index unchanged\n";
    printRemarks(report);
}

void printEditJson(EditReport const& report, SetPaths const& paths) {
    ChangePaths const names(paths);
    Json json = jsonReport();
    json["file"] = report.file;
    json["output"] = report.output.empty() ? Json(nullptr) : Json(report.output);
    json["in_place"] = report.inPlace;
    json["written"] = report.written;
    json["changes"] = Json::array();
    for (auto const& change : report.changes)
        json["changes"].push_back({{"kind", kindName(change.kind)},
                                   {"path", names.path(change)},
                                   {"old", change.oldValue},
                                   {"new", change.newValue}});
    json["in_place_plan"] = planJson(report.placePlan);
    json["new_file_plan"] = planJson(report.filePlan);
    json["bytes_written"] = report.bytesWritten;
    json["essence_bytes_proven"] = report.essenceBytesProven;
    print(json);
}

void printPathsText(SetPaths const& paths) {
    forEachProperty(paths, [](std::string const& path, Metadata::Element const& element) {
        std::cout << printable(path) << " = " << valueText(element) << "\n";
    });
}

void printPathsJson(std::string const& file, SetPaths const& paths) {
    Json json = jsonReport();
    json["file"] = file;
    json["paths"] = Json::array();
    forEachProperty(paths, [&json](std::string const& path, Metadata::Element const& element) {
        json["paths"].push_back({{"path", path},
                                 {"type", Types::Identifiers::toText(element.baseValue()->identifier())},
                                 {"value", parseableText(*element.baseValue())},
                                 {"text", valueText(element)}});
    });
    print(json);
}

} // namespace Zelm
