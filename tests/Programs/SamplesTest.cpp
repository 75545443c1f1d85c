// The figures in the table of the sample files, read by an independent parser, come out of the program.
#include "support/Program.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <filesystem>
#include <fstream>
#include <map>
#include <sstream>

namespace MXF::Zelm::Test {

namespace {

using Json = nlohmann::json;

/// One row of the table, its cells without blanks around them.
using Row = std::vector<std::string>;
enum Column { Name, Size, Partitions, Klvs, Sets, Essence, Index, RandomIndex };

std::vector<Row> table() {
    std::vector<Row> rows;
    std::ifstream file(std::filesystem::path(MXFZELM_SAMPLES_DIR) / "README.md");
    for (std::string line; std::getline(file, line);) {
        if (line.find(".mxf |") == std::string::npos)
            continue;
        Row row;
        std::istringstream cells(line.substr(1));
        for (std::string cell; std::getline(cells, cell, '|');)
            row.push_back(cell.substr(1, cell.find_last_not_of(' ')));
        rows.push_back(row);
    }
    return rows;
}

/// "15010500 ×2 500040, …" of keys that begin as essence elements and system items do; "none" for none.
std::string essenceText(Json const& keys) {
    std::map<std::string, std::string> elements; // in the order of the last four bytes
    for (auto const& row : keys) {
        auto const key = row["key"].get<std::string>().substr(13);
        if (key.substr(18, 8) == "0d010301")
            elements[key.substr(27)] = " ×" + row["count"].dump() + " " + row["value_bytes"].dump();
    }
    std::string text;
    for (auto const& [bytes, figures] : elements)
        text += (text.empty() ? "" : ", ") + bytes + figures;
    return text.empty() ? "none" : text;
}

std::uint64_t count(Json const& keys, std::string const& prefix) {
    std::uint64_t sum = 0;
    for (auto const& row : keys)
        if (row["key"].get<std::string>().substr(13).starts_with(prefix))
            sum += row["count"].get<std::uint64_t>();
    return sum;
}

/// What `zelm dump` says of all partitions that have header metadata.
std::vector<Json> dumps(std::string const& file, Json const& partitions) {
    std::vector<Json> reports;
    for (std::size_t i = 0; i < partitions.size(); ++i)
        if (partitions[i]["header_byte_count"] != 0) {
            auto const run = runZelm({"dump", "--json", "--partition", std::to_string(i), file});
            EXPECT_EQ(run.status, 0) << run.errors;
            reports.push_back(Json::parse(run.output));
        }
    return reports;
}

/// Sets of the registers are typed, and what is unknown in them are private properties: in the samples those
/// of one writer, whose labels are no SMPTE labels or of class 14.
void expectTyped(Json const& report) {
    for (auto const& set : report["sets"]) {
        EXPECT_FALSE(set["dark"].get<bool>()) << set;
        for (auto const& property : set["properties"])
            if (property.contains("unknown")) {
                auto const label = property["label"].get<std::string>();
                EXPECT_TRUE(label.starts_with("urn:uuid:") || label.substr(31, 2) == "0e") << property;
            }
    }
}

TEST(Samples, GiveTheFiguresOfAnIndependentParser) {
    auto const rows = table();
    if (rows.empty())
        GTEST_SKIP() << "no sample files in " << MXFZELM_SAMPLES_DIR;
    for (auto const& row : rows) {
        SCOPED_TRACE(row[Name]);
        auto const file = (std::filesystem::path(MXFZELM_SAMPLES_DIR) / row[Name]).string();
        auto const list = Json::parse(runZelm({"klv", "--json", file}).output);
        EXPECT_EQ(list["size"].dump(), row[Size]);
        EXPECT_EQ(std::to_string(list["klvs"].size()), row[Klvs]);
        EXPECT_TRUE(list["fault"].is_null());

        auto const keys = Json::parse(runZelm({"klv", "--json", "--summary", file}).output)["keys"];
        std::uint64_t const segments = count(keys, "060e2b34.02530101.0d010201.01100100");
        EXPECT_EQ(std::to_string(count(keys, "060e2b34.0253") - segments), row[Sets]);
        EXPECT_EQ(std::to_string(segments), row[Index].substr(0, row[Index].find(' ')));
        EXPECT_TRUE(row[Essence].starts_with(essenceText(keys))) << essenceText(keys);

        auto const partitions = Json::parse(runZelm({"partitions", "--json", file}).output);
        EXPECT_EQ(std::to_string(partitions["partitions"].size()), row[Partitions]);
        auto const& index = partitions["random_index_pack"];
        EXPECT_EQ(std::to_string(index.is_null() ? 0 : index["entries"].size()), row[RandomIndex]);
        EXPECT_EQ(partitions, Json::parse(runZelm({"partitions", "--json", "--walk", file}).output));

        std::size_t sets = 0;
        for (auto const& report : dumps(file, partitions["partitions"])) {
            sets += report["sets"].size();
            expectTyped(report);
        }
        EXPECT_EQ(std::to_string(sets), row[Sets]);
    }
}

} // namespace

} // namespace MXF::Zelm::Test
