#include "Faults.h"

#include <MXF/Zelm/ByteCoders/Hexadecimal.h>

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

} // namespace Zelm
