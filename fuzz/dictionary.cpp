// Texts of definitions: whatever they hold, loading them ends with the library's exception or a usable
// dictionary.
#include "MXF/ZelmDictionary/Dictionary.h"
#include "MXF/ZelmDictionary/Names.h"

#include "MXF/Zelm/Exceptions/Exceptions.h"

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size) {
    MXF::Zelm::MetaMetadata::Dictionary dictionary;
    try {
        MXF::ZelmDictionary::load(dictionary, {reinterpret_cast<const char*>(data), size}, "fuzz");
    } catch (MXF::Zelm::Exceptions::InvalidFormat const&) {
        // Refused, as it should be.
    }
    if (size >= MXF::Zelm::KLV::Key::length) {
        MXF::Zelm::KLV::Key const key(data);
        MXF::ZelmDictionary::keyName(key);
        MXF::ZelmDictionary::labelName(key);
    }
    return 0;
}
