/// The work of `zelm extract`: reads the body of a file once, for all tracks together, and hands out what it
/// finds.
#pragma once

#include "Documents.h"
#include "ExtractTracks.h"
#include "Faults.h"

#include <deque>
#include <stdexcept>

namespace Zelm {

struct ExtractOptions {
    TrackOptions tracks;
    ExtractRange range;
    std::string folder;    ///< made when it is not there; empty for none
    bool listOnly = false; ///< finds out what there is, and writes nothing

    /// Is told of each file that is whole.
    ExtractTracks::FileListener whenComplete = {};
};

/// What came of it.
struct ExtractResult {
    std::deque<ExtractTrack> const* tracks = nullptr;
    std::vector<Document> documents;
    std::vector<std::string> parts; ///< files that are not whole, with their ".part"
    std::vector<std::string> early; ///< why there is less essence than there should be
    std::vector<Fault> faults;      ///< of the file
};

/// The options cannot be followed: the message says why.
struct CannotExtract : std::runtime_error {
    using std::runtime_error::runtime_error;
};

class ExtractPump;

class Extraction {
public:
    explicit Extraction(ExtractOptions options);
    ~Extraction();

    /// From a file. Throws CannotExtract before anything is written, Interrupted, Exceptions::SystemError,
    /// and Exceptions::InvalidStructure when it is no MXF file. Faults within the file end up in the result.
    void run(Input& input);

    /// The same from a source that cannot seek.
    void run(MXF::Zelm::DataIO::DataSource& source, SharedDictionary const& dictionary);

    ExtractResult const& result() const { return result_; }

    /// Ends the files that are being written as they are. They are among the parts of the result then.
    void abandon();

private:
    using Metadata = MXF::Zelm::MXFIO::Partition::MetadataPtr;

    // From a file
    Metadata findMetadata(Input& input);
    void findContainers(Input& input);
    void prepare(Input& input, MXF::Zelm::MXFIO::EssenceContainer const& container,
                 std::shared_ptr<MXF::Zelm::MXFIO::IndexTableGatherer> const& gatherer);
    void requireUnits(MXF::Zelm::MXFIO::EssenceReader& reader, WantedUnits const& wanted, bool isClip) const;
    void prepareDocuments(Input& input, Metadata const& metadata);
    void pumpAll(std::uint64_t size);
    bool step(ExtractPump& pump);
    void writeDocuments();

    // From a source that cannot seek
    void meetInSequence(MXF::Zelm::MXFIO::EssenceUnit const& unit,
                        MXF::Zelm::Templates::vector<MXF::Zelm::MXFIO::EssenceContainer> const& known);

    bool isBehindRange(std::int64_t position) const;

    bool isChosen(Document const& document) const;
    void checkChoices() const;
    void checkFree() const;
    void openNew(std::optional<std::uint64_t> dataBytes);
    void abandon(ExtractTrack& track);
    void complete();
    void note(MXF::Zelm::Exceptions::BaseException const& fault);

    ExtractOptions options_;
    FileInfo info_;
    std::deque<MXF::Zelm::MXFIO::EssenceContainer> containers_; ///< stay where they are
    ExtractTracks tracks_;
    std::vector<std::unique_ptr<ExtractPump>> pumps_;
    ExtractResult result_;
};

} // namespace Zelm
