#include "KeyNames.h"

#include "Text.h"

#include <MXF/Zelm/ByteCoders/Hexadecimal.h>
#include <MXF/Zelm/Platform/Text.h>
#include <MXF/ZelmDictionary/Names.h>

namespace Zelm {

using namespace MXF::Zelm;

std::string hexKey(KLV::Key const& key) {
    std::string text;
    for (std::size_t i = 0; i < KLV::Key::size(); i += 4)
        text += (i == 0 ? "" : ".") + ByteCoders::toHexadecimal(key.rawBuffer() + i, 4);
    return text;
}

KeyNames::KeyNames(SharedDictionary dictionary) : dictionary_(std::move(dictionary)) {}

std::string KeyNames::name(KLV::Key const& key) const {
    if (dictionary_ && MXF::ZelmDictionary::className(key).empty())
        if (auto const* const definition = dictionary_->find(key))
            if (auto const* const found = definition->findProperty(u"name"))
                return printable(Platform::toUtf8(*found));
    return MXF::ZelmDictionary::keyName(key);
}

} // namespace Zelm
