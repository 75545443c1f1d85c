#include "MXF/Zelm/GenericContainer/ClipWrapper/Clip.h"

#include "MXF/Zelm/ByteCoders/BER.h"
#include "MXF/Zelm/Exceptions/Exceptions.h"
#include "MXF/Zelm/Utils/Align.h"
#include "MXF/Zelm/Utils/TimeBase.h"

#include <algorithm>

namespace MXF::Zelm::GenericContainer::ClipWrapper {

namespace {

/// Parts of a clip have about this size, unless a single edit unit is larger.
constexpr std::uint64_t partSize = std::uint64_t{1} << 20;

/// The length of a clip while it is not known: fits in 7 bytes and reaches beyond the end of every file.
constexpr std::uint64_t unknownLength = (std::uint64_t{1} << 55) - 1;

constexpr std::uint32_t fillKLLength = 20;

std::unique_ptr<Multiplexer::IndexTableBuilder>
indexOf(EssenceAnalyzer const& analyzer, Templates::Rational<int> const& editRate, std::uint32_t unitSize) {
    return std::make_unique<Multiplexer::FrameIndexTableBuilder>(
        editRate,
        std::vector<Multiplexer::IndexedElement>{
            {.byteCount = unitSize, .isReordered = analyzer.containsTemporalDependencies(), .rules = true}},
        false, unitSize);
}

/// Edit units that one of the index stands for: its length says so where all of the essence is in one.
std::int64_t unitsIn(EditUnit const& unit, Templates::Rational<int> const& editRate) {
    if (unit.duration.denominator <= 0 || unit.duration.numerator <= 0)
        return 1;
    return std::max<std::int64_t>(1, Utils::secondsToFrames(unit.duration, editRate));
}

} // namespace

ClipLength::ClipLength(unsigned char berLength, std::optional<std::uint64_t> expected)
    : berLength_(berLength),
      isExpected_(expected.has_value()),
      writtenLength_(expected.value_or(unknownLength)) {}

ClipLength::~ClipLength() = default;

std::vector<unsigned char> ClipLength::fieldFor(std::uint64_t length) const {
    std::vector<unsigned char> bytes(berLength_);
    ByteCoders::codeBER(length, berLength_, bytes.data());
    return bytes;
}

std::vector<MXFIO::FileUpdate> ClipLength::updates() {
    if (!offset_ || length_ == writtenLength_)
        return {};
    return {{*offset_ + KLV::Key::size(), fieldFor(length_)}};
}

Clip::Clip(ClipData data)
    : data_(std::move(data)),
      editRate_(data_.analyzer->editRate()),
      unitSize_(data_.analyzer->isCBE() && !data_.analyzer->containsTemporalDependencies()
                    ? data_.analyzer->boundedEditUnitSize()
                    : 0),
      length_(std::make_shared<ClipLength>(data_.berLength, data_.analyzer->byteCount())),
      index_(indexOf(*data_.analyzer, editRate_, unitSize_)) {}

Clip::~Clip() = default;

bool Clip::next(DataIO::Chain& out, bool& mayStartPartition, FutureUpdaterPtr& updater,
                Templates::Rational<std::int64_t>& position) {
    out.clear();
    updater.reset();
    mayStartPartition = false;
    bool const isFirst = !hasBegun_;
    if (isFinalized_ || !doNextContentPackage(out, position))
        return false;
    mayStartPartition = isFirst;
    if (isFirst)
        updater = length_;
    return true;
}

/// The next part. The first one begins with key and length, fill ends the last one.
bool Clip::doNextContentPackage(DataIO::Chain& out, Templates::Rational<std::int64_t>& position) {
    if (hasEnded_)
        return false;
    position = Utils::framesToSeconds(editUnits(), editRate_);
    std::uint64_t const wanted = hasBegun_ || !data_.mayEndEarly ? partSize : 1;
    while (!hasEnded_ && out.size() < wanted) {
        unit_.clear();
        hasEnded_ = !data_.analyzer->nextEditUnit(unit_);
        if (!hasEnded_)
            takeEditUnit(out);
    }
    if (hasEnded_ && hasBegun_)
        if (auto const fill = Utils::alignBytes(data_.kagSize, headSize() + length_->length(), fillKLLength))
            padding_.appendFillItem(out, fill);
    return !out.empty();
}

void Clip::appendHead(DataIO::Chain& out) const {
    out.append(DataIO::Slice::copyOf(data_.key.rawBuffer(), KLV::Key::size()));
    out.append(DataIO::Slice::adopt(length_->field()));
}

/// One edit unit; of edit units of one size also a run of them. Only the last one may be short.
void Clip::takeEditUnit(DataIO::Chain& out) {
    if (unitSize_ != 0 && length_->length() % unitSize_ != 0)
        throw Exceptions::InvalidFormat("The essence of a clip has edit units of " +
                                        std::to_string(unitSize_) + " bytes, but one that ends at byte " +
                                        std::to_string(length_->length()));
    if (!hasBegun_)
        appendHead(out);
    hasBegun_ = true;
    index_->appendIndexEntry(headSize() + length_->length(), unit_.index);
    ++entries_;
    units_ += unitSize_ == 0 ? unitsIn(unit_, editRate_) : 0;
    length_->add(unit_.data.size());
    out.append(std::move(unit_.data));
}

/// Of the index.
std::int64_t Clip::editUnits() const {
    if (unitSize_ == 0)
        return entries_;
    return static_cast<std::int64_t>((length_->length() + unitSize_ - 1) / unitSize_);
}

void Clip::finalize() {
    if (isFinalized_)
        return;
    isFinalized_ = true;
    data_.analyzer->finalize();
    index_->finalize(editUnits());
    if (data_.builder)
        data_.builder->finish(unitSize_ == 0 ? units_ : editUnits(), editRate_);
}

} // namespace MXF::Zelm::GenericContainer::ClipWrapper
