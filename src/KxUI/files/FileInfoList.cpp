#include <KxUI/files/FileInfoList.h>

#include <KxUI/files/FileInfoData_p.h>
#include <KxUI/files/NaturalOrder_p.h>
#include <KxUI/files/RawName_p.h>

#include <QDateTime>
#include <QFileInfo>
#include <QPointer>

#include <algorithm>

namespace Kestrel::UI {
namespace {} // namespace

struct FileInfoList::Private {
    std::vector<FileInfo> files;
    QByteArray directory;
    QString error;
    std::size_t cursor = 0;
    bool filterSequences = false;
    bool splitIncomplete = false;
};

// Makes the items of a listing.
class FileInfoList::Builder {
public:
    Builder(Private& list, const QByteArray& directory)
        : m_files(list.files)
        , m_split(list.splitIncomplete)
        , m_directory(directory) {}

    // The entries are those of the directory `path`; they are put in order.
    void add(const std::string& path, Platform::Listing& listing, bool fold) {
        sortNaturally(listing.entries, fold ? NaturalOrder::Grouping : NaturalOrder::Plain);
        if (fold) {
            FrameNameRules rules;
            foldSequences(
                listing.entries, rules,
                [&](const auto& entry) { return Platform::isDirectory(path, entry); }, *this);
            return;
        }
        m_files.reserve(listing.entries.size());
        for (const auto& entry : listing.entries)
            addFile(entry);
    }

    void addFile(const Platform::Entry& entry) {
        FileInfoData& item = add(bytesOf(entry.view()));
        if (entry.type == Platform::EntryType::Directory)
            item.flags = FileInfo::Directory;
    }

    void addHeadDirectory(const Platform::Entry& entry) {
        add(bytesOf(entry.view())).flags = FileInfo::Directory;
    }

    void addSequence(const SequenceRun& run, const FrameNameRules::Frame& head) {
        const std::string frameName = FrameNameRules::frameName(head);
        if (run.missing != 0 && m_split) {
            auto next = run.stretches.begin();
            for (const auto& range : run.presentRanges()) {
                if (range.first != range.last)
                    addPart(run, head, frameName, range, next);
                else
                    add(bytesOf(frameFileName(frameName, range.first, hashesIn(frameName))));
            }
            return;
        }
        FileInfoData& item = addStretch(run, head, frameName, run.firstFrame, run.lastFrame);
        std::vector<Base::FrameRange> textRanges;
        if (run.missing != 0)
            textRanges = run.presentRanges();
        item.setMembers(run.stretches.data(), run.stretches.data() + run.stretches.size(),
                        std::move(textRanges));
    }

private:
    using Stretches = std::vector<FrameStretch>::const_iterator;

    static std::int32_t hashesIn(const std::string& frameName) {
        return static_cast<std::int32_t>(frameName.rfind('#') - frameName.find('#') + 1);
    }

    FileInfoData& add(const QByteArray& name) {
        auto* const data = new FileInfoData(name);
        m_files.push_back(FileInfo(data));
        data->directory = m_directory;
        return *data;
    }

    FileInfoData& addStretch(const SequenceRun& run, const FrameNameRules::Frame& head,
                             const std::string& frameName, std::int32_t first, std::int32_t last) {
        FileInfoData& item = add({});
        item.setFolded({frameName,
                        {first, last, run.step},
                        static_cast<std::int32_t>(head.shortest),
                        static_cast<std::int32_t>(head.mixed ? head.before : head.begin),
                        static_cast<std::int32_t>(head.mixed ? 1 : head.digits)});
        return item;
    }

    // The frames of one range of a sequence; `next` is the first stretch that may reach into it.
    void addPart(const SequenceRun& run, const FrameNameRules::Frame& head,
                 const std::string& frameName, const Base::FrameRange& range, Stretches& next) {
        FileInfoData& item = addStretch(run, head, frameName, range.first, range.last);
        while (next != run.stretches.end() && next->frames.last < range.first)
            ++next;
        for (auto each = next; each != run.stretches.end() && each->frames.first <= range.last;
             ++each) {
            FrameStretch part = *each;
            auto& [first, last, step] = part.frames;
            while (first < range.first && first < last)
                first += step;
            while (last > range.last && last > first)
                last -= step;
            if (first >= range.first && last <= range.last)
                item.stretches.push_back(part);
        }
        item.countMissing();
    }

