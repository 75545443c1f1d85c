/// Reads a primer and sets, and takes the chunks of Wave files out of them: all chunks of a track together
/// have no more bytes than were read.
#include "MXF/Zelm/GenericContainer/Analyzers/WaveOrigin.h"
#include "MXF/Zelm/Metadata/Structural/Initialize.h"
#include "MXF/Zelm/Metadata/Structural/Packages.h"
#include "MXF/Zelm/Metadata/Structural/Tracks.h"
#include "metadata.h"

using namespace MXF::Zelm;
using Metadata::Structural::SourcePackage;

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size) {
    static bool const isInitialized =
        (Metadata::Structural::initialize(), Metadata::Structural::initializeMappings(), true);
    Fuzz::require(isInitialized);
    Fuzz::passingOverBadInput([&] {
        auto const metadata = Fuzz::loadMetadata(data, size);
        for (auto const* const set : metadata->packages()) {
            auto const* const package = dynamic_cast<SourcePackage const*>(set);
            if (package == nullptr)
                continue;
            for (auto const* const track : package->tracks()) {
                if (track->trackID() == nullptr)
                    continue;
                std::uint64_t bytes = 0;
                for (auto const& chunk :
                     GenericContainer::originChunks(*metadata, *package, track->trackID()->value()))
                    bytes += chunk.content.size();
                Fuzz::require(bytes <= size);
            }
        }
    });
    return 0;
}
