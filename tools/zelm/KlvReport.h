/// The four forms in which `zelm klv` shows the packets of a file: a list or a summary, as text or as JSON.
#pragma once

#include "KeyNames.h"
#include "KlvWalk.h"

#include <memory>
#include <optional>
#include <string>

namespace Zelm {

/// What a report says of the file as a whole.
struct KlvFile {
    std::string name;
    std::uint64_t size = 0;
    std::uint64_t runIn = 0;
};

class KlvReport {
public:
    virtual ~KlvReport() = default;

    virtual void begin(KlvFile const& file) = 0;
    virtual void packet(KlvWalk::Packet const& packet) = 0;
    virtual void gap(KlvWalk::Gap const& gap) = 0;

    /// Prints what was read so far, as far as the form allows.
    virtual void flush() {}

    /// `fault` is the first that was met.
    virtual void end(std::optional<Fault> const& fault) = 0;
};

enum class SummaryOrder { Key, Bytes };

std::unique_ptr<KlvReport> makeKlvTextList(KeyNames const& names);
std::unique_ptr<KlvReport> makeKlvJsonList(KeyNames const& names);
std::unique_ptr<KlvReport> makeKlvTextSummary(KeyNames const& names, SummaryOrder order);
std::unique_ptr<KlvReport> makeKlvJsonSummary(KeyNames const& names, SummaryOrder order);

} // namespace Zelm
