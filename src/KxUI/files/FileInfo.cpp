#include <KxUI/files/FileInfo.h>

#include <KxUI/files/RawName_p.h>
#include <KxUI/files/SequenceFold_p.h>

#include <algorithm>
#include <unordered_set>

namespace Kestrel::UI {
namespace {

QByteArray rangeText(std::int32_t first, std::int32_t last) {
    return QByteArray::number(first) + '-' + QByteArray::number(last);
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

FileInfo::FileInfo(const char* name, bool isSequence)
    : m_name(name)
    , m_flags(isSequence ? Sequence : 0U) {}

QString FileInfo::fileName() const {
    return decodedName(m_name);
}

const char* FileInfo::rawFileName() const {
    return m_name.constData();
}

int FileInfo::getFilenameLength() const {
    return m_name.size();
}

QString FileInfo::absoluteFilePath() const {
    return decodedName(rawAbsoluteFilePath());
}

QByteArray FileInfo::rawAbsoluteFilePath() const {
    return pathTo(m_name);
}

QByteArray FileInfo::rawFramePath(std::int32_t frame) const {
    const std::int32_t width = m_shortestDigits > 0 ? m_shortestDigits : m_numberOfHashes;
    return pathTo(bytesOf(
        frameFileName(viewOf(frameName()), frame, static_cast<std::size_t>(std::max(width, 0)))));
}

QByteArray FileInfo::pathTo(const QByteArray& name) const {
    if (Platform::isAbsolute(viewOf(name)))
        return name;
    QByteArray path = m_directory;
    if (path.isEmpty())
        path = bytesOf(Platform::fromUtf8(Platform::currentDirectory()));
    if (!path.endsWith('/'))
        path += '/';
    return path + name;
}

QByteArray FileInfo::frameName() const {
    return m_frameNameLength < 0 ? m_name : m_name.left(m_frameNameLength);
}

QString FileInfo::sequenceName() const {
    return decodedName(m_sequenceName);
}

QString FileInfo::getSequenceLongName() const {
    if (isSequence() && !sequenceNameBuilt()) {
        FileInfo named(*this);
        named.constructSequenceName();
        return named.getSequenceLongName();
    }
    QByteArray text = m_sequenceName;
    if (!m_frameRanges.empty()) {
        text += " ( ";
        for (const auto& range : m_frameRanges) {
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
    if (m_members.size() == 1) {
        m_sequenceName = m_name;
        return;
    }

    std::int32_t first = m_startFrame;
    std::int32_t last = m_endFrame;
    if (first == 0 && last == 0 && !m_members.empty()) {
        first = m_members.begin()->first;
        last = m_members.rbegin()->first;
    }
    m_sequenceName = m_name;
    const int hash = m_name.indexOf('#');
    if (hash >= 0)
        m_sequenceName.replace(hash, 1, QByteArray(std::max(m_numberOfHashes, 0), '#'));
    m_sequenceName += ' ' + rangeText(first, last);

    if (m_members.empty())
        return;
    std::int32_t start = m_members.begin()->first;
    std::int32_t previous = start;
    for (const auto& member : m_members) {
        if (std::int64_t{member.first} - previous > 1) {
            setFlag(Gaps);
            m_frameRanges.emplace_back(start, previous);
            start = member.first;
        }
        previous = member.first;
    }
    if (hasGaps())
        m_frameRanges.emplace_back(start, previous);
}

void FileInfo::setFlag(std::uint32_t flag, bool on) {
    m_flags = on ? m_flags | flag : m_flags & ~flag;
}

void FileInfo::setIsDirectory(bool isDirectory) {
    setFlag(Directory, isDirectory);
}

void FileInfo::setIsSequence(bool isSequence) {
    setFlag(Sequence, isSequence);
}

bool FileInfo::isAutoSequence() {
    if (!hasFlag(AutoSequenceDetected))
        detectAutoSequence();
    return hasFlag(AutoSequence);
}

void FileInfo::detectAutoSequence() {
    setFlag(AutoSequenceDetected);
    // A listed sequence stands for its members without holding them.
    const bool hasSeveral =
        m_members.size() > 1 || (m_members.empty() && m_startFrame != m_endFrame);
    const QByteArray name = frameName();
    const int dot = name.lastIndexOf('.');
    setFlag(AutoSequence,
            isSequence() && hasSeveral && dot >= 0 && isSequenceExtension(name.constData() + dot));
}

void FileInfo::setAdditionalInfo(std::uint64_t size, std::int64_t lastModified, bool isDirectory,
                                 bool isWritable) {
    m_size = size;
    m_lastModified = lastModified;
    setFlag(Directory, isDirectory);
    setFlag(Writable, isWritable);
    setFlag(AdditionalInfo);
}

void FileInfo::setFrameInformation(std::int32_t startFrame, std::int32_t endFrame,
                                   std::int32_t numberOfHashes) {
    m_startFrame = startFrame;
    m_endFrame = endFrame;
    m_numberOfHashes = numberOfHashes;
}

void FileInfo::insertSequenceFile(std::int32_t frame, FileInfo* info) {
    m_members[frame] = info;
}

void FileInfo::clearSequenceList() {
    m_members.clear();
    m_frameRanges.clear();
    m_sequenceName.clear();
    setFlag(SequenceNameBuilt | Gaps | AutoSequence | AutoSequenceDetected, false);
}

void FileInfo::addSequenceFileExtension(const char* extension) {
    sequenceExtensions().insert(normalisedExtension(extension));
}

bool FileInfo::isSequenceExtension(const char* extension) {
    return sequenceExtensions().count(normalisedExtension(extension)) != 0;
}

} // namespace Kestrel::UI
