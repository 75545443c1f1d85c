/// Walks the KLV packets of a file from one to the next, values passed over, and tells in plain words what
/// stops it.
#pragma once

#include "Faults.h"
#include "Input.h"

#include <cstdint>
#include <optional>

namespace Zelm {

class KlvWalk {
public:
    /// One packet. Offsets are those of the file.
    struct Packet {
        MXF::Zelm::KLV::Key key;
        std::uint64_t offset = 0;
        unsigned char berLength = 0;
        std::uint64_t length = 0;  ///< of the value, as the packet says
        std::uint64_t present = 0; ///< bytes of the value that the file holds

        std::uint64_t valueOffset() const { return offset + MXF::Zelm::KLV::Key::size() + berLength; }
        std::uint64_t end() const { return valueOffset() + present; }
        std::uint64_t bytes() const { return end() - offset; }
    };

    /// Starts at `offset`. `input` must outlive the walk, and its source may be moved between two steps.
    KlvWalk(Input& input, std::uint64_t offset);

    /// Reads the next packet; false at the end of the file or at a fault. A packet whose value the file cuts
    /// off is still given; the fault then stops the next call.
    bool next(Packet& packet);

    /// What stopped the walk, if it was not the end of the file.
    std::optional<Fault> const& fault() const { return fault_; }

    /// Bytes of a file that are no packet.
    struct Gap {
        std::uint64_t offset = 0;
        std::uint64_t length = 0;
    };

    /// After a fault: moves on to the next packet within the search limit and forgets the fault. Only a key
    /// with a length that fits the file counts. Returns what was passed over, which begins where a packet was
    /// expected or, when a value was cut off, with that value; none when there is no such packet.
    std::optional<Gap> resynchronise();

    /// Where the next packet is expected.
    std::uint64_t offset() const { return next_; }

private:
    void read(Packet& packet);
    bool fits(std::uint64_t offset, Packet& packet);
    Fault explain(MXF::Zelm::Exceptions::BaseException const& failure);

    MXF::Zelm::DataIO::File::FileDataSource& source_;
    MXF::Zelm::KLV::Reader& reader_;
    std::uint64_t next_;
    std::uint64_t gapStart_ = 0; ///< after a fault, where the gap begins
    std::optional<Fault> fault_;
};

} // namespace Zelm
