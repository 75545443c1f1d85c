#include "MXF/ZelmDictionary/Dictionary.h"

#include "Loader.h"
#include "Texts.h"

namespace MXF::ZelmDictionary {

void load(Zelm::MetaMetadata::Dictionary& dictionary, std::string_view text, std::string_view sourceName) {
    Loader loader(dictionary, text, sourceName);
    loader.commit();
}

void loadStandard(Zelm::MetaMetadata::Dictionary& dictionary) {
    load(dictionary, standardText(), "standard.zdict");
}

SharedDictionary standard() {
    SharedDictionary dictionary(new Zelm::MetaMetadata::Dictionary);
    loadStandard(*dictionary);
    return dictionary;
}

} // namespace MXF::ZelmDictionary
