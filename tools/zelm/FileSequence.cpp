#include "FileSequence.h"

#include "WrapTracks.h"

#include <MXF/Zelm/DataIO/File/FileFunctions.h>
#include <MXF/Zelm/DataIO/File/FileSliceSource.h>
#include <MXF/Zelm/Essence/PieceSource.h>

#include <algorithm>
#include <charconv>
#include <filesystem>

namespace Zelm {

using namespace MXF::Zelm;
using DataIO::File::FileSliceSource;

namespace {

/// "out/frame%05d.j2c" as "out/", "frame", 5, ".j2c".
struct Pattern {
    std::string folder, before, after;
    std::size_t width = 0; // digits at least, zeros in front

    std::string name(std::uint64_t number) const {
        std::string const digits = std::to_string(number);
        return folder + before + std::string(width > digits.size() ? width - digits.size() : 0, '0') +
               digits + after;
    }

    /// The number in the last part of a file's name, if it is one of the sequence.
    std::optional<std::uint64_t> numberIn(std::string const& file) const {
        if (file.size() <= before.size() + after.size() || file.compare(0, before.size(), before) != 0)
            return std::nullopt;
        std::uint64_t number = 0;
        auto const* const begin = file.data() + before.size();
        auto const* const end = file.data() + file.size() - after.size();
        auto const [stop, error] = std::from_chars(begin, end, number);
        bool const isNumber = error == std::errc() && stop == end && name(number) == folder + file;
        return isNumber ? std::optional(number) : std::nullopt;
    }
};

std::optional<Pattern> parsePattern(std::string const& name) {
    constexpr std::size_t widest = 18;
    auto const slash = name.find_last_of("/\\");
    std::size_t const last = slash != std::string::npos ? slash + 1 : 0;
    auto const percent = name.find('%', last);
    if (percent == std::string::npos)
        return std::nullopt;
    Pattern pattern{name.substr(0, last), name.substr(last, percent - last), {}, 0};
    auto const* const end = name.data() + name.size();
    auto const* at = name.data() + percent + 1;
    if (at != end && *at == '0')
        at = std::from_chars(at, end, pattern.width).ptr;
    if (at == end || *at != 'd' || pattern.width > widest)
        return std::nullopt;
    pattern.after.assign(at + 1, end);
    return pattern;
}

std::filesystem::path pathOf(std::string const& name) { return std::u8string(name.begin(), name.end()); }

/// Of the files that are there, from `first` on, in rising order.
std::vector<std::uint64_t> numbersOf(Pattern const& pattern, std::uint64_t first) {
    std::vector<std::uint64_t> numbers;
    std::error_code fault;
    std::filesystem::directory_iterator entry(pathOf(pattern.folder.empty() ? "." : pattern.folder), fault);
    for (; !fault && entry != std::filesystem::directory_iterator(); entry.increment(fault)) {
        auto const text = entry->path().filename().u8string();
        auto const number = pattern.numberIn(std::string(text.begin(), text.end()));
        if (number && *number >= first)
            numbers.push_back(*number);
    }
    std::sort(numbers.begin(), numbers.end());
    return numbers;
}

/// The bytes of one file after the other.
class SequenceSource : public Essence::PieceSource {
public:
    SequenceSource(std::vector<std::string> names, std::shared_ptr<DataIO::BlockFactory> blocks)
        : names_(std::move(names)), blocks_(std::move(blocks)) {}

protected:
    bool produce(DataIO::Chain& chain) override {
        constexpr std::uint64_t pieceSize = std::uint64_t{1} << 20;
        if (file_ && file_->read(pieceSize, chain) != 0)
            return true;
        file_.reset();
        if (next_ == names_.size())
            return false;
        file_ = std::make_unique<FileSliceSource>(std::string_view(names_[next_++]), blocks_);
        return true;
    }

    bool nothingLeft() const override { return next_ == names_.size() && (!file_ || file_->endOfStream()); }

private:
    std::vector<std::string> names_;
    std::shared_ptr<DataIO::BlockFactory> blocks_;
    std::size_t next_ = 0;
    std::unique_ptr<FileSliceSource> file_;
};

} // namespace

bool FileSequence::isPattern(std::string const& name) {
    return parsePattern(name) && !DataIO::File::exists(name);
}

FileSequence::FileSequence(std::string const& pattern, std::optional<std::uint64_t> first) {
    auto const parsed = parsePattern(pattern);
    auto const numbers = numbersOf(*parsed, first.value_or(0));
    if (numbers.empty() || (first && numbers.front() != *first))
        throw CannotWrap(first ? parsed->name(*first) + ": there is no such file to begin with"
                               : pattern + ": there is no file with such a name");
    for (std::size_t i = 0; i < numbers.size(); ++i) {
        if (numbers[i] != numbers[0] + i)
            throw CannotWrap(parsed->name(numbers[0] + i) + ": is missing; the sequence goes on with " +
                             parsed->name(numbers[i]));
        names_.push_back(parsed->name(numbers[i]));
    }
}

std::uint64_t FileSequence::bytes() const {
    std::uint64_t sum = 0;
    for (auto const& name : names_) {
        std::error_code fault;
        auto const size = std::filesystem::file_size(pathOf(name), fault);
        sum += fault ? 0 : size;
    }
    return sum;
}

Templates::SharedPtr<DataIO::SliceSource>
FileSequence::open(std::shared_ptr<DataIO::BlockFactory> const& blocks) const {
    return std::make_shared<SequenceSource>(names_, blocks);
}

} // namespace Zelm
