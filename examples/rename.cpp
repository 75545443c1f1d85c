/// Gives the material package of an MXF file another name and today's date: in place, or into a new file.
#include <MXF/Zelm/MXFIO/Updater.h>
#include <MXF/Zelm/Metadata/Structural/GenericPackage.h>
#include <MXF/Zelm/Metadata/Structural/Initialize.h>
#include <MXF/Zelm/Platform/Text.h>
#include <MXF/ZelmDictionary/Dictionary.h>

#include <iostream>

namespace {

using namespace MXF::Zelm;
namespace Structural = Metadata::Structural;

void print(MXFIO::UpdateReport const& report) {
    for (auto const& change : report.changes)
        std::cout << change.setName << "." << change.propertyName << ": \"" << change.oldValue << "\" -> \""
                  << change.newValue << "\"\n";
    for (auto const& partition : report.plan.partitions)
        if (partition.role == MXFIO::PartitionUpdate::Role::CopyLeft)
            std::cout << "left as it was: the copy at " << partition.offset << ", " << partition.remark
                      << "\n";
    std::cout << report.bytesWritten << " bytes written, " << report.essenceBytesProven
              << " bytes of essence and index proven unchanged\n";
}

} // namespace

int main(int count, char** arguments) try {
    if (count != 3 && count != 4) {
        std::cerr << "usage: rename FILE.mxf NAME [NEW-FILE.mxf]\n";
        return 2;
    }
    Structural::initialize();
    if (MXFIO::UndoRecord::exists(std::string_view(arguments[1])))
        MXFIO::UndoRecord(std::string_view(arguments[1])).restore();
    MXFIO::Updater updater(std::string_view(arguments[1]), MXF::ZelmDictionary::standard(), 65536);
    auto& package = dynamic_cast<Structural::MaterialPackage&>(
        updater.metadata().find(Structural::MaterialPackage::classKey()));
    package.name(Types::UTF16String(Platform::toUtf16(arguments[2])));
    package.packageModifiedDate(Types::Timestamp::now());
    print(count == 3 ? updater.writeInPlace() : updater.writeToFile(std::string_view(arguments[3])));
} catch (MXF::Zelm::Exceptions::BaseException const& fault) {
    std::cerr << fault.message() << "\n";
    return 1;
}
