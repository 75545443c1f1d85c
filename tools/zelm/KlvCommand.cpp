/// `zelm klv FILE`: the packets of a file, listed or counted.
#include "Faults.h"
#include "KlvReport.h"
#include "Progress.h"
#include "Text.h"

#include <charconv>
#include <limits>

namespace Zelm {

using namespace MXF::Zelm;

namespace {

/// Bytes of a file, from `first` to before `last`.
struct Range {
    std::uint64_t first = 0;
    std::uint64_t last = std::numeric_limits<std::uint64_t>::max();

    bool touches(KlvWalk::Packet const& packet) const { return packet.offset < last && packet.end() > first; }
    bool touches(KlvWalk::Gap const& gap) const {
        return gap.offset < last && gap.offset + gap.length > first;
    }
};

/// Reads an offset, decimal or with 0x hexadecimal; false when it is none.
bool parseOffset(std::string_view text, std::uint64_t& offset) {
    bool const hexadecimal = text.starts_with("0x") || text.starts_with("0X");
    if (hexadecimal)
        text.remove_prefix(2);
    auto const end = text.data() + text.size();
    auto const [stop, error] = std::from_chars(text.data(), end, offset, hexadecimal ? 16 : 10);
    return error == std::errc() && stop == end;
}

/// "A:B", of which either may be left out; none when it is no range.
std::optional<Range> parseRange(std::string_view text) {
    Range range;
    std::size_t const colon = text.find(':');
    if (colon == std::string_view::npos)
        return std::nullopt;
    std::string_view const first = text.substr(0, colon);
    std::string_view const last = text.substr(colon + 1);
    bool const read =
        (first.empty() || parseOffset(first, range.first)) && (last.empty() || parseOffset(last, range.last));
    return read && range.first < range.last ? std::optional(range) : std::nullopt;
}

class KlvCommand : public Command {
public:
    void declare(CLI::App& parser) override {
        parser.add_option("FILE", file_, "The file")->required();
        parser.add_flag("--summary", summary_, "Count packets and bytes by key instead of listing them");
        parser.add_option("--sort", order_, "Order of the summary: by key, or by bytes, most first")
            ->type_name("key|bytes")
            ->default_str("key")
            ->check([](std::string const& text) {
                return text == "key" || text == "bytes" ? "" : "\"" + text + "\" is neither key nor bytes";
            })
            ->needs("--summary");
        parser.add_option("--range", rangeText_, "Only packets with bytes at offsets from A to before B")
            ->type_name("A:B")
            ->check([](std::string const& text) {
                return parseRange(text) ? "" : "\"" + text + "\" is no range A:B of byte offsets";
            });
        parser.add_flag("--resync", resync_,
                        "After bytes that are no packet go on at the next key, within 65536 bytes");
        options_.declare(parser);
    }

    ExitStatus run() override {
        if (!rangeText_.empty())
            range_ = *parseRange(rangeText_);
        KeyNames const names(options_.dictionaries.empty() ? nullptr : loadDictionary(options_.dictionaries));
        Input input(file_, std::make_shared<MetaMetadata::Dictionary>());
        report_ = makeReport(names);
        std::uint64_t const start = findStart(input);
        report_->begin({file_, input.source.size(), input.reader.runInLength()});
        walk(input, start);
        report_->end(fault_);
        return fault_ ? NotMXF : Done;
    }

private:
    std::unique_ptr<KlvReport> makeReport(KeyNames const& names) const {
        auto const order = order_ == "bytes" ? SummaryOrder::Bytes : SummaryOrder::Key;
        if (summary_)
            return options_.json ? makeKlvJsonSummary(names, order) : makeKlvTextSummary(names, order);
        return options_.json ? makeKlvJsonList(names) : makeKlvTextList(names);
    }

    /// Where the header partition begins, or, in a file without one, the first key.
    std::uint64_t findStart(Input& input) {
        bool noPartition = false;
        try {
            if (input.reader.headerPartition() != nullptr)
                return input.reader.runInLength();
            noPartition = true;
        } catch (Exceptions::SystemError const&) {
            throw;
        } catch (Exceptions::BaseException const&) {
            // A partition pack that cannot be read is still a packet.
        }
        std::uint64_t skipped = 0;
        input.source.seek(0);
        try {
            input.reader.klvReader().peekNextKey(skipped, searchLimit);
        } catch (Exceptions::SystemError const&) {
            throw;
        } catch (Exceptions::BaseException const&) {
            std::uint64_t const searched = std::min(input.source.size(), searchLimit);
            fail({"no MXF header partition: no key within " + grouped(searched) + " bytes", 0});
            return input.source.size();
        }
        if (noPartition)
            fail({"no MXF header partition, but other KLV packets", skipped});
        return skipped;
    }

    void fail(Fault const& fault) {
        report_->flush();
        reportFault(file_, fault.message, fault.offset);
        if (!fault_)
            fault_ = fault;
    }

    void walk(Input& input, std::uint64_t start) {
        KlvWalk walk(input, start);
        KlvWalk::Packet packet;
        Progress progress("reading " + file_, input.source.size());
        while (walk.offset() < range_.last) {
            bool const found = walk.next(packet);
            auto const fault = walk.fault();
            auto const gap = fault && resync_ ? walk.resynchronise() : std::nullopt;
            if (found && gap) // the length was wrong
                packet.present = 0;
            if (found && range_.touches(packet))
                report_->packet(packet);
            if (fault)
                fail(*fault);
            if (gap && range_.touches(*gap))
                report_->gap(*gap);
            if (!gap && (fault || !found))
                return;
            progress.at(walk.offset());
        }
    }

    std::string file_;
    bool summary_ = false;
    std::string order_;
    std::string rangeText_;
    Range range_;
    bool resync_ = false;
    ReportOptions options_;
    std::unique_ptr<KlvReport> report_;
    std::optional<Fault> fault_;
};

} // namespace

std::unique_ptr<Command> makeKlvCommand() { return std::make_unique<KlvCommand>(); }

} // namespace Zelm
