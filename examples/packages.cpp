/// Opens an MXF file and prints its packages.
#include <MXF/Zelm/DataIO/File/FileDataSource.h>
#include <MXF/Zelm/Exceptions/Exceptions.h>
#include <MXF/Zelm/MXFIO/Reader2.h>
#include <MXF/Zelm/Platform/Text.h>
#include <MXF/ZelmDictionary/Dictionary.h>

#include <iostream>

int main(int count, char** arguments) try {
    MXF::Zelm::DataIO::File::FileDataSource file{std::string_view(count > 1 ? arguments[1] : "")};
    MXF::Zelm::MXFIO::Reader2 reader(file, MXF::ZelmDictionary::standard(), 65536);
    auto const metadata = reader.backwardFirstPartitionWithFinalMetadata()->metadata();
    for (auto const* const package : metadata->packages())
        for (auto const& element : *package)
            std::cout << MXF::Zelm::Platform::toUtf8(package->name() + u"." + element->name() + u" = " +
                                                     element->baseValue()->toString() + u"\n");
} catch (MXF::Zelm::Exceptions::BaseException const& fault) {
    std::cerr << fault.message() << "\n";
    return 1;
}
