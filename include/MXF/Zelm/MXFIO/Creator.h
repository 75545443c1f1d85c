/// Writes a whole MXF file (SMPTE 377M) to a sink.
///
///     DataIO::File::FileDataSink sink("clip.mxf");
///     Creator creator(sink, metadata, {.index = CreatorSettings::Index::Body});
///     creator.addSource(std::move(source), 1, 2);
///     creator.run();
///
/// A sink that can seek gets a header that is closed and complete; on any other, the header stays open and
/// incomplete, and the footer is closed and complete.
#pragma once

#include "MXF/Zelm/DataIO/DataSink.h"
#include "MXF/Zelm/MXFIO/PullCreator.h"

namespace MXF::Zelm::MXFIO {

/// While the file is written, another program may read it: after each partition and after `flush` the sink
/// has all whole content packages up to there. Where the sink throws, the exception comes out, nothing more
/// is written, and what the sink has can be read up to its last whole content package. So it is with a
/// creator that is destroyed before the file is whole; only `finish` closes it.
class MXFZELM_EXPORT Creator : public Platform::Allocated {
public:
    /// `sink` is not owned and must outlive the creator; the file begins where it stands. `canUpdate` of the
    /// settings serves for sinks that can seek only. Throws as PullCreator does.
    Creator(DataIO::DataSink& sink, PullCreator::MetadataPtr metadata, CreatorSettings settings);
    ~Creator();
    Creator(Creator const&) = delete;
    Creator& operator=(Creator const&) = delete;

    /// As PullCreator has them.
    void addSource(Templates::auto_ptr<GenericContainer::Source> source, std::uint32_t bodySID,
                   std::uint32_t indexSID);
    void addGenericStream(GenericStream stream);

    /// Writes some more; false when the file is whole. Small packages are gathered before they go to the
    /// sink. Throws what PullCreator::next and the sink throw; after an exception of the sink
    /// Exceptions::InvalidChange.
    bool write();

    /// Writes all that is left.
    void run();

    /// Hands all that was gathered to the sink, and has a file sink hand it to the system: readers then find
    /// every content package written so far.
    void flush();

    /// Ends the file here: closes it so that it is whole and valid with what was taken from the sources so
    /// far.
    void finish();

    /// How far it is.
    PullCreator const& progress() const { return pull_; }

private:
    void writeGathered();
    void complete();
    void apply(FileUpdate const& update);
    void requireSoundSink() const;
    template <class Action>
    void onSink(Action action);

    DataIO::DataSink& sink_;
    DataIO::RandomAccessDataSink* seekable_; // the same, where written bytes may be changed
    std::uint64_t start_;                    // where the file begins in the sink
    PullCreator pull_;
    DataIO::Chain gathered_;
    bool whole_ = false;
    bool failed_ = false;
};

} // namespace MXF::Zelm::MXFIO
