/// Progress of a long piece of work, on standard error: only when that is a terminal, and only after the work
/// has taken a second.
#pragma once

#include <chrono>
#include <cstdint>
#include <string>

namespace Zelm {

class Progress {
public:
    /// `total` is what `at` counts up to, for example the bytes of a file.
    Progress(std::string action, std::uint64_t total);

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

    std::string action_;
    std::uint64_t total_;
    bool active_;
    bool shown_ = false;
    unsigned calls_ = 0;
    Clock::time_point next_;
};

} // namespace Zelm
