#include "WriteBehind.h"

namespace Zelm {

using namespace MXF::Zelm;

namespace {

/// Bytes that wait at most, unless a single chain has more: enough that both threads go on.
constexpr std::uint64_t mostWaiting = std::uint64_t{2} << 20;

/// What the system is asked at once to bring to the device early: no more than the thread writes meanwhile.
constexpr std::uint64_t earlyBytes = std::uint64_t{8} << 20;

} // namespace

WriteBehind::WriteBehind(DataIO::File::FileDataSink& file, bool isDurable)
    : file_(file),
      isDurable_(isDurable),
      position_(file.absoluteOffset()),
      onTheWay_(position_),
      thread_([this] { run(); }) {}

WriteBehind::~WriteBehind() {
    {
        Lock const lock(mutex_);
        isEnding_ = true;
    }
    changed_.notify_all();
    thread_.join();
}

void WriteBehind::write(const unsigned char* buffer, std::uint64_t size) {
    write(DataIO::Slice::adopt(std::vector<unsigned char>(buffer, buffer + size)));
}

void WriteBehind::write(DataIO::Chain const& chain) {
    if (chain.empty())
        return;
    Lock lock(mutex_);
    changed_.wait(lock, [&] { return failure_ || bytes_ == 0 || bytes_ + chain.size() <= mostWaiting; });
    throwFailure();
    waiting_.push_back(chain);
    bytes_ += chain.size();
    position_ += chain.size();
    auto const written = position_ - bytes_;
    changed_.notify_all();
    lock.unlock();
    synchronizeEarly(written);
}

/// The system is asked by the caller's thread, since that takes time, of which the other has less.
void WriteBehind::synchronizeEarly(std::uint64_t written) {
    if (!isDurable_ || written < onTheWay_ + earlyBytes)
        return;
    file_.beginSynchronizing(onTheWay_, written - onTheWay_);
    onTheWay_ = written;
}

std::uint64_t WriteBehind::seek(std::uint64_t position) {
    drain();
    return position_ = file_.seek(position);
}

void WriteBehind::finish() {
    drain();
    if (isDurable_)
        file_.synchronize();
}

/// Afterwards the thread does nothing until there is something to write again.
void WriteBehind::drain() {
    Lock lock(mutex_);
    changed_.wait(lock, [&] { return failure_ || bytes_ == 0; });
    throwFailure();
}

void WriteBehind::throwFailure() {
    if (failure_)
        std::rethrow_exception(failure_);
}

void WriteBehind::run() {
    Lock lock(mutex_);
    for (DataIO::Chain chain; takeNext(lock, chain);) {
        lock.unlock();
        std::exception_ptr failure;
        try {
            file_.write(chain);
            file_.flush(); // what is written can be read by others, however little it is
        } catch (...) {
            failure = std::current_exception();
        }
        auto const size = chain.size();
        chain.clear();
        lock.lock();
        bytes_ -= size;
        failure_ = failure;
        changed_.notify_all();
    }
}

/// Waits for a chain; false when there is none and comes no more, or the file has failed.
bool WriteBehind::takeNext(Lock& lock, DataIO::Chain& chain) {
    changed_.wait(lock, [&] { return failure_ || isEnding_ || !waiting_.empty(); });
    if (failure_ || waiting_.empty())
        return false;
    chain = std::move(waiting_.front());
    waiting_.pop_front();
    return true;
}

} // namespace Zelm
