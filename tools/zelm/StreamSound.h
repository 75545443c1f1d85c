/// Sound out of a stream that stands inside of a file beside pictures.
#pragma once

#include <MXF/Zelm/Essence/PieceSource.h>
#include <MXF/Zelm/Essence/Wave/WaveFormat.h>
#include <MXF/Zelm/Templates/Memory.h>

#include <functional>
#include <string>

namespace Zelm {

/// Samples that begin later, behind silence, or earlier, without their first ones, so that they begin with
/// the pictures. They end where a stream is cut off amid a packet.
class StreamSound : public MXF::Zelm::Essence::PieceSource {
public:
    using Source = MXF::Zelm::Templates::SharedPtr<MXF::Zelm::DataIO::SliceSource>;

    /// Is told why the sound ends early.
    using Note = std::function<void(std::string const&)>;

    /// `shift` is in instants: above 0 of silence before the sound, below 0 of the sound that is left out.
    StreamSound(Source samples, MXF::Zelm::Essence::Wave::WaveFormat const& format, std::int64_t shift,
                Note note);

private:
    bool produce(MXF::Zelm::DataIO::Chain& chain) override;
    bool nothingLeft() const override;
    bool giveSilence(MXF::Zelm::DataIO::Chain& chain);
    bool readSamples(MXF::Zelm::DataIO::Chain& chain);

    Source samples_;
    std::uint64_t silence_ = 0, dropped_ = 0; // bytes to come
    unsigned char silentByte_;
    Note note_;
    bool isCut_ = false;
};

} // namespace Zelm
