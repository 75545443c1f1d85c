/// Sources whose bytes are made piece by piece out of those of other sources.
#pragma once

#include "MXF/Zelm/DataIO/SliceSource.h"

namespace MXF::Zelm::Essence {

/// Gives what a derived class produces in pieces of its own choosing: packets taken out of their framing,
/// samples converted a block at a time. What was produced and is not read yet is kept, one piece of it.
/// Positions count the bytes that come out.
class MXFZELM_EXPORT PieceSource : public DataIO::SliceSource {
public:
    ~PieceSource() override;

    std::uint64_t absoluteOffset() const override { return position_; }

    /// True when no byte is left; where only empty pieces are left, the next read finds that out.
    bool endOfStream() const override { return pending_.empty() && nothingLeft(); }

    std::uint64_t read(std::uint64_t size, DataIO::Chain& chain) override;
    std::uint64_t skip(std::uint64_t size) override;

protected:
    /// Appends the next piece, which may be empty; false when there is none. Each call moves on in what the
    /// piece is made of.
    virtual bool produce(DataIO::Chain& chain) = 0;

    /// True when there is nothing to make a piece of.
    virtual bool nothingLeft() const = 0;

    /// Up to `size` bytes of one piece, none at the end; they count as read.
    DataIO::Chain next(std::uint64_t size);

    /// What is left of the last piece; it counts as read.
    DataIO::Chain takePending();

    /// Counts bytes as read that were given in another way.
    void passed(std::uint64_t size) { position_ += size; }

private:
    DataIO::Chain pending_;
    std::uint64_t position_ = 0;
};

} // namespace MXF::Zelm::Essence
