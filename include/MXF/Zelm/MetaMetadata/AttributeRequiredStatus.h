/// How required an attribute is, and the short names of that (SMPTE 377M).
#pragma once

#include "MXF/Zelm/Platform/Export.h"
#include "MXF/Zelm/Platform/MemoryManager.h"

#include <string>
#include <string_view>

namespace MXF::Zelm::MetaMetadata {

class MXFZELM_EXPORT AttributeRequiredStatus : public Platform::Allocated {
public:
    enum Status : unsigned char {
        Optional,   ///< "Opt"
        BestEffort, ///< "B.Effort": present, with its distinguished value where the value cannot be known
        DecoderRequired, ///< "D/req": decoders understand it, encoders may leave it out
        EncoderRequired, ///< "E/req": encoders write it
        Required,        ///< "Req"
    };

    static AttributeRequiredStatus& instance();

    /// The short name. Throws Exceptions::BaseException with "StatusNotFound: " and the number.
    std::u16string toString(Status status) const;

    /// The status with a short name. Throws Exceptions::BaseException with "StatusNotFound: " and the name.
    Status fromString(std::u16string_view name) const;

private:
    AttributeRequiredStatus() = default;
};

} // namespace MXF::Zelm::MetaMetadata
