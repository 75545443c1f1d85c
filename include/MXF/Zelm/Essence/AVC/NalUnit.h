/// The units of which AVC streams are made (ISO/IEC 14496-10, network abstraction layer).
///
///     byte stream        00 00 01 | unit | 00 00 00 01 | unit | …
///     length prefixed    length (1 to 4 bytes) | unit | length | unit | …
///
///     unit               header (1): 0, reference (2), type (5) | payload, in which 00 00 03 stands for 00
///     00
#pragma once

#include "MXF/Zelm/DataIO/SyncWordFinder.h"

#include <optional>

namespace MXF::Zelm::Essence::AVC {

/// The types that tell something of pictures. Others are passed over.
enum class NalType : std::uint8_t {
    Slice = 1,
    SlicePartitionA = 2,
    IDRSlice = 5,
    SEI = 6,
    SequenceParameters = 7,
    PictureParameters = 8,
    AccessUnitDelimiter = 9,
    EndOfSequence = 10,
    EndOfStream = 11,
    Filler = 12
};

struct MXFZELM_EXPORT NalUnit {
    NalType type = NalType::Filler;

    /// 0 when no other picture is predicted from this one.
    std::uint8_t referenceIDC = 0;

    /// Of its header byte in the bytes that were given.
    std::uint64_t offset = 0;

    /// Behind the header byte, as it stands there.
    DataIO::Chain payload = {};

    bool isSlice() const {
        return type == NalType::Slice || type == NalType::SlicePartitionA || type == NalType::IDRSlice;
    }

    /// Up to `limit` bytes of the payload without emulation prevention bytes, side by side.
    DataIO::Slice bytes(std::size_t limit) const;
};

/// Takes the units of some bytes one by one. The last one may be cut off.
class MXFZELM_EXPORT NalReader : public Platform::Allocated {
public:
    /// A byte stream when `lengthSize` is 0; otherwise the bytes of each length, up to 4. Throws
    /// Exceptions::InvalidValue for more.
    NalReader(DataIO::Chain bytes, unsigned lengthSize);

    /// By the first bytes: a byte stream where a start code stands, else lengths of 4 bytes.
    explicit NalReader(DataIO::Chain const& bytes);

    /// The next unit, none behind the last. One without a header byte is passed over.
    std::optional<NalUnit> next();

private:
    std::optional<NalUnit> unit(std::uint64_t from, std::uint64_t to) const;
    bool nextRange(std::uint64_t& from, std::uint64_t& to);
    bool nextPrefixed(std::uint64_t& from, std::uint64_t& to);

    DataIO::Chain bytes_;
    unsigned lengthSize_;
    DataIO::SyncWordFinder finder_;
    std::optional<std::uint64_t> start_ = std::nullopt; // of the next unit
};

} // namespace MXF::Zelm::Essence::AVC
