#include "MXF/Zelm/Essence/ByteWindow.h"

#include <algorithm>
#include <utility>

namespace MXF::Zelm::Essence {

ByteWindow::ByteWindow(Templates::SharedPtr<DataIO::SliceSource> source)
    : source_(std::move(source)), start_(source_->absoluteOffset()) {}

bool ByteWindow::require(std::size_t count) {
    constexpr std::size_t readAtOnce = std::size_t{64} << 10;
    if (count <= size())
        return true;
    DataIO::Chain chain(bytes_.part(passed_, size()));
    source_->read(std::max(count - size(), readAtOnce), chain);
    start_ += passed_;
    passed_ = 0;
    bytes_ = chain.contiguous();
    return count <= size();
}

} // namespace MXF::Zelm::Essence
