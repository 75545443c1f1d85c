#include "TrackTap.h"

#include <MXF/Zelm/GenericContainer/Analyzers/BasicAnalyzer.h>

#include <algorithm>
#include <limits>
#include <numeric>

namespace Zelm {

using namespace MXF::Zelm;
using GenericContainer::EssenceAnalyzer;

namespace {

template <class Kind>
std::string faultOfKind(EssenceAnalyzer const& analyzer) {
    auto const* const basic = dynamic_cast<GenericContainer::BasicAnalyzer<Kind> const*>(&analyzer);
    return basic != nullptr ? basic->fault() : "";
}

std::string faultOf(EssenceAnalyzer const& analyzer) {
    std::string fault = faultOfKind<GenericContainer::PictureAnalyzer>(analyzer);
    fault += faultOfKind<GenericContainer::SoundAnalyzer>(analyzer);
    fault += faultOfKind<GenericContainer::DataAnalyzer>(analyzer);
    fault += faultOfKind<EssenceAnalyzer>(analyzer);
    return fault.empty() ? "The essence is not whole" : fault;
}

} // namespace

Templates::Rational<int> durationOf(std::uint64_t units, Templates::Rational<int> const& rate) {
    constexpr auto most = static_cast<std::uint64_t>(std::numeric_limits<int>::max());
    auto const ticks = units * static_cast<std::uint64_t>(rate.denominator);
    auto const perSecond = static_cast<std::uint64_t>(rate.numerator);
    auto const common = std::gcd(ticks, perSecond);
    auto const seconds = ticks / perSecond, rest = ticks % perSecond;
    auto const scale =
        ticks / common <= most ? perSecond / common : std::min(perSecond, most / (seconds + 1));
    if (scale == 0)
        return {std::numeric_limits<int>::max(), 1};
    return {static_cast<int>(seconds * scale + (rest * scale + perSecond - 1) / perSecond),
            static_cast<int>(scale)};
}

std::uint64_t TrackGroup::end() {
    for (auto const* const tap : taps_)
        if (tap->innerDone())
            end_ = std::min(end_, tap->units());
    return end_;
}

void TrackTap::group(std::shared_ptr<TrackGroup> group, bool isEnder) {
    group_ = std::move(group);
    if (isEnder)
        group_->add(*this);
}

void TrackTap::addFollower(std::shared_ptr<TrackTap> follower) {
    follower->lengthIsOpen();
    followers_.push_back(std::move(follower));
}

bool TrackTap::isEnded() const { return group_ && units_ >= group_->end(); }

bool TrackTap::done() const { return isEnded() || inner_->done(); }

bool TrackTap::nextEditUnit(EditUnit& unit) {
    hasThrown_ = true;
    bool const isGiven = !isEnded() && give(unit);
    hasThrown_ = false;
    if (isGiven)
        take(unit);
    else
        unit.clear();
    return isGiven;
}

/// The first edit unit of what others may end comes alone: it is read before they are.
bool TrackTap::give(EditUnit& unit) {
    auto const rate = inner_->editRate();
    bool const isAlone = isOpen_ && units_ == 0 && !inner_->getDuration().isKnown() && rate.isKnown();
    if (isAlone)
        inner_->setDuration({rate.denominator, rate.numerator});
    bool const isGiven = inner_->nextEditUnit(unit);
    if (isAlone)
        inner_->setDuration({});
    return isGiven;
}

/// A clip of samples comes in runs of them.
std::uint64_t TrackTap::unitsIn(EditUnit const& unit) const {
    auto const rate = inner_->editRate();
    if (!options_.asStream || !unit.duration.isKnown() || !rate.isKnown())
        return 1;
    return static_cast<std::uint64_t>(unit.duration.numerator) * static_cast<std::uint64_t>(rate.numerator) /
           static_cast<std::uint64_t>(unit.duration.denominator) /
           static_cast<std::uint64_t>(rate.denominator);
}

void TrackTap::take(EditUnit const& unit) {
    if (options_.md5)
        for (auto const& slice : unit.data)
            md5_.add(slice.data(), slice.size());
    if (options_.hash && options_.asStream)
        stream_.add(unit.data);
    else if (options_.hash)
        hashes_.add(units_, hashOf(unit.data));
    units_ += unitsIn(unit);
    bytes_ += unit.data.size();
}

UnitHashes TrackTap::hashes() { return options_.asStream ? stream_.finish() : hashes_; }

/// Sound that ends with another track may end before all of it was given, or go on: it has the length of the
/// other one, where that is known.
std::optional<std::uint64_t> TrackTap::byteCount() const {
    if (!isOpen_)
        return inner_->byteCount();
    auto const duration = inner_->getDuration();
    if (duration.numerator <= 0 || duration.denominator <= 0 || !inner_->isCBE())
        return std::nullopt;
    return GenericContainer::editUnitsWithin(duration, inner_->editRate()) * inner_->boundedEditUnitSize();
}

bool TrackTap::finalize() {
    wasCut_ = !inner_->done();
    for (auto const& follower : followers_)
        follower->setDuration(durationOf(units_, inner_->editRate()));
    bool const isWhole = inner_->finalize();
    fault_ = isWhole ? "" : faultOf(*inner_);
    return isWhole;
}

} // namespace Zelm
