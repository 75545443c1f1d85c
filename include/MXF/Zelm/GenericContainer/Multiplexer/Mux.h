/// Puts essence streams together into a generic container that is wrapped by frames (SMPTE 379M): a content
/// package for each edit unit of the package rate, in it the elements of all streams, with fill where padding
/// and alignment ask for it, and an index entry.
///
///     Mux mux(filePackage, label, {25, 1});
///     mux.addAnalyzer(systemItem, true, {0, 1});
///     mux.addAnalyzer(picture, false, {0, 1});
///     mux.addAnalyzer(sound, false, {0, 1});
///     mux.kagSize(512);
///     auto const source = mux.commit(); // the tracks are there; a partition writer pulls the packages
///
/// A content package, in its order; each item has the elements of one kind, in the order of their adding:
///
///     system item | picture item | sound item | data item | compound item
///
/// An element is key, length (4 bytes; 9 for an element that 3 bytes of length cannot tell) and the bytes of
/// the analyzer, fill follows it. A system analyzer gives whole packets, nothing is put before them. Where a
/// stream has ended, or has not begun, its element is missing.
///
/// The refusals are Exceptions::InvalidStructure and, for essence, Exceptions::InvalidFormat. What failed is
/// not to be used further.
#pragma once

#include "MXF/Zelm/GenericContainer/EssenceAnalyzer.h"
#include "MXF/Zelm/GenericContainer/Source.h"

#include <memory>

namespace MXF::Zelm::GenericContainer::Multiplexer {

class MXFZELM_EXPORT Mux : public Platform::Allocated {
public:
    using PartitionMetadataPtr = Templates::SharedPtr<Metadata::PartitionMetadata, Templates::LockedCounter>;

    /// Most analyzers of one kind, one less.
    static constexpr std::size_t MAXIMUM_ITEM_COUNT = 127;

    /// An element number that stands for the next one.
    static constexpr unsigned char automaticElementNumber = 128;

    enum PaddingKind {
        PadToElement = 0, ///< an element is followed by the fill that its alignment needs
        PadToItem = 1,    ///< each item is filled out to a size
        PadToEditUnit = 2 ///< each content package is filled out to a size
    };

    /// Describes the essence in a file package that `commit` makes in the metadata, which must have a Preface
    /// (its EssenceContainerData is the host's business); in none for null. `essenceContainer` is the label
    /// of the whole, all zero for the one that the analyzers share, or that of multiple wrappings.
    /// `packageRate` in content packages a second. Throws Exceptions::InvalidValue for a rate that is not
    /// positive.
    Mux(PartitionMetadataPtr metadata, Types::UniversalLabel const& essenceContainer,
        Templates::Rational<int> const& packageRate);

    /// Describes the essence in a file package, which is not owned and outlives the source; null for none.
    Mux(Metadata::Structural::SourcePackage* package, Types::UniversalLabel const& essenceContainer,
        Templates::Rational<int> const& packageRate);

    Mux(Mux const&) = delete;
    Mux& operator=(Mux const&) = delete;
    ~Mux();

    /// Adds an essence stream. With `isTimecodeSource` the timecode of its edit units goes into the timecode
    /// track of the file package (from the first such analyzer in package order). `temporalOffset`, in
    /// seconds, says when the stream begins; packages before have no such element. `elementNumber` is byte 15
    /// of the element key, from 128 on the number of analyzers of this kind that are there.
    ///
    /// Refusals: "Trying to add more than one SystemAnalyzer", "Trying to add more CompoundAnalyzers than
    /// allowed", "Trying to add more PictureAnalyzers than allowed", "Trying to add more than SoundAnalyzers
    /// than allowed", "Trying to add more than DataAnalyzers than allowed": 128 are.
    void addAnalyzer(EssenceAnalyzerPtr analyzer, bool isTimecodeSource,
                     Templates::Rational<std::int64_t> const& temporalOffset);
    void addAnalyzer(EssenceAnalyzerPtr analyzer, bool isTimecodeSource,
                     Templates::Rational<std::int64_t> const& temporalOffset, unsigned char elementNumber);

    /// Every element begins at a multiple of this and of what the analyzers require: it becomes the least
    /// common multiple of both; 0 for no alignment at all. Throws Exceptions::BaseException with "Type size
    /// exceeded" beyond 32 bits.
    void kagSize(unsigned int bytes);

    /// In bytes; 1 at first.
    unsigned int kagSize() const;

    /// What is filled out, and to which size in bytes, the fill included. An item that has no size, or one
    /// not above what is in it, is refused when the package is made. Sizes are in bytes, -1 for none.
    void paddToElement();
    void paddToItem(int system, int compound, int picture, int sound, int data);
    void paddToEditUnit(unsigned int size);
    PaddingKind paddingType() const;

    /// The ID of the first essence track, 256 at first; each further one is 256 above.
    void trackID(unsigned int first);

    /// Whether fill has delta entries of its own in the index, see FrameIndexTableBuilder.
    void indexFillPackets(bool isIndexed);

    /// Prepares the analyzers, makes tracks and descriptors and hands over the source of the content
    /// packages. The multiplexer is spent then: every other call throws Exceptions::InvalidChange.
    ///
    /// Refusals: "The essence format is invalid", "Trying to set two sources with temporal reordoring to the
    /// same generic container. MXF only allows for one source with temporal reordoring.", "Trying to set an
    /// essence analyzer with temporal reordoring and with editRate different from the content package.", "A
    /// source with temporal reordoring must start at offset zero to the essence container.", "Trying to force
    /// into the GC a system Item maximum value smaller then the system Item size. Please increate the system
    /// item maximum size".
    ///
    /// The source refuses, when a package is made: "One analyzer (CBE) has produced an edit unit larger than
    /// expected", "Trying to store more data in the Generic Container then the edit unit can hold.", "Not
    /// enough size to create filler in essence." (fill of less than 20 bytes).
    Templates::auto_ptr<Source> commit();

private:
    struct State;
    std::unique_ptr<State> state_;
};

} // namespace MXF::Zelm::GenericContainer::Multiplexer
