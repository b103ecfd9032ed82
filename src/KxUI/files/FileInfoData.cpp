#include <KxUI/files/FileInfoData_p.h>

#include <KxUI/files/RawName_p.h>

#include <algorithm>
#include <charconv>

namespace Kestrel::UI {

using Base::FrameRange;

namespace {

constexpr auto nowhere = std::string_view::npos;

/** The text of a listed sequence: `img.####.exr 1-9 ( 1-3  5-9 )`. */
struct SequenceText {
    std::string_view frameName;
    FrameRange whole;
    bool hasGaps = false;
    std::vector<FrameRange> present; ///< of one with gaps
};

bool readRanges(std::string_view text, std::vector<FrameRange>& ranges) {
    for (;;) {
        text.remove_prefix(std::min(text.find_first_not_of(' '), text.size()));
        if (text.empty())
            return true;
        const std::size_t end = std::min(text.find(' '), text.size());
        const auto range = Base::parseFrameRange(text.substr(0, end));
        if (!range)
            return false;
        ranges.push_back(*range);
        text.remove_prefix(end);
    }
}

std::optional<SequenceText> sequenceTextOf(std::string_view text) {
    SequenceText result;
    if (!text.empty() && text.back() == ')') {
        const std::size_t open = text.rfind(" (");
        if (open == nowhere ||
            !readRanges(text.substr(open + 2, text.size() - open - 3), result.present))
            return std::nullopt;
        result.hasGaps = true;
        text = text.substr(0, open);
    }
    const std::size_t blank = text.rfind(' ');
    if (blank == nowhere)
        return std::nullopt;
    const auto whole = Base::parseFrameRange(text.substr(blank + 1));
    result.frameName = text.substr(0, blank);
    if (!whole || result.frameName.find('#') == nowhere)
        return std::nullopt;
    result.whole = *whole;
    return result;
}

// The longest row of #: a name may hold others of its own.
std::string_view hashesOf(std::string_view frameName) {
    std::string_view longest;
    for (std::size_t at = frameName.find('#'); at < frameName.size();) {
        const std::size_t end = std::min(frameName.find_first_not_of('#', at), frameName.size());
        if (end - at >= longest.size())
            longest = frameName.substr(at, end - at);
        at = frameName.find('#', end);
    }
    return longest;
}

} // namespace

QByteArray sequenceNameOf(std::string_view frameName, std::int32_t first, std::int32_t last) {
    // One allocation: a folder may hold a hundred thousand sequences.
    constexpr int roomForRange = 24;
    QByteArray text;
    text.reserve(static_cast<int>(frameName.size()) + roomForRange);
    text.append(frameName.data(), static_cast<int>(frameName.size())).append(' ');
    const auto begin = text.size();
    text.resize(begin + roomForRange);
    char* const to = text.data() + begin;
    char* end = std::to_chars(to, to + roomForRange, first).ptr;
    *end++ = '-';
    end = std::to_chars(end, to + roomForRange, last).ptr;
    text.truncate(begin + static_cast<int>(end - to));
    return text;
}

QByteArray FileInfoData::pathTo(const QByteArray& itemName) const {
    if (Platform::isAbsolute(viewOf(itemName)))
        return itemName;
    QByteArray path = directory;
    if (path.isEmpty())
        path = bytesOf(Platform::fromUtf8(Platform::currentDirectory()));
    if (path.isEmpty())
        return {};
    if (!path.endsWith('/'))
        path += '/';
    return path + itemName;
}

QByteArray FileInfoData::frameFile(std::int32_t frame) const {
    const FrameStretch* const stretch = stretchOf(frame);
    const std::int32_t width = stretch              ? stretch->width
                               : shortestDigits > 0 ? shortestDigits
                                                    : numberOfHashes;
    const QByteArray text = frameName();
    if (numberBegin < 0)
        return bytesOf(frameFileName(viewOf(text), frame, width));
    return text.left(numberBegin) + bytesOf(paddedNumber(frame, width)) +
           text.mid(numberBegin + numberLength);
}

std::optional<FrameRange> FileInfoData::statedRange() const {
    if ((startFrame == 0 && endFrame == 0) || endFrame < startFrame)
        return std::nullopt;
    return FrameRange(startFrame, endFrame, frameStep);
}

const FrameStretch* FileInfoData::stretchOf(std::int32_t frame) const {
    const auto next = std::upper_bound(
        stretches.begin(), stretches.end(), frame,
        [](std::int32_t each, const FrameStretch& stretch) { return each < stretch.frames.first; });
    if (next == stretches.begin())
        return nullptr;
    const FrameStretch& stretch = *(next - 1);
    const auto& [first, last, step] = stretch.frames;
    return frame <= last && (frame - first) % step == 0 ? &stretch : nullptr;
}

void FileInfoData::readSequenceText() {
    const auto text = sequenceTextOf(viewOf(name));
    if (!text)
        return;
    const auto [first, last, step] = text->whole;
    const std::string_view hashes = hashesOf(text->frameName);
    frameNameLength = static_cast<std::int32_t>(text->frameName.size());
    numberBegin = static_cast<std::int32_t>(hashes.data() - text->frameName.data());
    numberLength = numberOfHashes = static_cast<std::int32_t>(hashes.size());
    shortestDigits =
        numberLength > 1 ? numberLength : static_cast<std::int32_t>(std::to_string(first).size());
    startFrame = first;
    endFrame = last;
    frameStep = step;
    sequenceName = sequenceNameOf(text->frameName, first, last);
    flags |= FileInfo::SequenceNameBuilt;
    if (!text->hasGaps) {
        stretches.push_back({text->whole, shortestDigits, false});
        return;
    }
    flags |= FileInfo::Gaps;
    frameRanges = text->present;
    for (const auto& range : frameRanges) {
        if (stretches.empty() || range.first > stretches.back().frames.last)
            stretches.push_back({{range.first, range.last, step}, shortestDigits, false});
    }
    // A single frame after the last gap is not among the ranges of the text.
    if (stretches.empty() || stretches.back().frames.last < last)
        stretches.push_back({{last, last, step}, shortestDigits, false});
    countMissing();
}

void FileInfoData::countMissing() {
    missingFrames = UI::missingFrames({startFrame, endFrame, frameStep}, stretches.data(),
                                      stretches.data() + stretches.size());
}

void FileInfoData::setFolded(const FoldedSequence& folded) {
    sequenceName = sequenceNameOf(folded.frameName, folded.range.first, folded.range.last);
    name = sequenceName;
    frameNameLength = static_cast<std::int32_t>(folded.frameName.size());
    shortestDigits = folded.shortestDigits;
    numberBegin = folded.numberBegin;
    numberLength = numberOfHashes = folded.numberLength;
    frameStep = std::max(folded.range.step, 1);
    startFrame = folded.range.first;
    endFrame = folded.range.last;
    flags = FileInfo::Sequence | FileInfo::SequenceNameBuilt;
}

void FileInfoData::setMembers(const FrameStretch* first, const FrameStretch* end,
                              std::vector<FrameRange> textRanges) {
    stretches.assign(first, end);
    countMissing();
    if (frameStep > 1)
        name += ',' + QByteArray::number(frameStep);
    if (textRanges.empty())
        return;
    flags |= FileInfo::Gaps;
    name += " (";
    for (const auto& range : textRanges)
        name += ' ' + QByteArray::number(range.first) + '-' + QByteArray::number(range.last) + ' ';
    name += ')';
    frameRanges = std::move(textRanges);
}

} // namespace Kestrel::UI
