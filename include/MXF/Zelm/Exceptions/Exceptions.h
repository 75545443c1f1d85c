/// The library's exceptions: one base that carries message, place and, where bytes of a file are at fault,
/// their offset; one class for each kind of failure. Copies share one state, so that copying never throws.
#pragma once

#include "MXF/Zelm/Exceptions/SourceLocation.h"
#include "MXF/Zelm/Platform/Export.h"

#include <cstdint>
#include <exception>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace MXF::Zelm::Exceptions {

/// The text of a condition that failed: makes the assertion form of an exception.
struct Condition {
    const char* text;
};

/// Base of all exceptions of the library.
class MXFZELM_EXPORT BaseException : public std::exception {
public:
    /// `message` in UTF-8.
    explicit BaseException(std::string message, SourceLocation where = SourceLocation::current());

    /// `message` in UTF-16.
    explicit BaseException(std::u16string const& message, SourceLocation where = SourceLocation::current());

    /// The assertion form: `condition` is the condition that did not hold.
    BaseException(Condition condition, std::string message, SourceLocation where = SourceLocation::current());

    BaseException(BaseException const&) noexcept = default;
    BaseException& operator=(BaseException const&) noexcept = default;
    ~BaseException() override;

    /// The message in UTF-8, without place or offset.
    const char* what() const noexcept override;
    std::string const& message() const noexcept;
    std::u16string wideMessage() const;

    /// The source file from `src/` or `include/` on, without extension, and the line.
    std::string const& sourceFile() const noexcept;
    unsigned sourceLine() const noexcept;

    /// The text of the failed condition; empty unless this is the assertion form.
    std::string const& condition() const noexcept;

    /// The offset in the data source of the bytes at fault, when it is known.
    std::optional<std::uint64_t> offset() const noexcept;

    /// Records the offset unless one is known: who is nearest to the fault knows best.
    void offset(std::uint64_t absoluteOffset) noexcept;

private:
    struct State;
    std::shared_ptr<State> state_;
};

/// `throw at(offset, InvalidKey("…"))`: gives an exception its offset and keeps its class.
template <class Exception>
Exception at(std::uint64_t absoluteOffset, Exception exception) {
    exception.offset(absoluteOffset);
    return exception;
}

/// A change that the object does not allow.
class MXFZELM_EXPORT InvalidChange : public BaseException {
    using BaseException::BaseException;
};
/// An element that does not fit where it stands.
class MXFZELM_EXPORT InvalidElement : public BaseException {
    using BaseException::BaseException;
};
/// An element whose length is not that of its type.
class MXFZELM_EXPORT InvalidElementLength : public BaseException {
    using BaseException::BaseException;
};
/// Text or data that does not follow its format.
class MXFZELM_EXPORT InvalidFormat : public BaseException {
    using BaseException::BaseException;
};
/// An identifier that is not known or not allowed.
class MXFZELM_EXPORT InvalidID : public BaseException {
    using BaseException::BaseException;
};
/// An index table segment that cannot be used.
class MXFZELM_EXPORT InvalidIndexSegment : public BaseException {
    using BaseException::BaseException;
};
/// A KLV key that is not the expected one.
class MXFZELM_EXPORT InvalidKey : public BaseException {
    using BaseException::BaseException;
};
/// A label that is not the expected one.
class MXFZELM_EXPORT InvalidLabel : public BaseException {
    using BaseException::BaseException;
};

/// Data that is shorter or longer than it must be; carries the bytes at fault.
class MXFZELM_EXPORT InvalidLength : public BaseException {
public:
    explicit InvalidLength(std::string message, SourceLocation where = SourceLocation::current());
    InvalidLength(std::string message, std::vector<unsigned char> bytes,
                  SourceLocation where = SourceLocation::current());
    InvalidLength(InvalidLength const&) noexcept = default;
    InvalidLength& operator=(InvalidLength const&) noexcept = default;
    ~InvalidLength() override;

    /// The bytes that were there; empty when none were read.
    std::vector<unsigned char> const& bytes() const noexcept;

private:
    std::shared_ptr<std::vector<unsigned char> const> bytes_;
};

/// The licence manager refused.
class MXFZELM_EXPORT InvalidLicense : public BaseException {
    using BaseException::BaseException;
};
/// A local tag that is not allowed or not known.
class MXFZELM_EXPORT InvalidLocalTag : public BaseException {
    using BaseException::BaseException;
};
/// An attribute definition that contradicts itself or another.
class MXFZELM_EXPORT InvalidMetaAttribute : public BaseException {
    using BaseException::BaseException;
};
/// An element definition that contradicts itself.
class MXFZELM_EXPORT InvalidMetaElement : public BaseException {
    using BaseException::BaseException;
};
/// A metadata set that cannot be used.
class MXFZELM_EXPORT InvalidMetadataSet : public BaseException {
    using BaseException::BaseException;
};
/// A partition pack key with an unknown kind.
class MXFZELM_EXPORT InvalidPartitionKind : public BaseException {
    using BaseException::BaseException;
};
/// A partition pack key with an unknown status.
class MXFZELM_EXPORT InvalidPartitionStatus : public BaseException {
    using BaseException::BaseException;
};
/// A position outside the data.
class MXFZELM_EXPORT InvalidPosition : public BaseException {
    using BaseException::BaseException;
};
/// Things that do not stand together as the file format wants.
class MXFZELM_EXPORT InvalidStructure : public BaseException {
    using BaseException::BaseException;
};
/// A value of another type than the expected one.
class MXFZELM_EXPORT InvalidType : public BaseException {
    using BaseException::BaseException;
};
/// A value out of range.
class MXFZELM_EXPORT InvalidValue : public BaseException {
    using BaseException::BaseException;
};
/// A local tag or label that the primer does not hold.
class MXFZELM_EXPORT NotFoundInPrimer : public BaseException {
    using BaseException::BaseException;
};

/// The operating system refused: no such file, no space, a device error. The message ends in the system's own
/// text.
class MXFZELM_EXPORT SystemError : public BaseException {
public:
    /// `fileName` in UTF-8; `code` is errno or GetLastError(). The message becomes "NAME: ACTION: SYSTEM
    /// TEXT".
    SystemError(std::string const& fileName, std::string const& action, long code,
                SourceLocation where = SourceLocation::current());

    /// The system's error number.
    long code() const noexcept { return code_; }

private:
    long code_;
};

} // namespace MXF::Zelm::Exceptions
