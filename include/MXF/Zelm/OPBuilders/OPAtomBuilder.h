/// Builds OP-Atom files (SMPTE 390M): one essence track a file.
///
///     header partition     reserve of at least 8 KiB
///     body partition       all of the essence
///     footer partition     the index table
///     random index pack
///
/// Files of one clip share a material package: each gets the same `materialUID`, and a foreign track for each
/// of the others' file packages.
#pragma once

#include "MXF/Zelm/OPBuilders/GenericOPBuilder.h"

namespace MXF::Zelm::OPBuilders {

class MXFZELM_EXPORT OPAtomBuilder : public GenericOPBuilder {
public:
    /// Bytes of fill behind the header metadata, at least.
    static constexpr std::uint64_t smallestReserve = 8192;

    /// What the pattern settles of the layout is set, whatever the options say: one body partition, the index
    /// in the footer, no run-in, a reserve that is large enough.
    OPAtomBuilder(DictionaryPtr dictionary, BuilderOptions options);
    ~OPAtomBuilder() override;

    /// Throws Exceptions::InvalidStructure for a second package, an external one, or one without index.
    SourcePackage& addFilePackage(FilePackageOptions const& options = {}) override;

    /// Throws Exceptions::InvalidStructure unless the package has one essence track, and as its base does.
    void addSource(SourcePackage const& package,
                   Templates::auto_ptr<GenericContainer::Source> source) override;

protected:
    Types::UniversalLabel pattern() const override;

private:
    bool hasPackage_ = false;
};

} // namespace MXF::Zelm::OPBuilders
