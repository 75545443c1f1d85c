#include "MetadataChoice.h"

#include "Text.h"

#include <MXF/Zelm/Exceptions/Exceptions.h>

#include <charconv>

namespace Zelm {

using namespace MXF::Zelm;
using MXFIO::Partition;

namespace {

/// An unfinished file up to this size is searched for its last partition even when speed matters.
constexpr std::uint64_t quickSearchSize = 4 * 1024 * 1024;

Partition* byNumber(Input& input, std::string const& name) {
    std::size_t number = 0;
    auto const [end, error] = std::from_chars(name.data(), name.data() + name.size(), number);
    if (error != std::errc() || end != name.data() + name.size())
        throw Exceptions::InvalidValue("'" + name +
                                       "' is no partition: give a number, header, footer or final");
    Partition* partition = &requireHeader(input);
    for (std::size_t i = 0; i < number && partition != nullptr; ++i)
        partition = input.reader.nextPartition(partition);
    return partition;
}

} // namespace

Partition& requireHeader(Input& input) {
    if (input.source.size() == 0)
        throw Exceptions::InvalidStructure("not an MXF file: it is empty");
    Partition* const header = input.reader.headerPartition();
    if (header == nullptr)
        throw Exceptions::InvalidStructure("not an MXF file: no header partition begins within " +
                                           grouped(searchLimit) + " bytes");
    return *header;
}

MetadataChoice chooseFinal(Input& input, bool quick) {
    MetadataChoice choice;
    Partition& header = requireHeader(input);
    bool const unfinished = header.partitionPack().isOpen() && header.partitionPack().footerPartition() == 0;
    if (quick && unfinished && input.source.size() > quickSearchSize && !input.reader.loadRIP()) {
        choice.partition = &header;
        return choice;
    }
    try {
        choice.partition = input.reader.backwardFirstPartitionWithFinalMetadata();
    } catch (Exceptions::SystemError const&) {
        throw;
    } catch (Exceptions::BaseException const& failure) {
        choice.faults.push_back({failure.offset(), failure.message()});
    }
    if (choice.partition == nullptr)
        choice.partition = &header;
    return choice;
}

MetadataChoice choosePartition(Input& input, std::string const& name) {
    if (name == "final")
        return chooseFinal(input, false);
    MetadataChoice choice;
    if (name == "header")
        choice.partition = &requireHeader(input);
    else if (name == "footer")
        choice.partition = input.reader.footerPartition();
    else
        choice.partition = byNumber(input, name);
    if (choice.partition == nullptr)
        throw Exceptions::InvalidValue("there is no partition '" + name + "'");
    return choice;
}

} // namespace Zelm