    std::vector<FileInfo>& m_files;
    bool m_split;
    QByteArray m_directory;
};

FileInfoList::FileInfoList(QObject* parent)
    : QObject(parent)
    , d(std::make_unique<Private>()) {}

FileInfoList::~FileInfoList() = default;

int FileInfoList::fill(const QString& directory) {
    return fillRaw(encodedName(directory));
}

int FileInfoList::fillRaw(const QByteArray& directory) {
    d->files.clear();
    d->error.clear();
    d->cursor = 0;
    d->directory = directory;

    const std::string path = Platform::toUtf8(viewOf(directory));
    Platform::Listing listing;
    if (const int error = Platform::readDirectory(path, listing); error != 0)
        d->error = qt_error_string(error);
    Builder builder(*d, bytesOf(Platform::fromUtf8(Platform::absolutePath(path))));
    builder.add(path, listing, d->filterSequences);
    const QPointer<FileInfoList> self(this);
    Q_EMIT listChanged();
    if (self && !d->files.empty())
        Q_EMIT lazyStatFetchNext();
    return static_cast<int>(listing.entries.size());
}

const std::vector<FileInfo>& FileInfoList::getFileList() const {
    return d->files;
}

std::vector<FileInfo>& FileInfoList::getFileList() {
    return d->files;
}

FileInfo& FileInfoList::operator[](int index) {
    return d->files[static_cast<std::size_t>(index)];
}

const FileInfo& FileInfoList::operator[](int index) const {
    return d->files[static_cast<std::size_t>(index)];
}

int FileInfoList::size() const {
    return static_cast<int>(d->files.size());
}

int FileInfoList::lazyStatIndex() const {
    return static_cast<int>(d->cursor);
}

bool FileInfoList::shouldFilterSequences() const {
    return d->filterSequences;
}

bool FileInfoList::splitIncompleteSequences() const {
    return d->splitIncomplete;
}

QString FileInfoList::directory() const {
    return decodedName(d->directory);
}

QString FileInfoList::errorString() const {
    return d->error;
}

void FileInfoList::setShouldFilterSequences(bool filter) {
    if (filter == d->filterSequences)
        return;
    d->filterSequences = filter;
    Q_EMIT settingsChanged();
}

void FileInfoList::setSplitIncompleteSequences(bool split) {
    if (split == d->splitIncomplete)
        return;
    d->splitIncomplete = split;
    Q_EMIT settingsChanged();
}

void FileInfoList::push_back(const FileInfo& info) {
    d->files.push_back(info);
    Q_EMIT listChanged();
}

void FileInfoList::push_back(const QFileInfo& info) {
    auto* const data = new FileInfoData(encodedName(info.fileName()));
    data->directory = encodedName(info.absolutePath());
    d->files.push_back(FileInfo(data));
    d->files.back().setAdditionalInfo(static_cast<std::uint64_t>(info.size()),
                                      info.lastModified().toSecsSinceEpoch(), info.isDir(),
                                      info.isWritable());
    Q_EMIT listChanged();
}

FileInfo* FileInfoList::lazyStatItem() {
    return d->cursor < d->files.size() ? &d->files[d->cursor] : nullptr;
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
    d->cursor = 0;
    if (!d->files.empty())
        Q_EMIT lazyStatFetchNext();
}

void FileInfoList::onLazyStatFetchNext() {
    if (d->files.empty())
        return;
    if (d->cursor < d->files.size())
        ++d->cursor;
    if (d->cursor < d->files.size())
        Q_EMIT lazyStatFetchNext();
    else
        Q_EMIT fileInfoAvailable();
}

} // namespace Kestrel::UI
