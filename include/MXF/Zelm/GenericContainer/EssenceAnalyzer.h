/// Sources of essence for a generic container: an analyzer reads one essence stream, cuts it into edit units
/// and describes it. A host may write its own: a small class that derives from PictureAnalyzer,
/// SoundAnalyzer, DataAnalyzer or CompoundAnalyzer.
///
/// Who calls what (a multiplexer or clip wrapper, in this order):
///     editRate (rate), preload                 before anything is written: reads as far as it needs to know
///                                              what the essence is
///     isCBE, universalLabel, itemTypeIdentifier, …
///     setMetadata, proposeKey, customizeDescriptor
///     nextEditUnit until done, finalize, getDuration
#pragma once

#include "MXF/Zelm/GenericContainer/EditUnit.h"
#include "MXF/Zelm/KLV/Key.h"
#include "MXF/Zelm/Templates/Memory.h"
#include "MXF/Zelm/Types/UniversalLabel.h"

#include <optional>

namespace MXF::Zelm::Metadata {
class PartitionMetadata;
namespace Structural {
class FileDescriptor;
class SourcePackage;
} // namespace Structural
} // namespace MXF::Zelm::Metadata

namespace MXF::Zelm::GenericContainer {

/// Not locked: one analyzer, one thread at a time.
class MXFZELM_EXPORT EssenceAnalyzer : public Platform::Allocated {
public:
    enum EssenceAnalyzerType {
        SystemAnalyzer = 0,
        CompoundAnalyzer = 1,
        PictureAnalyzer = 2,
        SoundAnalyzer = 3,
        DataAnalyzer = 4,
    };

    EssenceAnalyzer() = default;
    EssenceAnalyzer(EssenceAnalyzer const&) = delete;
    EssenceAnalyzer& operator=(EssenceAnalyzer const&) = delete;
    virtual ~EssenceAnalyzer();

    /// Edit units a second that `nextEditUnit` gives. Of essence that has no rate of its own (sound, data) it
    /// is the one that was set.
    virtual Templates::Rational<int> editRate() const = 0;

    /// The rate of the content packages, in edit units a second. Essence with a rate of its own keeps that.
    virtual void editRate(Templates::Rational<int> const& rate) = 0;

    /// Bytes that may be passed over to find the first edit unit.
    virtual std::uint64_t maximumToSkip() const = 0;
    virtual void maximumToSkip(std::uint64_t bytes) = 0;

    /// Reads as much as is needed to describe the essence. False when it is not what the analyzer reads.
    virtual bool preload() = 0;

    /// Makes the track and the descriptor of the essence in the file package, or brings them up to date when
    /// they are there: the track has `trackID` and `trackNumber`. False when it cannot.
    virtual bool setMetadata(Metadata::PartitionMetadata& metadata,
                             Metadata::Structural::SourcePackage* package, unsigned int trackNumber,
                             unsigned int trackID) = 0;

    /// The next edit unit, in stored order; `unit` is overwritten. False when the stream has ended. Throws
    /// Exceptions::InvalidFormat for essence that cannot be read on. Where edit units have one size and are
    /// as small as samples, a run of them, as long as the duration says.
    virtual bool nextEditUnit(EditUnit& unit) = 0;

    /// To be called behind the last edit unit: what is known only now (durations, bit rates) goes into the
    /// metadata. False when something is amiss with the essence as a whole.
    virtual bool finalize() = 0;

    /// The essence container label.
    virtual Types::UniversalLabel universalLabel() const = 0;

    /// True when no edit unit has more than `boundedEditUnitSize` bytes, which each is filled up to. Fill
    /// takes at least 20 bytes: where edit units differ by less, as those of sound in cadence, and no
    /// alignment may be counted on to leave room, the bound is 20 bytes above the longest.
    virtual bool isCBE() const = 0;

    /// Bytes of each edit unit where `isCBE`, else 0 or the largest that is to be expected.
    virtual void boundedEditUnitSize(int bytes) = 0;
    virtual unsigned int boundedEditUnitSize() const = 0;

    /// True for pictures that are stored in another order than shown.
    virtual bool containsTemporalDependencies() const = 0;

    /// Of the edit unit that was given last, before that of the first one when it is known; undefined when
    /// the analyzer knows none.
    virtual Utils::TimeCode currentTimeCode() const = 0;

    /// Bytes 12 and 14 of the keys of its elements, counted from 0 (SMPTE 379M).
    virtual unsigned char itemTypeIdentifier() const = 0;
    virtual unsigned char essenceElementType() const = 0;

    /// The alignment grid that the mapping asks for, in bytes; 1 for any.
    virtual unsigned int requiredKAGSize() const = 0;

    /// True when no edit unit is left.
    virtual bool done() const = 0;

    virtual EssenceAnalyzerType essenceAnalyzerType() const = 0;

    /// Bytes of all edit units together, when that is known before they are read. Unknown unless overridden.
    virtual std::optional<std::uint64_t> byteCount() const;

    /// The key of its elements, given the one that the container's rules make. As it is unless overridden.
    virtual KLV::Key proposeKey(KLV::Key const& key) const;

    /// Changes what an analyzer that derives from another knows better about the descriptor. Does nothing
    /// unless overridden.
    virtual void customizeDescriptor(Metadata::Structural::FileDescriptor& descriptor) const;

    /// Seconds after which the essence ends though there may be more of it; unknown for no limit.
    virtual void setDuration(Templates::Rational<int> const& seconds);
    virtual Templates::Rational<int> getDuration() const;

private:
    Templates::Rational<int> duration_ = {};
};

using EssenceAnalyzerPtr = Templates::SharedPtr<EssenceAnalyzer, Templates::LockedCounter>;

/// The five kinds. A class of the same name as its kind: `GenericContainer::PictureAnalyzer` is the class,
/// `EssenceAnalyzer::PictureAnalyzer` the value.
class MXFZELM_EXPORT SystemAnalyzer : public EssenceAnalyzer {
public:
    EssenceAnalyzerType essenceAnalyzerType() const override;
};

class MXFZELM_EXPORT CompoundAnalyzer : public EssenceAnalyzer {
public:
    EssenceAnalyzerType essenceAnalyzerType() const override;
};

class MXFZELM_EXPORT PictureAnalyzer : public EssenceAnalyzer {
public:
    EssenceAnalyzerType essenceAnalyzerType() const override;
};

class MXFZELM_EXPORT SoundAnalyzer : public EssenceAnalyzer {
public:
    EssenceAnalyzerType essenceAnalyzerType() const override;
};

class MXFZELM_EXPORT DataAnalyzer : public EssenceAnalyzer {
public:
    EssenceAnalyzerType essenceAnalyzerType() const override;
};

} // namespace MXF::Zelm::GenericContainer
