/// What readers of essence give, and what they are told to give.
#pragma once

#include "MXF/Zelm/GenericContainer/ContentPackage.h"
#include "MXF/Zelm/Templates/Rational.h"

namespace MXF::Zelm::MXFIO {

/// The essence of one edit unit: all tracks that are read.
struct MXFZELM_EXPORT EssenceUnit {
    std::uint32_t bodySID = 0;

    /// In stored order, counted from the start of the container.
    std::int64_t position = -1;

    /// Where it begins in the container.
    std::uint64_t streamOffset = 0;

    /// Its elements, with their offsets in the source, and the offset and size of it all. Of essence that is
    /// wrapped as a clip, an element here is a part of the clip's value, without a key and length of its own.
    GenericContainer::ContentPackage package = {};

    /// More of the same edit unit follows: of a clip that is too large to be given at once by a source that
    /// cannot seek.
    bool isContinued = false;
};

class IndexTableGatherer;

struct MXFZELM_EXPORT EssenceOptions {
    /// The numbers of the tracks that are read; all elements when empty. Others are passed over.
    Templates::vector<std::uint32_t> trackNumbers = {};

    /// Edit units a second of sound that is wrapped as a clip, if it is to be cut in other edit units than
    /// those of its track (often single samples). Not known: the track's.
    Templates::Rational<int> editRate = {};

    /// An element with more bytes is not read at once; in bytes.
    std::uint64_t largestElement = std::uint64_t{256} << 20;

    /// Where blocks come from; null for a pool of the reader's own.
    Templates::SharedPtr<DataIO::BlockFactory> factory = nullptr;

    /// Where index tables come from, so that several readers of one file read them once; null for a gatherer
    /// of the reader's own, which it does not keep.
    Templates::SharedPtr<IndexTableGatherer> gatherer = nullptr;

    bool isSelected(GenericContainer::ElementKey key) const;
};

} // namespace MXF::Zelm::MXFIO
