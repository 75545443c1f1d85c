#include "Faults.h"

#include <MXF/Zelm/ByteCoders/Hexadecimal.h>

#include <algorithm>
#include <iostream>

namespace Zelm {

using namespace MXF::Zelm;

std::string faultText(std::string_view message, std::optional<std::uint64_t> offset) {
    std::string text(message);
    while (!text.empty() && text.back() == '.')
        text.pop_back();
    if (offset)
        text += " at 0x" + ByteCoders::toHexadecimal(*offset);
    return text;
}

void reportFault(std::string_view file, std::string_view message, std::optional<std::uint64_t> offset) {
    std::cout.flush();
    std::cerr << "zelm: " << file << ": " << faultText(message, offset) << "\n";
}

ExitStatus reportFault(std::string_view file, Exceptions::BaseException const& fault) {
    if (dynamic_cast<Exceptions::SystemError const*>(&fault) != nullptr) {
        std::cout.flush();
        std::cerr << "zelm: " << fault.message() << "\n"; // the message names the file
        return SystemFailed;
    }
    reportFault(file, fault.message(), fault.offset());
    return NotMXF;
}

void reportRefusal(std::initializer_list<std::string_view> files, std::string_view message) {
    auto const separator = message.find(": ");
    auto const name = message.substr(0, separator);
    bool const isNamed =
        separator != std::string_view::npos && std::find(files.begin(), files.end(), name) != files.end();
    reportFault(isNamed ? name : *files.begin(), isNamed ? message.substr(separator + 2) : message);
}

} // namespace Zelm
