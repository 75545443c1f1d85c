/// Groups the KLV packets of a generic container into content packages (SMPTE 379M).
///
///     Demultiplexer demultiplexer;
///     for (each packet of the body) {
///         if (demultiplexer.startsNext(key)) {
///             use(demultiplexer.package());
///             demultiplexer.clear();
///         }
///         if (auto* const element = demultiplexer.add(key, offset, headLength, length))
///             source.read(length, element->data);
///     }
///     use(demultiplexer.package()); // the last one
///
/// A content package ends where its first element comes again, or where a system item follows elements.
#pragma once

#include "MXF/Zelm/GenericContainer/ContentPackage.h"

namespace MXF::Zelm::GenericContainer {

/// Tells where one content package ends and the next begins, by keys alone.
class MXFZELM_EXPORT PackageBoundary {
public:
    /// True when the packet with this key, for which `ElementKey::isContent` holds, is the first of another
    /// package.
    bool startsNext(ElementKey key) const {
        if (count_ == 0)
            return false;
        return key.isSameElement(first_) || (key.isSystem() && !last_.isSystem());
    }

    /// Takes a packet into the package.
    void add(ElementKey key) {
        if (count_++ == 0)
            first_ = key;
        last_ = key;
    }

    void clear() { count_ = 0; }

    bool empty() const { return count_ == 0; }

    /// Number of packets, and the first of them.
    std::uint64_t count() const { return count_; }
    ElementKey first() const { return first_; }

    /// Whether the package has as many elements as `other` and ends in the same: all of the elements, as far
    /// as can be told before another package begins.
    bool isLike(PackageBoundary const& other) const {
        return count_ == other.count_ && last_.isSameElement(other.last_);
    }

private:
    std::uint64_t count_ = 0;
    ElementKey first_;
    ElementKey last_;
};

class MXFZELM_EXPORT Demultiplexer : public Platform::Allocated {
public:
    /// True when the packet with this key does not belong to `package()` any more.
    bool startsNext(KLV::Key const& key) const {
        return ElementKey::isContent(key) && boundary_.startsNext(ElementKey(key));
    }

    /// Takes the next packet. `offset` says where it begins, `headLength` how many bytes its key and length
    /// have, `length` those of its value. Returns the new element of `package()`, for its data to be put in,
    /// valid until the next call. Fill items and packets that are not essence count for the package's length
    /// alone, those before its first element for nothing; for them it returns null.
    Element* add(KLV::Key const& key, std::uint64_t offset, std::uint32_t headLength, std::uint64_t length);

    /// What was taken since the last `clear`.
    ContentPackage const& package() const { return package_; }
    ContentPackage& package() { return package_; }
    PackageBoundary const& boundary() const { return boundary_; }

    /// Begins another package.
    void clear();

private:
    ContentPackage package_;
    PackageBoundary boundary_;
};

} // namespace MXF::Zelm::GenericContainer
