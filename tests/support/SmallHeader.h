/// Header metadata over the standard dictionary, with a package whose track is complete.
#pragma once

#include "MXF/Zelm/Metadata/PartitionMetadata.h"
#include "MXF/Zelm/Metadata/Structural/Building.h"
#include "MXF/Zelm/Metadata/Structural/ContentStorage.h"
#include "MXF/Zelm/Metadata/Structural/GenericPackage.h"
#include "MXF/Zelm/Metadata/Structural/Identification.h"
#include "MXF/Zelm/Metadata/Structural/Preface.h"
#include "MXF/Zelm/Metadata/Structural/Sequence.h"
#include "MXF/Zelm/Metadata/Structural/StructuralComponent.h"
#include "MXF/Zelm/Metadata/Structural/Track.h"

#include "support/Bytes.h"
#include "support/StandardMetadata.h"

namespace MXF::Zelm::Test {

using Metadata::Structural::create;

/// Preface, content storage, and one package with one track.
struct SmallHeader {
    SmallHeader() {
        preface.contentStorage(storage);
        storage.addPackage(package);
        package.addTrack(track);
        track.trackID(Types::UInt32(std::uint32_t{2}));
        track.sequence(sequence);
    }

    std::unique_ptr<Metadata::PartitionMetadata> metadata = standardMetadata();
    Metadata::Structural::Preface& preface = create<Metadata::Structural::Preface>(*metadata);
    Metadata::Structural::ContentStorage& storage = create<Metadata::Structural::ContentStorage>(*metadata);
    Metadata::Structural::MaterialPackage& package = create<Metadata::Structural::MaterialPackage>(*metadata);
    Metadata::Structural::TimelineTrack& track = create<Metadata::Structural::TimelineTrack>(*metadata);
    Metadata::Structural::Sequence& sequence = create<Metadata::Structural::Sequence>(*metadata);
};

} // namespace MXF::Zelm::Test
