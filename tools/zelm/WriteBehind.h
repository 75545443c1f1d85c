/// Writes a file in a thread of its own, so that the essence that comes next is read and looked at meanwhile.
///
///     creator --> chains that wait, at most a few MiB --> thread --> file
#pragma once

#include <MXF/Zelm/DataIO/File/FileDataSink.h>

#include <condition_variable>
#include <deque>
#include <exception>
#include <mutex>
#include <thread>

namespace Zelm {

/// What the file throws comes out of the next call of any function, and nothing is written from then on: the
/// file has all bytes up to some place and none behind it. Used by one thread.
class WriteBehind : public MXF::Zelm::DataIO::RandomAccessDataSink, public MXF::Zelm::DataIO::SliceSink {
public:
    /// `file` is not owned, stays longer than this and is not used by others meanwhile. `isDurable` files are
    /// on the device at the end.
    WriteBehind(MXF::Zelm::DataIO::File::FileDataSink& file, bool isDurable);

    /// Writes what waits. What the file throws then goes unnoticed: call `finish` to hear of it.
    ~WriteBehind() override;
    WriteBehind(WriteBehind const&) = delete;
    WriteBehind& operator=(WriteBehind const&) = delete;

    void write(const unsigned char* buffer, std::uint64_t size) override;
    void write(MXF::Zelm::DataIO::Chain const& chain) override;

    /// The position of the next byte.
    std::uint64_t absoluteOffset() const override { return position_; }

    /// Moves to `position`, when all that waits is written.
    std::uint64_t seek(std::uint64_t position) override;

    /// Writes what waits; of a durable file, waits until the system has brought it to the device.
    void finish();

private:
    using Lock = std::unique_lock<std::mutex>;

    void synchronizeEarly(std::uint64_t written);
    void drain();
    void throwFailure();
    void run();
    bool takeNext(Lock& lock, MXF::Zelm::DataIO::Chain& chain);

    MXF::Zelm::DataIO::File::FileDataSink& file_;
    bool const isDurable_;
    std::uint64_t position_;
    std::uint64_t onTheWay_; // before it, bytes are on their way to the device

    std::mutex mutex_; // of all that follows
    std::condition_variable changed_;
    std::deque<MXF::Zelm::DataIO::Chain> waiting_;
    std::uint64_t bytes_ = 0; // that wait or are being written
    std::exception_ptr failure_;
    bool isEnding_ = false;

    std::thread thread_; // the last, so that it finds the others
};

} // namespace Zelm
