/// Lists the edit units that an analyzer makes of an essence file: size, Adler-32 of the bytes (begun with
/// 0), offset to the place of showing, offset to the key frame, flags.
///
///     example-edit-units FILE
#include <MXF/Zelm/DataIO/File/FileSliceSource.h>
#include <MXF/Zelm/Exceptions/Exceptions.h>
#include <MXF/Zelm/GenericContainer/Analyzers/MPEG2VideoAnalyzer.h>

#include <cstdio>
#include <iostream>
#include <memory>

namespace {

using namespace MXF::Zelm;

unsigned adler32(DataIO::Chain const& chain) {
    std::uint32_t a = 0, b = 0;
    for (auto const& slice : chain)
        for (auto const byte : slice) {
            a = (a + byte) % 65521;
            b = (b + a) % 65521;
        }
    return b << 16 | a;
}

} // namespace

int main(int count, char** arguments) try {
    if (count != 2)
        return 2;
    GenericContainer::MPEG2VideoAnalyzer analyzer(
        std::make_shared<DataIO::File::FileSliceSource>(std::string_view(arguments[1])));
    if (!analyzer.preload())
        return 3;
    for (GenericContainer::EditUnit unit; analyzer.nextEditUnit(unit);)
        std::printf("%llu %08x %d %d %02x\n", static_cast<unsigned long long>(unit.data.size()),
                    adler32(unit.data), unit.index.temporalOffset, unit.index.keyFrameOffset,
                    unit.index.flags);
    if (!analyzer.finalize())
        std::cerr << analyzer.fault() << "\n";
    return 0;
} catch (MXF::Zelm::Exceptions::BaseException const& fault) {
    std::cerr << fault.message() << "\n";
    return 1;
}
