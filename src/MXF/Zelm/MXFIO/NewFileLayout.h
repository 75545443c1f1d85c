/// The layout of a file that is written anew: where each partition comes to stand, and the stretches of bytes
/// that make the file.
#pragma once

#include "MXF/Zelm/MXFIO/UpdateContent.h"

namespace MXF::Zelm::MXFIO {

/// A stretch of the new file.
struct Piece {
    std::uint64_t length = 0;
    std::optional<std::uint64_t> oldOffset = {}; ///< copied from the old file
    bool isEssence = false;                      ///< index tables and body
    Bytes bytes = {};                            ///< when it is not copied; without bytes it is zeros
};

class NewFileLayout {
public:
    /// `reserve` as NewFileOptions has it. Throws Exceptions::InvalidStructure when the survey of the file
    /// met faults.
    NewFileLayout(UpdateContent const& content, std::uint64_t reserve);

    UpdatePlan const& plan() const { return plan_; }

    /// In the order of the new file, none of them empty.
    std::vector<Piece> const& pieces() const { return pieces_; }

private:
    /// A partition of the new file.
    struct Placed {
        std::uint64_t offset = 0;
        std::uint64_t oldLeadSize = 0; ///< the pack and the fill behind it
        std::uint64_t leadSize = 0;
        std::uint64_t oldMetadataSize = 0; ///< as far as the partition reaches
        std::uint64_t metadataSize = 0;
        std::uint64_t essenceSize = 0; ///< index tables and body

        std::uint64_t end() const { return offset + leadSize + metadataSize + essenceSize; }
    };

    void requireSoundFile() const;
    std::uint64_t gridOf(SurveyedPartition const& partition) const;
    std::uint64_t metadataSize(std::size_t index, std::uint64_t reserve) const;
    Placed place(std::size_t index, std::uint64_t offset, std::uint64_t reserve) const;
    void describe(std::size_t index);

    PackHead headFor(std::size_t index) const;
    std::uint64_t relative(std::uint64_t offset) const { return offset - content_.file().runInLength(); }
    std::uint64_t footerFor(std::size_t index) const;
    void add(Piece piece);
    void addOld(std::uint64_t offset, std::uint64_t length, bool isEssence = false);
    void addFill(KLV::Key const& key, std::uint64_t length);
    void addPartition(std::size_t index);
    void addMetadata(std::size_t index);
    Bytes randomIndex() const;
    bool patchRandomIndex(Bytes& pack) const;
    Bytes makeRandomIndex(unsigned char berLength) const;

    UpdateContent const& content_;
    std::uint64_t grid_ = 1; // of the partition with the largest one
    std::vector<Placed> placed_;
    UpdatePlan plan_;
    std::vector<Piece> pieces_;
};

} // namespace MXF::Zelm::MXFIO
