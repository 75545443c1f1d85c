#include "MXF/Zelm/GenericContainer/Analyzers/JPEG2000Analyzer.h"

#include "MXF/Zelm/Essence/JPEG2000/CodestreamCutter.h"
#include "MXF/Zelm/Exceptions/Exceptions.h"
#include "MXF/Zelm/GenericContainer/Analyzers/JPEG2000Descriptor.h"
#include "MXF/Zelm/GenericContainer/ElementKey.h"
#include "MXF/Zelm/IndexTables/IndexEntry.h"

namespace MXF::Zelm::GenericContainer {

namespace {

using namespace KLV::Literals;
using Essence::JPEG2000::CodestreamCutter;
using Essence::JPEG2000::CodestreamHeader;
using Scan = JPEG2000Options::Scan;

constexpr unsigned char frameWrappedJPEG2000 = 0x08, clipWrappedJPEG2000 = 0x09;

constexpr auto clipWrapped = "060E2B34.04010107.0D010301.020C0200"_key;

struct ScanRow {
    Scan scan;
    KLV::Key label;
};

constexpr ScanRow scanRows[] = {
    {Scan::Undefined, "060E2B34.04010107.0D010301.020C0100"_key},
    {Scan::Progressive, "060E2B34.0401010D.0D010301.020C0600"_key},
    {Scan::TwoFields, "060E2B34.0401010D.0D010301.020C0400"_key},
    {Scan::Field, "060E2B34.0401010D.0D010301.020C0500"_key},
};

/// What all pictures have in common.
bool isAlike(CodestreamHeader const& a, CodestreamHeader const& b) {
    return a.width() == b.width() && a.height() == b.height() && a.components == b.components;
}

} // namespace

struct JPEG2000Analyzer::State : Platform::Allocated {
    State(NextSource sources, JPEG2000Options const& given) : options(given), next(std::move(sources)) {}

    bool fetch();
    bool openNext();
    unsigned codestreamsPerUnit() const { return options.scan == Scan::TwoFields ? 2 : 1; }
    void check(CodestreamCutter::Unit const& unit);

    JPEG2000Options options;
    NextSource next; // none for one stream
    Templates::auto_ptr<CodestreamCutter> cutter;
    std::optional<CodestreamHeader> header;   // the first
    std::optional<std::uint32_t> colourSpace; // of the same
    DataIO::Chain ahead;                      // the next edit unit; empty at the end
    std::uint64_t units = 0;                  // fetched
    std::string fault;
};

/// A picture must be like the first one.
void JPEG2000Analyzer::State::check(CodestreamCutter::Unit const& unit) {
    auto const found = CodestreamHeader::read(unit.data);
    if (!header) {
        header = found;
        colourSpace = cutter->colourSpace();
    }
    if (!isAlike(*header, found))
        throw Exceptions::at(unit.offset, Exceptions::InvalidFormat(
                                              "JPEG 2000: the picture of edit unit " + std::to_string(units) +
                                              " has another size or other components than the first"));
}

bool JPEG2000Analyzer::State::openNext() {
    if (!next)
        return cutter != nullptr;
    auto source = next();
    cutter = source ? std::make_unique<CodestreamCutter>(std::move(source)) : nullptr;
    return cutter != nullptr;
}

/// Reads the next edit unit ahead; false at the end.
bool JPEG2000Analyzer::State::fetch() {
    ahead.clear();
    if (!fault.empty() || !openNext())
        return false;
    CodestreamCutter::Unit unit;
    unsigned count = 0;
    while ((next || count < codestreamsPerUnit()) && cutter->next(unit)) {
        check(unit);
        ahead.append(std::move(unit.data));
        ++count;
    }
    if (next && units == 0 && count == 2)
        options.scan = Scan::TwoFields;
    fault = cutter->fault();
    if (fault.empty() && count != codestreamsPerUnit() && (next || count != 0))
        fault = "JPEG 2000: edit unit " + std::to_string(units) + " has " + std::to_string(count) +
                " codestreams, not " + std::to_string(codestreamsPerUnit());
    if (!fault.empty())
        ahead.clear();
    ++units;
    return !ahead.empty();
}

JPEG2000Analyzer::JPEG2000Analyzer(Templates::SharedPtr<DataIO::SliceSource> stream, JPEG2000Options options)
    : state_(std::make_unique<State>(nullptr, options)) {
    state_->cutter = std::make_unique<CodestreamCutter>(std::move(stream));
    BasicAnalyzer::editRate(options.editRate);
}

JPEG2000Analyzer::JPEG2000Analyzer(NextSource next, JPEG2000Options options)
    : state_(std::make_unique<State>(std::move(next), options)) {
    BasicAnalyzer::editRate(options.editRate);
}

JPEG2000Analyzer::~JPEG2000Analyzer() = default;

bool JPEG2000Analyzer::preload() { return state_->units != 0 ? state_->header.has_value() : state_->fetch(); }

CodestreamHeader const& JPEG2000Analyzer::header() const {
    if (!state_->header)
        throw Exceptions::InvalidStructure("The pictures have not been looked at yet");
    return *state_->header;
}

Types::UniversalLabel JPEG2000Analyzer::universalLabel() const {
    if (state_->options.wrapping == Wrapping::Clip)
        return clipWrapped;
    for (auto const& row : scanRows)
        if (row.scan == state_->options.scan)
            return row.label;
    return scanRows[0].label;
}

unsigned char JPEG2000Analyzer::itemTypeIdentifier() const { return ElementKey::Picture; }

unsigned char JPEG2000Analyzer::essenceElementType() const {
    return state_->options.wrapping == Wrapping::Clip ? clipWrappedJPEG2000 : frameWrappedJPEG2000;
}

std::string JPEG2000Analyzer::fault() const { return state_->fault; }

Metadata::Structural::FileDescriptor&
JPEG2000Analyzer::describe(Metadata::PartitionMetadata& metadata,
                           Metadata::Structural::FileDescriptor* present) {
    auto& descriptor = describeJPEG2000(metadata, present, {header(), state_->options, state_->colourSpace});
    descriptor.sampleRate(Types::Rational(editRate()));
    descriptor.essenceContainer(universalLabel());
    return descriptor;
}

bool JPEG2000Analyzer::hasMore() const { return !state_->ahead.empty(); }

std::uint64_t JPEG2000Analyzer::read(EditUnit& unit) {
    unit.data = std::move(state_->ahead);
    unit.index.flags = IndexTables::IndexEntry::RandomAccess;
    state_->fetch();
    return 1;
}

} // namespace MXF::Zelm::GenericContainer
