#include "MXF/Zelm/Essence/AVC/AccessUnit.h"

#include "MXF/Zelm/Essence/AVC/ExpGolomb.h"
#include "MXF/Zelm/Exceptions/Exceptions.h"

namespace MXF::Zelm::Essence::AVC {

namespace {

/// Of supplemental information: longer messages are of no interest.
constexpr std::size_t longestMessages = 4096;
constexpr unsigned pictureTiming = 1, recoveryPoint = 6;

/// As the type of a primary picture: I slices alone.
constexpr std::uint8_t onlyIntra = 0;

/// Type and size of a message are sums of bytes, of which all but the last are FF.
std::uint32_t readSum(DataIO::BitSliceReader& bits) {
    std::uint32_t sum = 0;
    for (;;) {
        auto const byte = static_cast<std::uint32_t>(bits.read(8));
        sum += byte;
        if (byte != 0xFF)
            return sum;
    }
}

class UnitParser {
public:
    UnitParser(AccessUnit& unit, ParameterSets& sets) : unit_(unit), sets_(sets) {}

    void take(NalUnit const& nal) {
        if (nal.isSlice())
            return takeSlice(nal);
        switch (nal.type) {
        case NalType::SequenceParameters:
            sets_.take(SequenceParameterSet::read(nal));
            unit_.hasSequenceParameters = true;
            break;
        case NalType::PictureParameters:
            sets_.take(PictureParameterSet::read(nal));
            unit_.hasPictureParameters = true;
            break;
        case NalType::SEI:
            takeMessages(nal);
            break;
        case NalType::AccessUnitDelimiter:
            takeDelimiter(nal);
            break;
        default:
            break;
        }
    }

private:
    void takeDelimiter(NalUnit const& nal) {
        DataIO::BitSliceReader bits(nal.bytes(1));
        if (!unit_.primaryPictureType)
            unit_.primaryPictureType = static_cast<std::uint8_t>(bits.read(3));
    }

    void takeMessages(NalUnit const& nal) {
        DataIO::Chain const bytes(nal.bytes(longestMessages));
        DataIO::BitSliceReader bits(bytes);
        constexpr unsigned smallest = 24; // type, size, end
        while (bits.remaining() >= smallest) {
            auto const type = readSum(bits);
            std::uint64_t const end = 8 * std::uint64_t{readSum(bits)} + bits.position();
            if (type == recoveryPoint && !unit_.slice) {
                unit_.recoveryFrames = readUnsigned(bits, UINT16_MAX);
                bits.skip(1); // exact match
                unit_.brokenLink = bits.readFlag();
            } else if (type == pictureTiming && !unit_.slice) {
                keepTiming(bytes, bits.position() / 8, end / 8);
            }
            if (end < bits.position())
                break;
            bits.skip(end - bits.position());
        }
    }

    void keepTiming(DataIO::Chain const& bytes, std::uint64_t from, std::uint64_t to) {
        if (to >= from && to <= bytes.size())
            unit_.timingMessage = bytes.part(from, to - from);
    }

    void takeFirstSlice(SliceHeader const& slice) {
        unit_.slice = slice;
        unit_.parameters = sets_.picture(slice.pictureSetID);
        unit_.sequence = sets_.sequence(unit_.parameters->sequenceID);
        if (unit_.sequence->usability && !unit_.timingMessage.empty())
            unit_.timing = PictureTiming::read(unit_.timingMessage, *unit_.sequence->usability);
    }

    void takeSlice(NalUnit const& nal) {
        unit_.reachesSlices = true;
        auto const slice = SliceHeader::read(nal, sets_);
        if (!unit_.slice)
            takeFirstSlice(slice);
        else if (slice.isField && slice.isBottomField != unit_.slice->isBottomField)
            unit_.secondField = unit_.secondField ? unit_.secondField : slice;
        if (unit_.secondField)
            return;
        unit_.knowsAllSlices = unit_.knowsAllSlices || slice.isTypeOfPicture || slice.type == SliceType::B ||
                               unit_.primaryPictureType == onlyIntra;
        unit_.hasBidirectional = unit_.hasBidirectional || slice.type == SliceType::B;
        unit_.hasPredicted = unit_.hasPredicted || slice.type == SliceType::P || slice.type == SliceType::SP;
    }

    AccessUnit& unit_;
    ParameterSets& sets_;
};

} // namespace

void AccessUnit::take(NalUnit const& nal, ParameterSets& sets) {
    try {
        UnitParser(*this, sets).take(nal);
    } catch (Exceptions::InvalidLength const&) {
        // It is cut off.
    } catch (Exceptions::InvalidValue const&) {
        // It is against the standard.
    } catch (Exceptions::InvalidID const&) {
        // Its parameter sets are missing.
    }
}

AccessUnit AccessUnit::read(DataIO::Chain const& bytes, ParameterSets& sets, Part part) {
    AccessUnit unit;
    NalReader nals(bytes);
    while (auto const nal = nals.next()) {
        unit.take(*nal, sets);
        if (unit.reachesSlices && part == Part::Head)
            return unit;
    }
    unit.knowsAllSlices = unit.knowsAllSlices || part == Part::Whole;
    return unit;
}

} // namespace MXF::Zelm::Essence::AVC
