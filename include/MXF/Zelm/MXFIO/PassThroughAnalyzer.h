/// Hands the edit units of another MXF file out unchanged: to wrap essence anew, whatever it is.
///
///     auto const input = std::make_shared<PassThroughReader>(reader, container);
///     for (auto const& track : container.tracks)
///         mux.addAnalyzer(std::make_shared<PassThroughAnalyzer>(input, track.trackNumber), …);
#pragma once

#include "MXF/Zelm/GenericContainer/Analyzers/BasicAnalyzer.h"
#include "MXF/Zelm/MXFIO/EssenceReader.h"

#include <deque>
#include <limits>

namespace MXF::Zelm::MXFIO {

class PassThroughAnalyzer;

struct MXFZELM_EXPORT PassThroughOptions {
    /// The edit units that are handed out, in stored order: from `first` to before `end`. Essence whose
    /// pictures depend on others should begin at one that needs none before, see
    /// `PassThroughReader::keyFrameBefore`.
    std::int64_t first = 0;
    std::int64_t end = std::numeric_limits<std::int64_t>::max();

    /// Sound with samples of one size may be wrapped in another way than it is. Unknown for the same.
    GenericContainer::Wrapping wrapping = GenericContainer::Wrapping::Unknown;

    /// Edit units a second of a clip that is to be wrapped by frames; unknown for the container's rate.
    Templates::Rational<int> editRate = {};
};

/// Reads a container once for the analyzers of all its tracks, which share it and are read in turn, as a
/// multiplexer does: what one is ahead of the others waits in memory. Clips that are written one after the
/// other want a reader each. Not locked: one reader and its analyzers, one thread.
class MXFZELM_EXPORT PassThroughReader : public Platform::Allocated {
public:
    /// What may wait for one track, in bytes.
    static constexpr std::uint64_t largestLead = std::uint64_t{256} << 20;

    /// `reader` is not owned and must outlive this.
    PassThroughReader(Reader2& reader, EssenceContainer container, PassThroughOptions const& options = {});
    ~PassThroughReader();

    EssenceContainer const& container() const { return container_; }
    PassThroughOptions const& options() const { return options_; }

    /// Edit units a second of what is read.
    Templates::Rational<int> editRate() const { return editRate_; }

    /// How the container is wrapped now.
    GenericContainer::Wrapping wrapping() const { return wrapping_; }

    /// The edit unit at which decoding must begin for `position`, which is also the answer where no index
    /// tells.
    std::int64_t keyFrameBefore(std::int64_t position);

private:
    friend class PassThroughAnalyzer;

    struct Item {
        std::int64_t position;
        KLV::Key key;
        DataIO::Chain data;
    };

    /// The edit units of a track that were read and not handed out.
    struct Queue {
        std::uint32_t trackNumber;
        std::deque<Item> items;
        std::uint64_t bytes = 0;
    };

    Queue& add(std::uint32_t trackNumber);
    bool fill(Queue& queue);
    bool readUnit();
    void take(GenericContainer::Element const& element, Queue& queue, std::int64_t position);
    Item pop(Queue& queue);
    EssenceReader& essence();
    void walkPictures();
    IndexTables::EditUnitLocator const* index();
    std::uint32_t constantSize(Queue& queue);

    Reader2& reader_;
    EssenceContainer container_;
    PassThroughOptions options_;
    Templates::Rational<int> editRate_ = {};
    GenericContainer::Wrapping wrapping_ = GenericContainer::Wrapping::Unknown;
    std::deque<Queue> queues_; // references to them stay valid
    Templates::auto_ptr<EssenceReader> essence_;
    Templates::auto_ptr<IndexTables::IndexTable> walkedTable_;
    Templates::auto_ptr<IndexTables::EditUnitLocator> walked_;
    bool isWalked_ = false;
};

/// One track. Label, keys and descriptor are those of the file, also of essence that nobody knows; where the
/// wrapping changes, they change with it. The descriptor is copied with what it refers to and with private
/// properties (`Metadata::copyWithReferenced`); its SequenceOffset follows the first edit unit. Flags and
/// offsets for the index are those of the file's index, or of a walk over its pictures when it has none and
/// they can be read.
class MXFZELM_EXPORT PassThroughAnalyzer
    : public GenericContainer::BasicAnalyzer<GenericContainer::EssenceAnalyzer> {
public:
    /// Make those of all tracks before any is read. Throws Exceptions::InvalidStructure when the container
    /// has no track of that number, or its essence cannot be wrapped as the options want it.
    PassThroughAnalyzer(Templates::SharedPtr<PassThroughReader> reader, std::uint32_t trackNumber);
    ~PassThroughAnalyzer() override;

    using BasicAnalyzer::editRate;
    Templates::Rational<int> editRate() const override;
    bool preload() override;
    EssenceAnalyzerType essenceAnalyzerType() const override;
    Types::UniversalLabel universalLabel() const override;
    bool isCBE() const override;
    using BasicAnalyzer::boundedEditUnitSize;
    unsigned int boundedEditUnitSize() const override;
    bool containsTemporalDependencies() const override;
    unsigned char itemTypeIdentifier() const override;
    unsigned char essenceElementType() const override;

    /// Private keys stay private.
    KLV::Key proposeKey(KLV::Key const& key) const override;

protected:
    Metadata::Structural::FileDescriptor& describe(Metadata::PartitionMetadata& metadata,
                                                   Metadata::Structural::FileDescriptor* present) override;
    bool hasMore() const override;
    std::uint64_t read(GenericContainer::EditUnit& unit) override;

private:
    bool isConverted() const;
    bool givesSamples() const;
    bool isPicture() const;
    GenericContainer::EditUnitIndex indexOf(std::int64_t position) const;
    bool isReordered() const;

    Templates::SharedPtr<PassThroughReader> reader_;
    EssenceTrack const* track_;
    PassThroughReader::Queue* queue_;
    GenericContainer::Wrapping wanted_;
    KLV::Key sourceKey_ = {};
    std::uint32_t constantSize_ = 0;
    bool isReordered_ = false;
};

} // namespace MXF::Zelm::MXFIO
