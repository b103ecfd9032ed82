#include <KxUI/browse/ReplacedFiles_p.h>

#include <KxUI/browse/AskedFrames_p.h>
#include <KxUI/files/ListingData_p.h>

#include <algorithm>
#include <charconv>
#include <limits>
#include <numeric>
#include <string>

namespace Kestrel::UI {
namespace {

using Base::FrameRange;
using Kind = FileListing::Kind;

// What stands for the frame in a name that begins and ends as the pattern does.
std::optional<std::string_view> frameIn(std::string_view name, const FileNames::Pattern& pattern) {
    const std::size_t around = pattern.before.size() + pattern.after.size();
    if (name.size() <= around || name.compare(0, pattern.before.size(), pattern.before) != 0 ||
        name.compare(name.size() - pattern.after.size(), pattern.after.size(), pattern.after) != 0)
        return std::nullopt;
    return name.substr(pattern.before.size(), name.size() - around);
}

const std::vector<Platform::Entry>& entriesOf(const FileListing& listing) {
    static const std::vector<Platform::Entry> none;
    const auto& raw = ListingData::of(listing)->raw;
    return raw ? raw->entries : none;
}

std::optional<std::int32_t> numberOf(std::string_view digits) {
    std::int32_t number = 0;
    const auto [end, problem] =
        std::from_chars(digits.data(), digits.data() + digits.size(), number);
    if (problem != std::errc() || end != digits.data() + digits.size())
        return std::nullopt;
    return number;
}

// Whether a name has the very digits that the pattern writes for its frame.
bool isWrittenSo(std::string_view digits, std::int32_t frame, const FileNames::Pattern& pattern) {
    if (digits.front() == '-')
        return FileNames::frameFile(pattern, frame) ==
               pattern.before + std::string(digits) + pattern.after;
    const auto length = static_cast<std::int32_t>(digits.size());
    return digits.front() == '0' ? length == std::max(pattern.digits, 1) : length >= pattern.digits;
}

bool isHashes(std::string_view text) {
    return text.find_first_not_of('#') == std::string_view::npos;
}

// Bits are quicker than comparisons where most frames of a range are there: a listing of a million
// is asked at every key.
void sortFrames(std::vector<std::int32_t>& frames) {
    if (std::is_sorted(frames.begin(), frames.end()))
        return;
    const auto [least, most] = std::minmax_element(frames.begin(), frames.end());
    const std::int32_t first = *least;
    const auto span = static_cast<std::size_t>(std::int64_t(*most) - first + 1);
    if (span / 16 > frames.size()) {
        std::sort(frames.begin(), frames.end());
        return;
    }
    std::vector<bool> isThere(span);
    for (const std::int32_t frame : frames)
        isThere[static_cast<std::size_t>(std::int64_t(frame) - first)] = true;
    frames.clear();
    for (std::size_t i = 0; i < span; ++i) {
        if (isThere[i])
            frames.push_back(static_cast<std::int32_t>(first + static_cast<std::int64_t>(i)));
    }
}

// Frames in a row, one step apart, become ranges.
std::vector<FrameRange> rangesOf(const std::vector<std::int32_t>& frames) {
    std::int64_t step = 0;
    for (std::size_t i = 1; i < frames.size(); ++i)
        step = std::gcd(step, std::int64_t(frames[i]) - frames[i - 1]);
    std::vector<FrameRange> ranges;
    for (const std::int32_t frame : frames) {
        if (!ranges.empty() && step <= std::numeric_limits<std::int32_t>::max() &&
            std::int64_t(ranges.back().last) + step == frame)
            ranges.back() = {ranges.back().first, frame, static_cast<std::int32_t>(step)};
        else
            ranges.push_back({frame, frame});
    }
    return ranges;
}

} // namespace

// What was read counts, not what is shown: a file that is hidden, or one that another of the same
// frame stands for, is lost all the same.
ReplacedFiles replacedByFile(const FileListing& listing, std::string_view name) {
    ReplacedFiles files;
    for (const Platform::Entry& entry : entriesOf(listing)) {
        if (entry.view() != name)
            continue;
        files.isFolder = entry.type == Platform::EntryType::Directory;
        files.count = files.isFolder ? 0 : 1;
        break;
    }
    return files;
}

ReplacedFiles replacedBySequence(const FileListing& listing, const FileNames::Pattern& pattern,
                                 const std::optional<FrameRange>& written) {
    std::vector<std::int32_t> frames;
    for (const Platform::Entry& entry : entriesOf(listing)) {
        const std::string_view name = entry.view();
        const auto digits = frameIn(name, pattern);
        const auto frame = digits ? numberOf(*digits) : std::nullopt;
        if (frame && entry.type != Platform::EntryType::Directory &&
            (!written || commonFrames(*written, {*frame, *frame})) &&
            isWrittenSo(*digits, *frame, pattern))
            frames.push_back(*frame);
    }
    sortFrames(frames);
    ReplacedFiles files;
    files.count = static_cast<std::int64_t>(frames.size());
    files.frames = rangesOf(frames);
    return files;
}

std::vector<int> sequencesOf(const FileListing& listing, const FileNames::Pattern& pattern) {
    std::vector<int> found;
    const auto isSame = [&](int index) {
        const auto place = frameIn(listing.item(index).name, pattern);
        return place && static_cast<std::int32_t>(place->size()) == pattern.digits;
    };
    for (int i = 0; i < listing.size(); ++i) {
        const FileListing::Item& item = listing.item(i);
        const auto place = item.kind == Kind::Sequence ? frameIn(item.name, pattern) : std::nullopt;
        if (place && isHashes(*place))
            found.push_back(i);
    }
    std::stable_partition(found.begin(), found.end(), isSame);
    return found;
}

} // namespace Kestrel::UI
