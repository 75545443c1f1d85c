/// Where the essence of a track goes: one file, a file for each edit unit, a Wave file, a place in a Wave
/// file that several tracks share.
#pragma once

#include "EssenceForm.h"
#include "OutputFile.h"

#include <MXF/Zelm/Essence/Wave/WaveFormat.h>

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace Zelm {

/// Takes edit unit after edit unit, each in one piece or several.
class TrackOutput {
public:
    virtual ~TrackOutput() = default;

    /// Where in the file the value of the element begins that is taken next.
    virtual void place(std::uint64_t) {}
    virtual void beginUnit(std::int64_t) {}
    virtual void take(MXF::Zelm::DataIO::Chain const& data) = 0;
    virtual void endUnit() {}

    /// Ends the files; each gets its name.
    virtual void complete() = 0;

    /// Ends what is being written; it keeps its name with ".part". Adds those names to `parts`.
    virtual void abandon(std::vector<std::string>& parts) = 0;
};

/// Names of files: what stands before the suffix, and how each is opened.
struct OutputNames {
    std::string base;   ///< folder, stem and track: "out/clip_v1"
    std::string suffix; ///< without the dot

    /// Everything goes to standard output.
    bool toStandardOutput = false;
    OutputOptions options = {};

    /// Is told of each file that is whole.
    std::function<void(OutputFile const&)> whenComplete = {};

    /// "out/clip_v1.m2v"
    std::string file() const;

    /// "out/clip_v1_00000250.j2c"
    std::string frame(std::int64_t position) const;
};

std::unique_ptr<TrackOutput> makeStreamOutput(OutputNames names);
std::unique_ptr<TrackOutput> makeFramesOutput(OutputNames names);

/// A Wave file of one sound, or of several side by side.
class WaveOutput {
public:
    virtual ~WaveOutput() = default;
    virtual void add(std::size_t sound, MXF::Zelm::DataIO::Chain samples) = 0;
    virtual void complete() = 0;
    virtual void abandon(std::vector<std::string>& parts) = 0;
};

struct WaveSetup {
    MXF::Zelm::Essence::Wave::WaveFormat format;
    MXF::Zelm::Essence::Wave::BroadcastExtension broadcast;
    std::optional<std::uint64_t> dataBytes;                       ///< when it is known before
    std::vector<MXF::Zelm::Essence::Wave::KeptChunk> chunks = {}; ///< of the file that the sound came from
};

std::shared_ptr<WaveOutput> makeWaveOutput(OutputNames names, WaveSetup const& setup);

/// `setup.format` has the channels of all sounds together; `channels` are those of each.
std::shared_ptr<WaveOutput> makeMixOutput(OutputNames names, WaveSetup const& setup,
                                          std::vector<unsigned> const& channels);

/// Puts the samples of a track, as `form` says that they stand in it, into `wave`. The first sound of a file
/// ends it.
std::unique_ptr<TrackOutput> makeSoundOutput(EssenceForm const& form, std::shared_ptr<WaveOutput> wave,
                                             std::size_t sound);

} // namespace Zelm
