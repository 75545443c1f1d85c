/// What a descriptor tells of the groups of pictures of video (SMPTE 381M).
#pragma once

#include "MXF/Zelm/GenericContainer/Analyzers/VideoAnalyzer.h"

#include <algorithm>
#include <string>

namespace MXF::Zelm::GenericContainer {

/// Counts what is the same in all groups of pictures, and what is the most.
class GroupStatistics {
public:
    void add(CodedPicture const& coded);

    /// All groups of which it is told are closed, there being one.
    bool areClosed() const { return groups_ != 0 && !hasOpen_; }

    /// The same kinds of pictures in the same order, but for a last group that is shorter.
    bool areIdentical() const;

    /// The most pictures in a group.
    std::size_t longest() const { return std::max(longest_, kinds_.size()); }

    /// The most B pictures in a row, and whether all rows between two anchors have as many.
    std::size_t mostBPictures() const { return mostB_; }
    bool hasConstantBPictures() const { return !bVary_; }

    bool isIntraOnly() const { return !hasPredicted_; }
    std::uint64_t sequenceHeaders() const { return sequenceHeaders_; }
    std::uint64_t pictures() const { return pictures_; }
    bool hasProgressive() const { return hasProgressive_; }
    bool hasInterlaced() const { return hasInterlaced_; }

private:
    static constexpr std::size_t longestKept = 1024; // of the kinds of a group that are compared

    void endGroup();
    void addB();
    void endRow();

    std::string kinds_; // of the group, a letter a picture
    std::string first_; // of the first group
    std::size_t longest_ = 0;
    std::size_t row_ = 0, mostB_ = 0, anchors_ = 0;
    std::optional<std::size_t> usualRow_;
    std::uint64_t groups_ = 0, ended_ = 0, sequenceHeaders_ = 0, pictures_ = 0;
    bool hasOpen_ = false, differ_ = false, bVary_ = false, hasPredicted_ = false;
    bool hasProgressive_ = false, hasInterlaced_ = false;
};

} // namespace MXF::Zelm::GenericContainer
