#include <KxUI/browse/ThumbnailLoader_p.h>

#include <KxUI/files/FileListModel.h>

#include <QEvent>
#include <QPointer>

#include <algorithm>
#include <utility>

namespace Kestrel::UI {

ThumbnailLoader::ThumbnailLoader(FileListModel* model, QObject* parent)
    : QObject(parent)
    , m_model(model)
    , m_box(std::make_shared<Mailbox<Answers>>(this)) {
    m_rest.setSingleShot(true);
    m_rest.setInterval(Rest);
    connect(&m_rest, &QTimer::timeout, this, &ThumbnailLoader::ask);
}

ThumbnailLoader::~ThumbnailLoader() {
    m_box->close();
}

void ThumbnailLoader::setSource(std::shared_ptr<IThumbnailSource> source) {
    if (source == m_source)
        return;
    // Handles may be the source's own: they go first, and late answers go nowhere.
    const auto dropped = std::exchange(m_requests, {});
    m_box->close();
    m_box = std::make_shared<Mailbox<Answers>>(this);
    m_source = std::move(source);
    m_rest.start();
    Q_EMIT arrived();
}

void ThumbnailLoader::setSize(const QSize& size) {
    if (std::exchange(m_size, size) == size)
        return;
    const auto dropped = std::exchange(m_requests, {});
    m_rest.start();
}

void ThumbnailLoader::setRows(int first, int last) {
    m_first = first;
    m_last = last;
    if (m_source)
        m_rest.start();
}

QByteArray ThumbnailLoader::pictureFile(const FileListing& listing, int item) {
    if (listing.item(item).kind != FileListing::Kind::Sequence)
        return listing.path(item);
    std::int64_t left = listing.item(item).frames / 2;
    for (const Base::FrameRange& range : listing.frameRanges(item)) {
        const std::int64_t step = std::max<std::int64_t>(range.step, 1);
        const std::int64_t count = (std::int64_t{range.last} - range.first) / step + 1;
        if (left < count)
            return listing.framePath(item, static_cast<std::int32_t>(range.first + left * step));
        left -= count;
    }
    return listing.framePath(item, listing.item(item).first);
}

QImage ThumbnailLoader::picture(const FileListing& listing, int item) const {
    if (!m_source || listing.item(item).kind == FileListing::Kind::Directory)
        return {};
    const auto* const known =
        ThumbnailCache::shared().find(pictureFile(listing, item), m_size, m_source);
    return known ? known->image : QImage();
}

void ThumbnailLoader::ask() {
    if (!m_source)
        return;
    const auto listing = m_model->listing();
    const auto earlier = std::exchange(m_requests, {});
    std::vector<std::pair<QByteArray, std::int64_t>> wanted;
    for (int row = m_first; row <= std::min(m_last, m_model->rowCount() - 1); ++row) {
        const int item = m_model->itemOf(row);
        const FileListing::Status status = listing->status(item);
        // A picture is kept by the time of its file, which is on its way.
        if (listing->item(item).kind == FileListing::Kind::Directory ||
            status.known == FileListing::Status::NotAsked)
            continue;
        QByteArray path = pictureFile(*listing, item);
        const auto* const known = ThumbnailCache::shared().find(path, m_size, m_source);
        if (known && known->modified == status.modified)
            continue;
        if (const auto asked = earlier.find(path); asked != earlier.end())
            m_requests.insert(*asked);
        else
            wanted.emplace_back(std::move(path), status.modified);
    }
    const QPointer<ThumbnailLoader> self(this);
    for (const auto& [path, modified] : wanted) {
        request(path, modified);
        if (!self)
            return;
    }
}

void ThumbnailLoader::request(const QByteArray& path, std::int64_t modified) {
    const auto answer = [box = m_box, path, modified, size = m_size](const QImage& image) {
        Answers answers;
        // Painted often, so in the form that is painted fastest; here, since it may be a worker.
        answers.push_back(
            {path, modified, size,
             image.isNull() ? image : image.convertToFormat(QImage::Format_ARGB32_Premultiplied)});
        box->put(std::move(answers), [](Answers& waiting, Answers& newest) {
            waiting.insert(waiting.end(), newest.begin(), newest.end());
        });
    };
    const QPointer<ThumbnailLoader> self(this);
    const std::shared_ptr<IThumbnailSource> source = m_source;
    std::shared_ptr<void> handle = source->request(path, modified, m_size, answer);
    if (self && source == m_source)
        m_requests[path] = std::move(handle);
}

void ThumbnailLoader::takeAnswers() {
    auto answers = m_box->take();
    if (!answers)
        return;
    for (Answered& each : *answers) {
        m_requests.erase(each.path);
        ThumbnailCache::Picture picture;
        picture.image = std::move(each.image);
        picture.modified = each.modified;
        picture.source = m_source;
        ThumbnailCache::shared().insert(each.path, each.size, std::move(picture));
    }
    Q_EMIT arrived();
}

bool ThumbnailLoader::event(QEvent* event) {
    if (event->type() != MailboxBase::eventType())
        return QObject::event(event);
    takeAnswers();
    return true;
}

} // namespace Kestrel::UI
