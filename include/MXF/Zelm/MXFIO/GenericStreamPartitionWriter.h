/// Writing a generic stream partition (SMPTE 410M): data that belongs to the file but to no edit unit, such
/// as documents and pictures that the metadata refers to.
///
///     partition pack     body SID: the stream ID; no metadata, no index
///     fill
///     one KLV packet     the data; or several, put together by the host
///     fill
#pragma once

#include "MXF/Zelm/DataIO/SourceAdapters.h"
#include "MXF/Zelm/MXFIO/BasePartitionWriter.h"

namespace MXF::Zelm::MXFIO {

/// Data for a partition of its own: a chain, or what remains of a source.
struct MXFZELM_EXPORT GenericStream {
    /// Of bytes without access units.
    static KLV::Key const& defaultKey();

    /// Names the stream; different from all body and index SIDs.
    std::uint32_t sid = 0;

    DataIO::Chain data = {};
    Templates::SharedPtr<DataIO::BoundedDataSource> source = nullptr; ///< instead of `data`

    KLV::Key key = defaultKey(); ///< byte 13 tells the byte order, byte 14 how the data is cut

    /// The data are whole packets: no key is put before them.
    bool isPackets = false;

    bool beforeEssence = false;
};

class MXFZELM_EXPORT GenericStreamPartitionWriter : public BasePartitionWriter {
public:
    GenericStreamPartitionWriter(PartitionFormat const& format, GenericStream stream);
    ~GenericStreamPartitionWriter() override;

protected:
    DataIO::Chain areas() override;

    /// Throws Exceptions::InvalidLength when the source ends before it said it would.
    bool nextContent(DataIO::Chain& out) override;

private:
    std::uint64_t headLength() const;

    GenericStream stream_;
    std::uint64_t length_;
    std::uint64_t remaining_;
    Templates::auto_ptr<DataIO::SliceSource> slices_;
    bool isAligned_ = false; // the fill at the end was handed out
};

} // namespace MXF::Zelm::MXFIO
