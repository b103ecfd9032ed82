#include <KxUI/files/FileInfoList.h>

#include <KxUI/files/NaturalOrder_p.h>
#include <KxUI/files/RawName_p.h>
#include <KxUI/files/SequenceFold_p.h>

#include <QDateTime>
#include <QFileInfo>

#include <algorithm>

namespace Kestrel::UI {
namespace {

QByteArray rangeText(std::int32_t first, std::int32_t last) {
    return ' ' + QByteArray::number(first) + '-' + QByteArray::number(last);
}

} // namespace

// Makes the items of a listing.
class FileInfoList::Builder {
public:
    Builder(FileInfoList& list, const QByteArray& directory)
        : m_files(list.m_files)
        , m_split(list.m_splitIncomplete)
        , m_directory(directory) {}

    void addFile(const Platform::Entry& entry) {
        add(bytesOf(entry.view())).setIsDirectory(entry.type == Platform::EntryType::Directory);
    }

    void addHeadDirectory(const Platform::Entry& entry) {
        add(bytesOf(entry.view())).setIsDirectory(true);
    }

    void addSequence(const SequenceRun& run, const FrameNameRules::Frame& head) {
        const std::string frameName = FrameNameRules::frameName(head);
        if (run.missing != 0 && m_split) {
            for (const auto& range : run.presentRanges()) {
                if (range.first != range.last)
                    addStretch(run, head, frameName, range.first, range.last);
                else
                    add(bytesOf(frameFileName(frameName, range.first, hashesIn(frameName))));
            }
            return;
        }
        FileInfo& item = addStretch(run, head, frameName, run.firstFrame, run.lastFrame);
        if (run.step > 1)
            item.m_name += ',' + QByteArray::number(run.step);
        if (run.missing != 0) {
            item.m_frameRanges = run.presentRanges();
            item.m_missingFrames = run.missing;
            item.setFlag(FileInfo::Gaps);
            item.m_name += " (";
            for (const auto& range : item.m_frameRanges)
                item.m_name += rangeText(range.first, range.last) + ' ';
            item.m_name += ')';
        }
    }

private:
    static std::size_t hashesIn(const std::string& frameName) {
        return frameName.rfind('#') - frameName.find('#') + 1;
    }

    FileInfo& add(const QByteArray& name) {
        FileInfo& item = m_files.emplace_back();
        item.m_name = name;
        item.m_directory = m_directory;
        return item;
    }

    FileInfo& addStretch(const SequenceRun& run, const FrameNameRules::Frame& head,
                         const std::string& frameName, std::int32_t first, std::int32_t last) {
        FileInfo& item = add(bytesOf(frameName) + rangeText(first, last));
        item.m_sequenceName = item.m_name;
        item.m_frameNameLength = static_cast<std::int32_t>(frameName.size());
        item.m_shortestDigits = static_cast<std::int32_t>(head.shortest);
        item.m_frameStep = std::max(run.step, 1);
        item.setFrameInformation(first, last,
                                 head.mixed ? 1 : static_cast<std::int32_t>(head.digits));
        item.setFlag(FileInfo::Sequence | FileInfo::SequenceNameBuilt);
        return item;
    }

    std::vector<FileInfo>& m_files;
    bool m_split;
    QByteArray m_directory;
};

FileInfoList::FileInfoList(QObject* parent)
    : QObject(parent) {}

FileInfoList::~FileInfoList() = default;

int FileInfoList::fill(const QString& directory) {
    return fillRaw(encodedName(directory));
}

int FileInfoList::fillRaw(const QByteArray& directory) {
    m_files.clear();
    m_error.clear();
    m_cursor = 0;
    m_directory = directory;

    const std::string path = Platform::toUtf8(viewOf(directory));
    Platform::Listing listing;
    if (const int error = Platform::readDirectory(path, listing); error != 0) {
        m_error = qt_error_string(error);
        return 0;
    }
    sortNaturally(listing.entries,
                  m_filterSequences ? NaturalOrder::Grouping : NaturalOrder::Plain);
    Builder builder(*this, bytesOf(Platform::fromUtf8(Platform::absolutePath(path))));
    if (m_filterSequences) {
        FrameNameRules rules;
        foldSequences(
            listing.entries, rules,
            [&](const auto& entry) { return Platform::isDirectory(path, entry); }, builder);
    } else {
        m_files.reserve(listing.entries.size());
        for (const auto& entry : listing.entries)
            builder.addFile(entry);
    }
    if (!m_files.empty())
        emit lazyStatFetchNext();
    return static_cast<int>(listing.entries.size());
}

QString FileInfoList::directory() const {
    return decodedName(m_directory);
}

QString FileInfoList::errorString() const {
    return m_error;
}

void FileInfoList::setShouldFilterSequences(bool filter) {
    m_filterSequences = filter;
}

void FileInfoList::setSplitIncompleteSequences(bool split) {
    m_splitIncomplete = split;
}

void FileInfoList::push_back(const FileInfo& info) {
    m_files.push_back(info);
}

void FileInfoList::push_back(const QFileInfo& info) {
    FileInfo& item = m_files.emplace_back(encodedName(info.fileName()).constData(), false);
    item.m_directory = encodedName(info.absolutePath());
    item.setAdditionalInfo(static_cast<std::uint64_t>(info.size()),
                           info.lastModified().toSecsSinceEpoch(), info.isDir(), info.isWritable());
}

FileInfo* FileInfoList::lazyStatItem() {
    return m_cursor < m_files.size() ? &m_files[m_cursor] : nullptr;
}

bool FileInfoList::fetchLazyStat() {
    FileInfo* const item = lazyStatItem();
    if (!item)
        return false;
    const QByteArray rawPath =
        item->isSequence() ? item->rawFramePath(item->startFrame()) : item->rawAbsoluteFilePath();
    const std::string path = Platform::toUtf8(viewOf(rawPath));
    Platform::Status status;
    const bool exists = Platform::queryStatus(path, status);
    item->setAdditionalInfo(status.size, status.time(),
                            exists ? status.isDirectory() : item->isDir(),
                            exists && Platform::isWritable(path));
    return exists;
}

void FileInfoList::startLazyStat() {
    m_cursor = 0;
    if (!m_files.empty())
        emit lazyStatFetchNext();
}

void FileInfoList::onLazyStatFetchNext() {
    if (m_files.empty())
        return;
    if (m_cursor < m_files.size())
        ++m_cursor;
    if (m_cursor < m_files.size())
        emit lazyStatFetchNext();
    else
        emit fileInfoAvailable();
}

} // namespace Kestrel::UI
