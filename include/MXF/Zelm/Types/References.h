/// References between metadata sets: the instance UID of the target, in 16 bytes.
#pragma once

#include "MXF/Zelm/Types/UUID.h"

namespace MXF::Zelm::Types {

/// What the two kinds of reference have in common.
class MXFZELM_EXPORT Reference : public SimpleDataType {
public:
    ~Reference() override;

    /// The instance UID of the set referred to.
    UUID target() const { return UUID(rawBuffer()); }

    /// "urn:uuid:…".
    std::u16string toString() const override { return target().toString(); }

protected:
    Reference() = default;
    Reference(Reference const&) = default;
    Reference& operator=(Reference const&) = default;
};

/// Owns its target: each set is the target of at most one strong reference.
class MXFZELM_EXPORT StrongReference final
    : public FixedSizeType<StrongReference, Identifiers::StrongReference, 16, Reference> {
public:
    using FixedSizeType::FixedSizeType;
    StrongReference() = default;
    explicit StrongReference(UUID const& target) : FixedSizeType(target.rawBuffer()) {}
    static StrongReference fromText(std::u16string_view text) {
        return StrongReference(UUID::fromText(text));
    }
};

/// Points at a set that something else owns.
class MXFZELM_EXPORT WeakReference final
    : public FixedSizeType<WeakReference, Identifiers::WeakReference, 16, Reference> {
public:
    using FixedSizeType::FixedSizeType;
    WeakReference() = default;
    explicit WeakReference(UUID const& target) : FixedSizeType(target.rawBuffer()) {}
    static WeakReference fromText(std::u16string_view text) { return WeakReference(UUID::fromText(text)); }
};

} // namespace MXF::Zelm::Types
