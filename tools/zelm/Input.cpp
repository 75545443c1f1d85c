#include "Input.h"

#include <MXF/Zelm/Metadata/Structural/FurtherDescriptors.h>
#include <MXF/Zelm/Metadata/Structural/Initialize.h>
#include <MXF/ZelmDictionary/Dictionary.h>

namespace Zelm {

using namespace MXF::Zelm;

SharedDictionary loadDictionary(std::vector<std::string> const& files) {
    // Never destroyed: taking thousands of definitions apart would be a tenth of the program's time on most
    // files.
    static auto const& dictionary = *new SharedDictionary(MXF::ZelmDictionary::standard());
    for (auto const& file : files) {
        DataIO::File::FileDataSource source{std::string_view(file)};
        KLV::Value whole(source, source.size());
        auto const bytes = whole.readRemaining();
        MXF::ZelmDictionary::load(
            *dictionary, std::string_view(reinterpret_cast<const char*>(bytes.data()), bytes.size()), file);
    }
    Metadata::Structural::initialize();
    Metadata::Structural::registerFurtherDescriptors(*dictionary);
    return dictionary;
}

} // namespace Zelm
