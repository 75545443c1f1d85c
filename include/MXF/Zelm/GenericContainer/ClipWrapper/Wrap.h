/// Puts one essence stream as a whole into one element of a generic container (clip wrapping, SMPTE 379M).
///
///     Wrap wrap(filePackage, label, sound, {48000, 1});
///     auto const source = wrap.commit();
///
///     key 16 | length 8 or 9 | edit unit 0 | edit unit 1 | … | fill
///
/// The length is written at once when the analyzer knows the size of its essence; else it stands for more
/// than any file holds until the source's updater sets it right, so that what has been written of an
/// unfinished file is a clip up to its end.
///
/// Where all edit units have one size, samples of sound above all, the index has that as its
/// EditUnitByteCount and counts from the first byte of the essence; else its entries count from the key.
#pragma once

#include "MXF/Zelm/GenericContainer/EssenceAnalyzer.h"
#include "MXF/Zelm/GenericContainer/Source.h"

#include <memory>

namespace MXF::Zelm::GenericContainer::ClipWrapper {

class MXFZELM_EXPORT Wrap : public Platform::Allocated {
public:
    /// Describes the essence in a file package, which is not owned and outlives the source; null for none.
    /// `essenceContainer` all zero for the analyzer's own. `editRate` is set as the analyzer's, 0/0 to keep
    /// the one that it has: for sound the sampling rate, so that samples are the edit units.
    Wrap(Metadata::Structural::SourcePackage* package, Types::UniversalLabel const& essenceContainer,
         EssenceAnalyzerPtr analyzer, Templates::Rational<int> const& editRate = {});

    Wrap(Wrap const&) = delete;
    Wrap& operator=(Wrap const&) = delete;
    ~Wrap();

    /// Bytes of the length: 8 or 9, which it is at first. Throws Exceptions::InvalidValue for any other.
    void berLength(unsigned char bytes);

    /// Where the clip begins, and its fill ends: a multiple of this and of what the analyzer requires. 1 at
    /// first; 0 for no alignment.
    void kagSize(unsigned int bytes);

    /// Byte 15 of the element key; 0 at first.
    void elementNumber(unsigned char number);

    /// The ID of the track; 256 at first.
    void trackID(unsigned int id);

    /// Others may tell, until the second part is asked for, that the essence ends earlier: the first part,
    /// which is read before the file is begun, is then one call of the analyzer's `nextEditUnit`.
    void mayEndEarly();

    /// Prepares the analyzer, makes track and descriptor and hands over the source. Once only. Throws
    /// Exceptions::InvalidFormat with "The essence format is invalid", Exceptions::InvalidChange the second
    /// time. The source throws Exceptions::InvalidFormat for edit units of one size that have another.
    Templates::auto_ptr<Source> commit();

private:
    struct State;
    std::unique_ptr<State> state_;
};

} // namespace MXF::Zelm::GenericContainer::ClipWrapper
