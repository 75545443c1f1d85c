#include "MXF/Zelm/Essence/MPEG/VideoUnit.h"

#include "MXF/Zelm/DataIO/SyncWordFinder.h"
#include "MXF/Zelm/Exceptions/Exceptions.h"

namespace MXF::Zelm::Essence::MPEG {

namespace {

/// The identifiers of extensions, in the 4 bits behind the start code.
enum Extension : std::uint8_t { SequenceIdentifier = 1, DisplayIdentifier = 2, PictureCodingIdentifier = 8 };

constexpr std::uint64_t startCodeSize = 4;

class UnitParser {
public:
    UnitParser(DataIO::Chain const& bytes, VideoUnit& unit) : bytes_(bytes), unit_(unit), bits_(bytes) {}

    /// Takes what stands behind the start code prefix at `position`; false when no more is wanted.
    bool take(std::uint64_t position, VideoUnit::Part part) {
        std::uint8_t code = 0;
        if (bytes_.copyTo(&code, 1, position + startCodeSize - 1) == 0)
            return false;
        if (isSlice(code)) {
            unit_.reachesSlices = unit_.reachesSlices || unit_.picture;
            return part == VideoUnit::Part::Whole || !unit_.reachesSlices;
        }
        if (code == SequenceEnd)
            unit_.endsSequence = true;
        else
            takeHeader(code, position + startCodeSize);
        return true;
    }

private:
    void takeHeader(std::uint8_t code, std::uint64_t from) {
        moveTo(from);
        if (code == SequenceHeaderStart && !unit_.picture)
            unit_.sequence = SequenceHeader::read(bits_);
        else if (code == GroupStart && !unit_.picture)
            unit_.group = GroupHeader::read(bits_);
        else if (code == PictureStart)
            takePicture(PictureHeader::read(bits_));
        else if (code == ExtensionStart)
            takeExtension();
    }

    /// Forwards, unless the last header was read beyond the start code of this one.
    void moveTo(std::uint64_t byte) {
        if (byte * 8 < bits_.position())
            bits_ = DataIO::BitSliceReader(bytes_);
        bits_.skip(byte * 8 - bits_.position());
    }

    void takePicture(PictureHeader const& picture) {
        if (!unit_.picture)
            unit_.picture = picture;
        else if (unit_.picture->isField() && !unit_.secondField)
            unit_.secondField = picture;
    }

    void takeExtension() {
        auto const identifier = bits_.read(4);
        auto& last = unit_.secondField ? unit_.secondField : unit_.picture;
        if (identifier == PictureCodingIdentifier && last && !last->coding)
            last->coding = PictureCodingExtension::read(bits_);
        else if (identifier == SequenceIdentifier && unit_.sequence && !last)
            unit_.sequence->extension = SequenceExtension::read(bits_);
        else if (identifier == DisplayIdentifier && unit_.sequence && !last)
            unit_.sequence->display = SequenceDisplayExtension::read(bits_);
    }

    DataIO::Chain const& bytes_;
    VideoUnit& unit_;
    DataIO::BitSliceReader bits_;
};

} // namespace

VideoUnit VideoUnit::read(DataIO::Chain const& bytes, Part part) {
    VideoUnit unit;
    UnitParser parser(bytes, unit);
    DataIO::SyncWordFinder finder(DataIO::startCodePrefix);
    finder.push(bytes);
    try {
        while (auto const position = finder.next())
            if (!parser.take(*position, part))
                break;
    } catch (Exceptions::InvalidLength const&) {
        // The header is cut off.
    }
    return unit;
}

VideoUnit VideoUnit::read(DataIO::Chain const& bytes, std::span<std::uint64_t const> startCodes) {
    VideoUnit unit;
    UnitParser parser(bytes, unit);
    try {
        for (auto const position : startCodes)
            if (!parser.take(position, Part::Head))
                break;
    } catch (Exceptions::InvalidLength const&) {
        // The header is cut off.
    }
    return unit;
}

} // namespace MXF::Zelm::Essence::MPEG
