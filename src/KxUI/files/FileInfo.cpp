#include <KxUI/files/FileInfo.h>

#include <KxUI/files/FileInfoData_p.h>
#include <KxUI/files/RawName_p.h>

#include <algorithm>
#include <unordered_set>

namespace Kestrel::UI {

using Base::FrameRange;

namespace {

QByteArray rangeText(std::int32_t first, std::int32_t last) {
    return QByteArray::number(first) + '-' + QByteArray::number(last);
}

// What items without a name share.
const QSharedDataPointer<FileInfoData>& noData() {
    static const QSharedDataPointer<FileInfoData> data(new FileInfoData);
    return data;
}

// Adds a frame to ranges whose frames are `step` apart.
void append(std::vector<FrameRange>& ranges, std::int32_t first, std::int32_t last,
            std::int32_t step) {
    if (!ranges.empty() && std::int64_t{first} - ranges.back().last == step)
        ranges.back().last = last;
    else
        ranges.emplace_back(first, last, step);
}

bool contains(const FrameRange& range, std::int32_t frame) {
    return frame >= range.first && frame <= range.last &&
           (std::int64_t{frame} - range.first) % range.step == 0;
}

std::unordered_set<std::string>& sequenceExtensions() {
    static std::unordered_set<std::string> extensions;
    return extensions;
}

// Lower case without one leading dot.
std::string normalisedExtension(const char* extension) {
    std::string text(extension ? extension : "");
    if (!text.empty() && text.front() == '.')
        text.erase(0, 1);
    for (char& c : text) {
        if (c >= 'A' && c <= 'Z')
            c = static_cast<char>(c - 'A' + 'a');
    }
    return text;
}

} // namespace

FileInfo::FileInfo()
    : d(noData()) {}

FileInfo::FileInfo(FileInfoData* data)
    : d(data) {}

FileInfo::FileInfo(const char* name, bool isSequence)
    : d(new FileInfoData(name)) {
    if (!isSequence)
        return;
    d->flags = Sequence;
    d->readSequenceText();
}

FileInfo::FileInfo(const FileInfo& other) noexcept = default;
FileInfo& FileInfo::operator=(const FileInfo& other) noexcept = default;
FileInfo::~FileInfo() = default;

QString FileInfo::fileName() const {
    return decodedName(d->name);
}

const char* FileInfo::rawFileName() const {
    return d->name.constData();
}

int FileInfo::getFilenameLength() const {
    return static_cast<int>(d->name.size());
}

QString FileInfo::frameName() const {
    return decodedName(rawFrameName());
}

QByteArray FileInfo::rawFrameName() const {
    return d->frameName();
}

QString FileInfo::absoluteFilePath() const {
    return decodedName(rawAbsoluteFilePath());
}

QByteArray FileInfo::rawAbsoluteFilePath() const {
    return d->pathTo(d->name);
}

QString FileInfo::framePath(std::int32_t frame) const {
    return decodedName(rawFramePath(frame));
}

QByteArray FileInfo::rawFramePath(std::int32_t frame) const {
    if (const auto member = d->members.find(frame); member != d->members.end() && member->second) {
        const FileInfoData& file = *member->second->d;
        return file.directory.isEmpty() ? d->pathTo(file.name) : file.pathTo(file.name);
    }
    return d->pathTo(d->frameFile(frame));
}

bool FileInfo::hasFrame(std::int32_t frame) const {
    if (!isSequence())
        return false;
    if (!d->members.empty())
        return d->members.count(frame) != 0;
    if (!d->stretches.empty())
        return d->stretchOf(frame) != nullptr;
    const std::optional<FrameRange> range = d->statedRange();
    return range && contains(*range, frame);
}

std::vector<FrameRange> FileInfo::presentRanges() const {
    std::vector<FrameRange> ranges;
    if (!isSequence())
        return ranges;
    const std::int32_t step = d->frameStep;
    for (const auto& member : d->members)
        append(ranges, member.first, member.first, step);
    if (!ranges.empty())
        return ranges;
    for (const auto& [frames, width, isPadded] : d->stretches) {
        if (frames.step == step || frames.first == frames.last) {
            append(ranges, frames.first, frames.last, step);
            continue;
        }
        for (std::int64_t each = frames.first; each <= frames.last; each += frames.step)
            append(ranges, static_cast<std::int32_t>(each), static_cast<std::int32_t>(each), step);
    }
    if (const auto range = d->statedRange(); range && ranges.empty())
        ranges.push_back(*range);
    return ranges;
}

QString FileInfo::sequenceName() const {
    return decodedName(d->sequenceName);
}

QString FileInfo::getSequenceLongName() const {
    if (isSequence() && !sequenceNameBuilt()) {
        FileInfo named(*this);
        named.constructSequenceName();
        return named.getSequenceLongName();
    }
    QByteArray text = d->sequenceName;
    if (!d->frameRanges.empty()) {
        text += " ( ";
        for (const auto& range : d->frameRanges) {
            text += range.first == range.last ? QByteArray::number(range.first)
                                              : rangeText(range.first, range.last);
            text += ' ';
        }
        text += ')';
    }
    return decodedName(text);
}

void FileInfo::constructSequenceName() {
    if (!isSequence() || sequenceNameBuilt())
        return;
    setFlag(SequenceNameBuilt);
    if (d->members.size() == 1) {
        d->sequenceName = d->name;
        return;
    }

    std::int32_t first = d->startFrame;
    std::int32_t last = d->endFrame;
    if (first == 0 && last == 0 && !d->members.empty()) {
        first = d->members.begin()->first;
        last = d->members.rbegin()->first;
    }
    d->sequenceName = d->name;
    const auto hash = d->name.indexOf('#');
    if (hash >= 0)
        d->sequenceName.replace(hash, 1, QByteArray(std::max(d->numberOfHashes, 0), '#'));
    d->sequenceName = sequenceNameOf(viewOf(d->sequenceName), first, last);

    if (d->members.empty())
        return;
    std::int32_t start = d->members.begin()->first;
    std::int32_t previous = start;
    for (const auto& member : d->members) {
        if (std::int64_t{member.first} - previous > 1) {
            setFlag(Gaps);
            d->frameRanges.emplace_back(start, previous);
            start = member.first;
        }
        previous = member.first;
    }
    if (hasGaps())
        d->frameRanges.emplace_back(start, previous);
}

FileInfo::Flags FileInfo::flags() const {
    return d->flags;
}

void FileInfo::setFlag(Flags flag, bool on) {
    d->flags = on ? d->flags | flag : d->flags & ~flag;
}

void FileInfo::setIsDirectory(bool isDirectory) {
    setFlag(Directory, isDirectory);
}

void FileInfo::setIsSequence(bool isSequence) {
    setFlag(Sequence, isSequence);
}

bool FileInfo::isAutoSequence() {
    if (!d->has(AutoSequenceDetected))
        detectAutoSequence();
    return d->has(AutoSequence);
}

void FileInfo::detectAutoSequence() {
    setFlag(AutoSequenceDetected);
    // A listed sequence stands for its members without holding them.
    const bool hasSeveral =
        d->members.size() > 1 || (d->members.empty() && d->startFrame != d->endFrame);
    const QByteArray name = d->frameName();
    const auto dot = name.lastIndexOf('.');
    setFlag(AutoSequence,
            isSequence() && hasSeveral && dot >= 0 && isSequenceExtension(name.constData() + dot));
}

void FileInfo::setAdditionalInfo(std::uint64_t size, std::int64_t lastModified, bool isDirectory,
                                 bool isWritable) {
    d->size = size;
    d->lastModified = lastModified;
    setFlag(Directory, isDirectory);
    setFlag(Writable, isWritable);
    setFlag(AdditionalInfo);
}

void FileInfo::setFrameInformation(std::int32_t startFrame, std::int32_t endFrame,
                                   std::int32_t numberOfHashes) {
    if (startFrame != d->startFrame || endFrame != d->endFrame)
        d->stretches.clear();
    d->startFrame = startFrame;
    d->endFrame = endFrame;
    d->numberOfHashes = numberOfHashes;
}

std::uint64_t FileInfo::size() const {
    return d->size;
}

std::int64_t FileInfo::lastModified() const {
    return d->lastModified;
}

std::int32_t FileInfo::startFrame() const {
    return d->startFrame;
}

std::int32_t FileInfo::endFrame() const {
    return d->endFrame;
}

std::int32_t FileInfo::numberOfHashes() const {
    return d->numberOfHashes;
}

std::int32_t FileInfo::frameStep() const {
    return d->frameStep;
}

std::int64_t FileInfo::missingFrames() const {
    return d->missingFrames;
}

const std::vector<FrameRange>& FileInfo::frameRanges() const {
    return d->frameRanges;
}

const std::map<std::int32_t, FileInfo*>& FileInfo::sequenceCollection() const {
    return d->members;
}

int FileInfo::sequenceSize() const {
    return static_cast<int>(d->members.size());
}

FileInfo* FileInfo::getParent() const {
    return d->parent;
}

void FileInfo::setParent(FileInfo* parent) {
    d->parent = parent;
}

void FileInfo::insertSequenceFile(std::int32_t frame, FileInfo* info) {
    d->members[frame] = info;
}

void FileInfo::clearSequenceList() {
    d->members.clear();
    d->frameRanges.clear();
    d->stretches.clear();
    d->missingFrames = 0;
    d->sequenceName.clear();
    setFlag(SequenceNameBuilt | Gaps | AutoSequence | AutoSequenceDetected, false);
}

void FileInfo::addSequenceFileExtension(const char* extension) {
    if (std::string text = normalisedExtension(extension); !text.empty())
        sequenceExtensions().insert(std::move(text));
}

bool FileInfo::isSequenceExtension(const char* extension) {
    return sequenceExtensions().count(normalisedExtension(extension)) != 0;
}

} // namespace Kestrel::UI
