#include "Json.h"

#include <MXF/Zelm/Platform/Text.h>
#include <MXF/Zelm/Types/Collection.h>
#include <MXF/Zelm/Types/Integers.h>

#include <iostream>

namespace Zelm {

using namespace MXF::Zelm;

namespace {

/// Integers and Booleans become JSON's own, collections arrays; everything else is its text.
class ToJson : public Types::Visitors::Visitor {
public:
    using Visitor::visit;
    void visit(Types::Int8 const& value) override { json = value.value(); }
    void visit(Types::Int16 const& value) override { json = value.value(); }
    void visit(Types::Int32 const& value) override { json = value.value(); }
    void visit(Types::Int64 const& value) override { json = value.value(); }
    void visit(Types::UInt8 const& value) override { json = value.value(); }
    void visit(Types::UInt16 const& value) override { json = value.value(); }
    void visit(Types::UInt32 const& value) override { json = value.value(); }
    void visit(Types::UInt64 const& value) override { json = value.value(); }
    void visit(Types::Position const& value) override { json = value.value(); }
    void visit(Types::Length const& value) override { json = value.value(); }
    void visit(Types::Orientation const& value) override { json = value.value(); }
    void visit(Types::SignalStandard const& value) override { json = value.value(); }
    void visit(Types::Boolean const& value) override { json = value.value(); }
    void visit(Types::Array const& value) override { visitCollection(value); }
    void visit(Types::Batch const& value) override { visitCollection(value); }
    void visitOther(Types::BaseType const& value) override { json = Platform::toUtf8(value.toString()); }

    Json json;

private:
    void visitCollection(Types::Collection const& collection) {
        json = Json::array();
        for (std::size_t i = 0; i < collection.count(); ++i)
            json.push_back(toJson(&collection.at(i)));
    }
};

} // namespace

Json jsonReport() {
    Json report;
    report["schema_version"] = jsonSchemaVersion;
    return report;
}

void print(Json const& report) {
    std::cout << report.dump(2, ' ', false, Json::error_handler_t::replace) << "\n";
}

std::string dump(Json const& value) { return value.dump(-1, ' ', false, Json::error_handler_t::replace); }

Json toJson(std::optional<Fault> const& fault) {
    if (!fault)
        return nullptr;
    return {{"message", fault->message}, {"offset", fault->offset}};
}

Json toJson(KLV::Key const& key) {
    return Platform::toUtf8(key.toString(Types::StringRepresentationEncodingType::URN));
}

Json toJson(Types::BaseType const* value) {
    if (value == nullptr)
        return nullptr;
    ToJson visitor;
    value->accept(visitor);
    return std::move(visitor.json);
}

} // namespace Zelm
