/// Progress of a long piece of work, on standard error: only when that is a terminal, and only after the work
/// has taken a second.
#pragma once

#include <chrono>
#include <cstdint>
#include <string>

namespace Zelm {

class Progress {
public:
    /// `total` is what `at` counts up to, for example the bytes of a file. With `ofBytes` speed and time left
    /// are shown too.
    Progress(std::string action, std::uint64_t total, bool ofBytes = false);

    /// Wipes the line.
    ~Progress();
    Progress(Progress const&) = delete;
    Progress& operator=(Progress const&) = delete;

    /// Tells how far the work is. Cheap enough to be called for every packet of a file.
    void at(std::uint64_t done) {
        if (active_ && ++calls_ % callsBetweenLooks == 0)
            look(done);
    }

    /// The same for work that tells of itself only some times a second.
    void update(std::uint64_t done) {
        if (active_)
            look(done);
    }

private:
    static constexpr unsigned callsBetweenLooks = 1u << 14;
    using Clock = std::chrono::steady_clock;

    void look(std::uint64_t done);
    std::string pace(Clock::time_point now, std::uint64_t done) const;

    std::string action_;
    std::uint64_t total_;
    bool ofBytes_;
    bool active_;
    std::size_t width_ = 0; // of the line that is shown
    unsigned calls_ = 0;
    Clock::time_point start_, next_;
};

} // namespace Zelm
