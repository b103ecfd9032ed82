#include <KxUI/files/FileListing.h>

#include <KxUI/files/FileInfoData_p.h>
#include <KxUI/files/ListingData_p.h>
#include <KxUI/files/RawName_p.h>
#include <KxUI/files/StatusTable_p.h>

#include <algorithm>

namespace Kestrel::UI {
namespace {

const std::shared_ptr<const ListingData>& noData() {
    static const auto data = std::make_shared<const ListingData>();
    return data;
}

const std::shared_ptr<const StatusTable>& noStatus() {
    static const auto status = std::make_shared<const StatusTable>();
    return status;
}

} // namespace

FileListing::FileListing()
    : m_data(noData())
    , m_status(noStatus()) {}

FileListing::FileListing(std::shared_ptr<const ListingData> data,
                         std::shared_ptr<const StatusTable> status, State state, int error)
    : m_data(std::move(data))
    , m_status(std::move(status))
    , m_state(state)
    , m_error(error) {}

FileListing::FileListing(const FileListing& other) noexcept = default;
FileListing& FileListing::operator=(const FileListing& other) noexcept = default;
FileListing::~FileListing() = default;

QByteArray FileListing::directory() const {
    return m_data->raw ? bytesOf(m_data->raw->directory) : QByteArray();
}

FileListing::State FileListing::state() const {
    return m_state;
}

int FileListing::error() const {
    return m_error;
}

std::int64_t FileListing::entriesRead() const {
    return m_data->entriesRead;
}

bool FileListing::isFolded() const {
    return m_data->folded;
}

int FileListing::size() const {
    return static_cast<int>(m_data->items.size());
}

const FileListing::Item& FileListing::item(int index) const {
    return m_data->items[static_cast<std::size_t>(index)];
}

FileListing::Status FileListing::status(int index) const {
    const Item& item = this->item(index);
    Status status;
    const FileStatus* const told = m_status->find(item.key);
    if (!told)
        return status;
    status.known = static_cast<Status::Known>(told->known);
    status.isEstimate = item.frames > 1;
    status.isLink = told->isLink;
    status.isBrokenLink = told->isBrokenLink;
    status.size = told->size * static_cast<std::uint64_t>(std::max(item.frames, 1));
    status.modified = told->modified;
    return status;
}

std::vector<Base::FrameRange> FileListing::frameRanges(int index) const {
    return fileInfo(index).presentRanges();
}

FileInfo FileListing::fileInfo(int index) const {
    const Item& item = this->item(index);
    auto* const info = new FileInfoData(bytesOf(item.name));
    const FileInfo result(info);
    info->directory = directory();
    if (item.kind == Kind::Directory)
        info->flags = FileInfo::Directory;
    if (const SequenceParts* const parts = m_data->sequence(index)) {
        info->setFolded({item.name,
                         {item.first, item.last, item.step},
                         parts->shortest,
                         parts->numberBegin,
                         parts->numberLength});
        const auto* const stretches = m_data->stretches.data();
        const auto ranges = m_data->ranges.begin();
        info->setMembers(stretches + parts->stretchesBegin, stretches + parts->stretchesEnd,
                         {ranges + parts->rangesBegin, ranges + parts->rangesEnd});
    }
    if (const FileStatus* const told = m_status->find(item.key);
        told && told->known == Status::Told) {
        info->size = told->size;
        info->lastModified = told->modified;
    }
    return result;
}

QByteArray FileListing::path(int index) const {
    return bytesOf(m_data->path(item(index).name));
}

QByteArray FileListing::framePath(int index, std::int32_t frame) const {
    return bytesOf(m_data->path(m_data->frameFile(index, frame)));
}

int FileListing::find(std::string_view name) const {
    const auto found = std::find_if(m_data->items.begin(), m_data->items.end(),
                                    [&](const Item& each) { return each.name == name; });
    return found == m_data->items.end() ? -1 : static_cast<int>(found - m_data->items.begin());
}

int FileListing::findFile(std::string_view name) const {
    if (const int item = find(name); item >= 0)
        return item;
    const auto frame = FrameNameRules().frameOf(name);
    if (!frame)
        return -1;
    int ofSameFrame = -1;
    for (const SequenceParts& parts : m_data->sequences) {
        if (!m_data->mayHave(parts, name, *frame) || !fileInfo(parts.item).hasFrame(frame->number))
            continue;
        if (m_data->frameFile(parts.item, frame->number) == name)
            return parts.item;
        ofSameFrame = parts.item;
    }
    // Of two files of one frame, one stands for both.
    return ofSameFrame >= 0 && m_data->wasRead(name) ? ofSameFrame : -1;
}

int FileListing::findKey(std::uint64_t key) const {
    return m_data->findKey(key);
}

} // namespace Kestrel::UI
