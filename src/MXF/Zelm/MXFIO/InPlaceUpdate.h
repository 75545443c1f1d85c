/// An update in place: which bytes it replaces, and the writing under an undo record.
#pragma once

#include "MXF/Zelm/MXFIO/UpdateContent.h"

namespace MXF::Zelm::MXFIO {

class InPlaceUpdate {
public:
    explicit InPlaceUpdate(UpdateContent const& content);

    UpdatePlan const& plan() const { return plan_; }

    /// Throws as Updater::writeInPlace does.
    UpdateReport write(FileOperations& operations) const;

private:
    /// Bytes that replace others.
    struct Patch {
        std::uint64_t position = 0;
        Bytes before;
        Bytes after; // as many
    };

    void fit(std::size_t index);
    void patch(std::size_t index);
    void addDifferences(std::uint64_t position, Bytes const& before, Bytes const& after);
    void requireNoEssence() const;
    void requireFileAsLoaded() const;
    void writePatches(WritableFile& file, UndoRecord& record) const;

    UpdateContent const& content_;
    UpdatePlan plan_;
    std::vector<Patch> patches_; // ascending
};

} // namespace MXF::Zelm::MXFIO
