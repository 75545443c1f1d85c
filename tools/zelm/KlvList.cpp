/// Lists of packets. Rows are printed as they come: a file may have millions of packets.
#include "Json.h"
#include "KlvReport.h"
#include "RowOutput.h"
#include "Text.h"

namespace Zelm {

using namespace MXF::Zelm;

namespace {

class TextList : public KlvReport {
public:
    explicit TextList(KeyNames const& names)
        : words_([&names](KLV::Key const& key) { return hexKey(key) + "  " + names.name(key); }) {}

    /// The columns are as wide as the file's size needs them.
    void begin(KlvFile const& file) override {
        offsetWidth_ = std::max(hex(file.size).size(), std::size_t{6});
        lengthWidth_ = std::max(grouped(file.size).size(), std::size_t{6});
        if (file.runIn != 0)
            output_.text() += "run-in of " + grouped(file.runIn) + " bytes\n";
        auto& out = output_.text();
        appendPadded(out, "offset", offsetWidth_);
        appendPadded(out, "length", lengthWidth_ + 2);
        out += "  BER  key                                  name\n";
    }

    void packet(KlvWalk::Packet const& packet) override {
        auto& out = output_.text();
        appendPadded(out, hex(packet.offset), offsetWidth_);
        appendPadded(out, grouped(packet.length), lengthWidth_ + 2);
        out += "    ";
        out += static_cast<char>('0' + packet.berLength);
        out += "  ";
        out += words_(packet.key);
        out += '\n';
        output_.rowEnded();
    }

    void gap(KlvWalk::Gap const& gap) override {
        auto& out = output_.text();
        appendPadded(out, hex(gap.offset), offsetWidth_);
        appendPadded(out, grouped(gap.length), lengthWidth_ + 2);
        out += "    -  -                                    not KLV\n";
        output_.rowEnded();
    }

    void flush() override { output_.flush(); }
    void end(std::optional<Fault> const&) override { output_.flush(); }

private:
    RowOutput output_;
    KeyTexts<std::function<std::string(KLV::Key const&)>> words_;
    std::size_t offsetWidth_ = 0;
    std::size_t lengthWidth_ = 0;
};

class JsonList : public KlvReport {
public:
    explicit JsonList(KeyNames const& names)
        : words_([&names](KLV::Key const& key) {
              return "\"key\": " + dump(toJson(key)) + ", \"name\": " + dump(names.name(key));
          }) {}

    void begin(KlvFile const& file) override {
        output_.text() += "{\n  \"schema_version\": " + std::to_string(jsonSchemaVersion) +
                          ",\n  \"file\": " + dump(file.name) +
                          ",\n  \"size\": " + std::to_string(file.size) +
                          ",\n  \"run_in\": " + std::to_string(file.runIn) + ",\n  \"klvs\": [";
    }

    void packet(KlvWalk::Packet const& packet) override {
        row(packet.offset, words_(packet.key), std::to_string(packet.berLength), packet.length);
    }

    void gap(KlvWalk::Gap const& gap) override {
        row(gap.offset, "\"key\": null, \"name\": \"not KLV\"", "null", gap.length);
    }

    void flush() override { output_.flush(); }

    void end(std::optional<Fault> const& fault) override {
        output_.text() +=
            (first_ ? "],\n  \"fault\": " : "\n  ],\n  \"fault\": ") + dump(toJson(fault)) + "\n}\n";
        output_.flush();
    }

private:
    void row(std::uint64_t offset, std::string const& words, std::string const& berLength,
             std::uint64_t length) {
        auto& out = output_.text();
        out += first_ ? "\n    {\"offset\": " : ",\n    {\"offset\": ";
        out += std::to_string(offset) + ", ";
        out += words;
        out += ", \"ber_length\": " + berLength + ", \"length\": " + std::to_string(length) + "}";
        first_ = false;
        output_.rowEnded();
    }

    RowOutput output_;
    KeyTexts<std::function<std::string(KLV::Key const&)>> words_;
    bool first_ = true;
};

} // namespace

std::unique_ptr<KlvReport> makeKlvTextList(KeyNames const& names) {
    return std::make_unique<TextList>(names);
}

std::unique_ptr<KlvReport> makeKlvJsonList(KeyNames const& names) {
    return std::make_unique<JsonList>(names);
}

} // namespace Zelm
