/// Packets and bytes counted by key.
#include "Json.h"
#include "KeyTally.h"
#include "KlvReport.h"
#include "Text.h"

#include <algorithm>
#include <iostream>

namespace Zelm {

using namespace MXF::Zelm;

namespace {

class Summary : public KlvReport {
public:
    Summary(KeyNames const& names, SummaryOrder order) : names_(names), order_(order) {}

    void begin(KlvFile const& file) override { file_ = file; }
    void packet(KlvWalk::Packet const& packet) override { tally_.add(packet); }
    void gap(KlvWalk::Gap const& gap) override { gaps_.add(gap); }

protected:
    std::vector<KeyTally::Row> sortedRows() const {
        auto rows = tally_.rows();
        std::sort(rows.begin(), rows.end(), [this](auto const& a, auto const& b) {
            if (order_ == SummaryOrder::Bytes && a.count.klvBytes != b.count.klvBytes)
                return a.count.klvBytes > b.count.klvBytes;
            return a.key < b.key;
        });
        return rows;
    }

    /// All packets; gaps are none.
    KlvCount total() const {
        KlvCount sum;
        for (auto const& row : tally_.rows()) {
            sum.packets += row.count.packets;
            sum.valueBytes += row.count.valueBytes;
            sum.klvBytes += row.count.klvBytes;
        }
        return sum;
    }

    KeyNames const& names_;
    SummaryOrder order_;
    KlvFile file_;
    KeyTally tally_;
    KlvCount gaps_;
};

class TextSummary : public Summary {
public:
    using Summary::Summary;

    void end(std::optional<Fault> const&) override {
        if (file_.runIn != 0)
            std::cout << "run-in of " << grouped(file_.runIn) << " bytes\n";
        Table table({{"key"},
                     {"count", Table::Align::Right},
                     {"value bytes", Table::Align::Right},
                     {"KLV bytes", Table::Align::Right},
                     {"name"}});
        auto const add = [&table](std::string const& key, KlvCount const& count, std::string const& name) {
            table.add(
                {key, grouped(count.packets), grouped(count.valueBytes), grouped(count.klvBytes), name});
        };
        for (auto const& row : sortedRows())
            add(hexKey(row.key), row.count, names_.name(row.key));
        if (gaps_.packets != 0)
            add("-", gaps_, "not KLV");
        add("total", total(), "");
        table.print(std::cout);
    }
};

Json countJson(Json row, KlvCount const& count) {
    row["count"] = count.packets;
    row["value_bytes"] = count.valueBytes;
    row["klv_bytes"] = count.klvBytes;
    return row;
}

class JsonSummary : public Summary {
public:
    using Summary::Summary;

    void end(std::optional<Fault> const& fault) override {
        Json report = jsonReport();
        report["file"] = file_.name;
        report["size"] = file_.size;
        report["run_in"] = file_.runIn;
        report["keys"] = Json::array();
        for (auto const& row : sortedRows())
            report["keys"].push_back(
                countJson({{"key", toJson(row.key)}, {"name", names_.name(row.key)}}, row.count));
        report["total"] = countJson(Json::object(), total());
        report["gaps"] = {{"count", gaps_.packets}, {"bytes", gaps_.klvBytes}};
        report["fault"] = toJson(fault);
        print(report);
    }
};

} // namespace

std::unique_ptr<KlvReport> makeKlvTextSummary(KeyNames const& names, SummaryOrder order) {
    return std::make_unique<TextSummary>(names, order);
}

std::unique_ptr<KlvReport> makeKlvJsonSummary(KeyNames const& names, SummaryOrder order) {
    return std::make_unique<JsonSummary>(names, order);
}

} // namespace Zelm
