#include <KxUI/browse/ReplacedFiles_p.h>

#include <KxUI/browse/AskedFrames_p.h>
#include <KxUI/files/RawName_p.h>

#include <algorithm>
#include <charconv>

namespace Kestrel::UI {
namespace {

using Base::FrameRange;
using Kind = FileListing::Kind;

/** The frames of one item, as far as they are in a range. */
class Collector {
public:
    Collector(const FileNames::Pattern& pattern, const std::optional<FrameRange>& written)
        : m_pattern(pattern)
        , m_written(written) {}

    void addFile(std::string_view name);
    void addSequence(const FileListing& listing, int index);
    void addMembers(const FileListing& listing, int index, const FrameRange& range);
    ReplacedFiles result();

private:
    void add(const FrameRange& range);
    bool isWritten(std::int32_t frame) const {
        return !m_written || commonFrames(*m_written, {frame, frame}).has_value();
    }

    const FileNames::Pattern& m_pattern;
    const std::optional<FrameRange>& m_written;
    ReplacedFiles m_files;
};

// What stands for the frame in a name that begins and ends as the pattern does.
std::optional<std::string_view> frameIn(std::string_view name, const FileNames::Pattern& pattern) {
    const std::size_t around = pattern.before.size() + pattern.after.size();
    if (name.size() <= around || name.compare(0, pattern.before.size(), pattern.before) != 0 ||
        name.compare(name.size() - pattern.after.size(), pattern.after.size(), pattern.after) != 0)
        return std::nullopt;
    return name.substr(pattern.before.size(), name.size() - around);
}

std::optional<std::int32_t> numberOf(std::string_view digits) {
    std::int32_t number = 0;
    const auto [end, problem] =
        std::from_chars(digits.data(), digits.data() + digits.size(), number);
    if (problem != std::errc() || end != digits.data() + digits.size())
        return std::nullopt;
    return number;
}

bool isHashes(std::string_view text) {
    return text.find_first_not_of('#') == std::string_view::npos;
}

void Collector::add(const FrameRange& range) {
    if (!m_written) {
        m_files.frames.push_back(range);
        m_files.count += countOf(range);
        return;
    }
    const auto both = commonFrames(range, *m_written);
    if (!both)
        return;
    m_files.count += both->count();
    const auto step = static_cast<std::int32_t>(both->count() > 1 ? both->step : 1);
    m_files.frames.emplace_back(static_cast<std::int32_t>(both->first),
                                static_cast<std::int32_t>(both->last), step);
}

void Collector::addFile(std::string_view name) {
    const auto digits = frameIn(name, m_pattern);
    const auto frame = digits ? numberOf(*digits) : std::nullopt;
    if (frame && isWritten(*frame) && FileNames::frameFile(m_pattern, *frame) == name)
        add({*frame, *frame});
}

void Collector::addSequence(const FileListing& listing, int index) {
    constexpr std::int64_t mostAsked = 4096;
    const FileListing::Item& item = listing.item(index);
    const auto place = frameIn(item.name, m_pattern);
    if (!place || !isHashes(*place))
        return;
    const auto digits = static_cast<std::int32_t>(place->size());
    // Files of one length have the names of fewer digits only where they fill them.
    if (digits > 1 && digits < m_pattern.digits)
        return;
    const bool areSame = digits > 1 && digits == m_pattern.digits;
    for (const FrameRange& range : listing.frameRanges(index)) {
        if (areSame || item.frames > mostAsked)
            add(range);
        else
            addMembers(listing, index, range);
    }
}

void Collector::addMembers(const FileListing& listing, int index, const FrameRange& range) {
    const auto directory = static_cast<std::size_t>(listing.directory().size());
    for (std::int64_t i = 0; i < countOf(range); ++i) {
        const QByteArray path =
            listing.framePath(index, static_cast<std::int32_t>(range.first + i * range.step));
        const std::string_view whole = viewOf(path);
        addFile(whole.substr(std::min(whole.size(), whole.find_first_not_of('/', directory))));
    }
}

// Frames in a row become ranges.
ReplacedFiles Collector::result() {
    auto& ranges = m_files.frames;
    std::sort(ranges.begin(), ranges.end(),
              [](const FrameRange& a, const FrameRange& b) { return a.first < b.first; });
    const std::int32_t step = m_written ? std::max(m_written->step, 1) : 1;
    const auto isInStep = [&](const FrameRange& range) {
        return range.step == step || range.first == range.last;
    };
    std::vector<FrameRange> joined;
    for (const FrameRange& range : ranges) {
        const bool continues = !joined.empty() && isInStep(joined.back()) && isInStep(range) &&
                               std::int64_t(joined.back().last) + step == range.first;
        if (continues)
            joined.back() = {joined.back().first, range.last, step};
        else
            joined.push_back(range);
    }
    ranges.swap(joined);
    return std::move(m_files);
}

} // namespace

ReplacedFiles replacedByFile(const FileListing& listing, std::string_view name) {
    ReplacedFiles files;
    const int index = listing.findFile(name);
    if (index < 0)
        return files;
    files.isFolder = listing.item(index).kind == Kind::Directory;
    files.count = files.isFolder ? 0 : 1;
    return files;
}

ReplacedFiles replacedBySequence(const FileListing& listing, const FileNames::Pattern& pattern,
                                 const std::optional<FrameRange>& written) {
    Collector collector(pattern, written);
    for (int i = 0; i < listing.size(); ++i) {
        if (listing.item(i).kind == Kind::Sequence)
            collector.addSequence(listing, i);
        else if (listing.item(i).kind != Kind::Directory)
            collector.addFile(listing.item(i).name);
    }
    return collector.result();
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
