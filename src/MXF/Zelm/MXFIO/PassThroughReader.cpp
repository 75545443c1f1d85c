#include "MXF/Zelm/Exceptions/Exceptions.h"
#include "MXF/Zelm/MXFIO/PassThroughAnalyzer.h"

#include <algorithm>

namespace MXF::Zelm::MXFIO {

namespace {

using GenericContainer::Wrapping;

/// Clips of samples are read in pieces of about this many a second where their edit units are smaller.
constexpr int mostPieces = 1000;
constexpr Templates::Rational<int> pieces = {25, 1};

/// The smallest fill item that is written.
constexpr std::uint64_t smallestFill = 20;

Templates::Rational<int> readingRate(EssenceContainer const& container, PassThroughOptions const& options) {
    if (options.editRate.isKnown())
        return options.editRate;
    auto const rate = container.editRate();
    bool const isFine = rate.denominator > 0 && rate.numerator / rate.denominator > mostPieces;
    return isFine ? pieces : rate;
}

} // namespace

PassThroughReader::PassThroughReader(Reader2& reader, EssenceContainer container,
                                     PassThroughOptions const& options)
    : reader_(reader), container_(std::move(container)), options_(options) {
    wrapping_ = EssenceReader(reader_, container_).wrapping(); // some writers label clips as frames
    editRate_ = wrapping_ == Wrapping::Clip ? readingRate(container_, options_) : container_.editRate();
}

PassThroughReader::~PassThroughReader() = default;

PassThroughReader::Queue& PassThroughReader::add(std::uint32_t trackNumber) {
    queues_.push_back({trackNumber, {}, 0});
    return queues_.back();
}

/// Made when all tracks are known that are to be read.
EssenceReader& PassThroughReader::essence() {
    if (!essence_) {
        EssenceOptions options;
        for (auto const& queue : queues_)
            options.trackNumbers.push_back(queue.trackNumber);
        if (wrapping_ == Wrapping::Clip)
            options.editRate = editRate_;
        essence_ = std::make_unique<EssenceReader>(reader_, container_, options);
        essence_->seek(options_.first);
    }
    return *essence_;
}

/// Whether the queue has an edit unit, after reading on if need be.
bool PassThroughReader::fill(Queue& queue) {
    while (queue.items.empty())
        if (!readUnit())
            return false;
    return true;
}

bool PassThroughReader::readUnit() {
    EssenceUnit unit;
    if (essence().position() >= options_.end || !essence().next(unit))
        return false;
    for (auto& queue : queues_)
        if (auto const* const element = unit.package.element(queue.trackNumber))
            take(*element, queue, unit.position);
        else
            queue.items.push_back({unit.position, {}, {}});
    return true;
}

void PassThroughReader::take(GenericContainer::Element const& element, Queue& queue, std::int64_t position) {
    DataIO::Chain data = element.data;
    if (data.size() < element.length) {
        data.clear();
        essence().open(element)->read(element.length, data);
    }
    queue.bytes += data.size();
    if (queue.bytes > largestLead && queue.items.size() > 1)
        throw Exceptions::InvalidStructure("Tracks of one container are read too far ahead of others");
    queue.items.push_back({position, element.key, std::move(data)});
}

PassThroughReader::Item PassThroughReader::pop(Queue& queue) {
    Item item = std::move(queue.items.front());
    queue.items.pop_front();
    queue.bytes -= item.data.size();
    return item;
}

/// The file's index, else one made by a walk; null where neither tells.
IndexTables::EditUnitLocator const* PassThroughReader::index() {
    if (wrapping_ != Wrapping::Frame)
        return essence().seeker().index();
    if (auto const* const own = essence().seeker().index())
        return own;
    walkPictures();
    return walked_.get();
}

void PassThroughReader::walkPictures() {
    if (isWalked_)
        return;
    isWalked_ = true;
    WalkedIndex walk(essence().stream(), 0, 0, WalkedIndex::Learn::Pictures);
    walk.walk();
    if (!walk.knowsPictures())
        return;
    walkedTable_ = walk.table(container_.indexSID, container_.editRate());
    walked_ = std::make_unique<IndexTables::EditUnitLocator>(*walkedTable_);
}

std::int64_t PassThroughReader::keyFrameBefore(std::int64_t position) {
    auto const* const table = index();
    return table != nullptr ? table->keyFrame(position).value_or(position) : position;
}

/// The most bytes of each element of the track, where the index says that its place always has the same size;
/// 0 otherwise. A place keeps its size, unless fill would be left that is too small for an item.
std::uint32_t PassThroughReader::constantSize(Queue& queue) {
    auto const* const table = essence().seeker().table();
    auto const* const index = essence().seeker().index();
    if (wrapping_ != Wrapping::Frame || index == nullptr || table->size() != 1 || !fill(queue))
        return 0;
    auto const& segment = *table->begin()->second;
    if (segment.editUnitByteCount() == nullptr || segment.editUnitByteCount()->value() == 0)
        return 0;
    EssenceUnit unit;
    if (!essence().read(queue.items.front().position, unit))
        return 0;
    auto const* const element = unit.package.element(queue.trackNumber);
    for (std::size_t i = 0; element != nullptr && i < index->elementCount(unit.position); ++i) {
        auto const place = index->locateElement(unit.position, i);
        if (!place || !place->length ||
            place->streamOffset - unit.streamOffset != element->offset - unit.package.offset)
            continue;
        std::uint64_t const used = element->headLength + element->length;
        if (*place->length < used || *place->length > std::numeric_limits<std::uint32_t>::max())
            return 0;
        bool const keeps = *place->length == used || *place->length - used >= smallestFill;
        return static_cast<std::uint32_t>((keeps ? *place->length : used) - element->headLength);
    }
    return 0;
}

} // namespace MXF::Zelm::MXFIO
