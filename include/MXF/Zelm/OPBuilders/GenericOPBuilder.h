/// Builds files of the generalized operational patterns 1a to 3c (SMPTE 377M, 378M, 391M to 393M, 407, 408):
/// header metadata with a material package that plays file packages, and the creator that writes it with its
/// essence.
///
///     GenericOPBuilder builder(dictionary, {.product = …, .startTimecode = …});
///     builder.addFrameWrapped({.packageRate = {25, 1}, .analyzers = {picture, left, right}});
///     builder.creator(sink)->run();
///
/// Without a word about it, the material package plays all file packages at once: pattern 1a of one, 1b of
/// several. Items say otherwise:
///
///     builder.addItem({{&first}});                  // 2a: one after the other
///     builder.addItem({{&second}});
///     builder.addItem({{&first, 25, 100}});         // 3a: a part of one
///     builder.addItem({{&pictures}, {&sound}});     // b: several at once
///     builder.addMaterialPackage();                 // c: what follows is an alternative to what was before
///
/// The pattern's label is the lowest that fits, and its qualifiers tell the truth of the file.
#pragma once

#include "MXF/Zelm/MXFIO/Creator.h"
#include "MXF/Zelm/Metadata/Structural/Packages.h"
#include "MXF/Zelm/OPBuilders/BuilderOptions.h"

namespace MXF::Zelm::OPBuilders {

/// A file package, or a part of one, that an item plays. Positions in edit units of the package's first
/// essence track.
struct MXFZELM_EXPORT ItemPart {
    /// Of the builder's metadata; not owned.
    Metadata::Structural::SourcePackage const* package = nullptr;

    /// Where the part begins.
    std::int64_t start = 0;

    /// Its length, cut to what the package has at the end; absent for all from the start on.
    std::optional<std::int64_t> length = std::nullopt;

    bool isWhole() const { return start == 0 && !length; }
};

/// Shares the metadata with the creators it makes; they may outlive the builder. Not locked.
class MXFZELM_EXPORT GenericOPBuilder : public Platform::Allocated {
public:
    using DictionaryPtr = Metadata::PartitionDictionary::DictionaryPtr;
    using MetadataPtr = MXFIO::PullCreator::MetadataPtr;
    using SourcePackage = Metadata::Structural::SourcePackage;

    /// Makes Preface and material package. Throws as `Metadata::Structural::createPreface`.
    GenericOPBuilder(DictionaryPtr dictionary, BuilderOptions options);
    virtual ~GenericOPBuilder();
    GenericOPBuilder(GenericOPBuilder const&) = delete;
    GenericOPBuilder& operator=(GenericOPBuilder const&) = delete;

    /// To be changed freely: names, comments, descriptive metadata.
    MetadataPtr const& metadata() const;

    /// A file package, with a timecode track when there is a start timecode and a rate for it. Its descriptor
    /// and essence tracks come from a multiplexer or clip wrapper, or from the host.
    virtual SourcePackage& addFilePackage(FilePackageOptions const& options = {});

    /// The essence of a file package made here, which has its tracks and descriptor. Throws
    /// Exceptions::InvalidStructure for a package that has no stream in this file, or has a source already.
    virtual void addSource(SourcePackage const& package,
                           Templates::auto_ptr<GenericContainer::Source> source);

    /// A file package with the essence of analyzers, and the multiplexer's work. Throws what
    /// `addFilePackage`, `addSource` and the multiplexer throw.
    SourcePackage& addFrameWrapped(FrameWrapping const& wrapping, FilePackageOptions const& options = {});

    /// The same with a clip wrapper.
    SourcePackage& addClipWrapped(ClipWrapping const& wrapping, FilePackageOptions const& options = {});

    /// Data that the metadata refers to; its SID must not be that of a file package.
    void addGenericStream(MXFIO::GenericStream stream);

    /// What the (last) material package plays next: the parts together. Each item has the same kinds of
    /// tracks in the same order. Throws Exceptions::InvalidStructure for an item without packages or with an
    /// unknown one, Exceptions::InvalidValue for a negative start or length.
    void addItem(Templates::vector<ItemPart> parts);

    /// A track of the (last) material package that plays a package in another file, for as long as its first
    /// track is.
    void addForeignTrack(ForeignTrack const& track);

    /// Another material package, an alternative; its items follow.
    Metadata::Structural::MaterialPackage&
    addMaterialPackage(Metadata::Structural::PackageOptions const& options = {});

    /// Makes the tracks of the material packages and the pattern's label, and the creator of the file. Once
    /// only; the builder is spent then. Throws Exceptions::InvalidStructure when there is no file package,
    /// when one in this file has no source, or when items do not fit each other; and what the creators throw.
    Templates::auto_ptr<MXFIO::Creator> creator(DataIO::DataSink& sink);
    Templates::auto_ptr<MXFIO::PullCreator> pullCreator();

protected:
    /// The label of the pattern, when all tracks are there.
    virtual Types::UniversalLabel pattern() const;

private:
    struct State;
    MXFIO::CreatorSettings prepare();
    template <class AnyCreator>
    void handOver(AnyCreator& creator);

    Templates::SharedPtr<State> state_;
};

} // namespace MXF::Zelm::OPBuilders
