/// What the essence of a track is, and so how it stands in files of its own.
#pragma once

#include <MXF/Zelm/DataIO/Chain.h>
#include <MXF/Zelm/Essence/Wave/WaveFormat.h>
#include <MXF/Zelm/MXFIO/EssenceContainer.h>

#include <optional>
#include <string>
#include <string_view>

namespace Zelm {

struct EssenceForm {
    enum class Shape {
        Stream,        ///< one file, edit unit after edit unit
        Frames,        ///< a file for each edit unit
        Samples,       ///< a Wave file of the samples as they are
        AES3Samples,   ///< a Wave file of the samples, their auxiliary bits cleared
        EightChannels, ///< a Wave file of the samples in AES3 elements of eight channels
        PacketSamples  ///< a Wave file of the samples in packets of SMPTE 302M
    };

    Shape shape = Shape::Stream;
    std::string suffix = "bin"; ///< without the dot

    /// For the shapes of Wave files; of a stream of SMPTE 302M packets the samples in them.
    MXF::Zelm::Essence::Wave::WaveFormat wave = {};

    bool isWave() const { return shape >= Shape::Samples; }
    bool isPackets() const { return shape == Shape::Stream && wave.channels != 0; }
};

/// By the labels of the track's descriptor, else by the type of the element, else by its first bytes. `track`
/// is null when the metadata knows none.
EssenceForm essenceForm(MXF::Zelm::MXFIO::EssenceTrack const* track,
                        MXF::Zelm::GenericContainer::ElementKey element,
                        MXF::Zelm::DataIO::Chain const& data);

/// 'v' picture, 'a' sound, 'd' data.
char kindOf(MXF::Zelm::MXFIO::EssenceTrack const* track, MXF::Zelm::GenericContainer::ElementKey element);

/// The suffix of a document: by its MIME type, else by its first bytes.
std::string documentSuffix(std::string_view mimeType, MXF::Zelm::DataIO::Chain const& data);

/// True when the first bytes of a picture of a long GOP say that decoding can begin with it; true also for
/// suffixes of codings that have no such pictures.
bool startsDecoding(std::string_view suffix, MXF::Zelm::DataIO::Chain const& data);

} // namespace Zelm
