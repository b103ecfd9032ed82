#include "scopes/SelectionMask.h"

#include <QThreadPool>

#include <algorithm>
#include <exception>
#include <mutex>
#include <utility>

namespace Kestrel::Workbench {

namespace {

/** Rare on pictures, and seen on dark and on light ones. */
const QRgb maskColor = qPremultiply(qRgba(255, 40, 220, 170));

} // namespace

/** Whom a thread tells what it has made; it may outlive them. */
struct SelectionMask::Owner {
    std::mutex mutex;
    SelectionMask* mask;
};

SelectionMask::SelectionMask(QObject* parent)
    : QObject(parent)
    , m_owner(std::make_shared<Owner>()) {
    m_owner->mask = this;
}

SelectionMask::~SelectionMask() {
    const std::lock_guard lock(m_owner->mutex);
    m_owner->mask = nullptr;
}

void SelectionMask::make(const Request& request) {
    m_isCleared = false;
    m_next = request;
    if (!m_isBusy)
        start();
}

void SelectionMask::clear() {
    m_isCleared = true;
    m_next.reset();
    if (m_image.isNull())
        return;
    m_image = QImage();
    emit changed();
}

void SelectionMask::start() {
    m_isBusy = true;
    QThreadPool::globalInstance()->start(
        [owner = m_owner, request = *std::exchange(m_next, std::nullopt)] {
            QImage image;
            try {
                image = imageOf(request);
            } catch (const std::exception&) {
                // Memory: no mask is shown then.
            }
            const std::lock_guard lock(owner->mutex);
            if (SelectionMask* mask = owner->mask)
                QMetaObject::invokeMethod(
                    mask, [mask, image] { mask->take(image); }, Qt::QueuedConnection);
        });
}

void SelectionMask::take(const QImage& image) {
    m_isBusy = false;
    if (m_next)
        start();
    if (m_isCleared)
        return;
    m_image = image;
    emit changed();
}

QImage SelectionMask::imageOf(const Request& request) {
    const int width = request.image.width;
    const int height = request.image.height;
    if (request.image.isEmpty() || request.shown.isEmpty())
        return {};
    const auto mask = UI::selectionMask(request.image, request.encoding, request.selection);
    const QSize size = request.shown.boundedTo({width, height});
    QImage image(size, QImage::Format_ARGB32_Premultiplied);
    if (image.isNull())
        return {};
    image.fill(Qt::transparent);
    for (int y = 0; y < height; ++y) {
        const std::uint8_t* from = mask.data() + std::size_t(y) * std::size_t(width);
        const auto row = int(qint64(y) * size.height() / height);
        auto* to = reinterpret_cast<QRgb*>(image.scanLine(row));
        for (int x = 0; x < width; ++x) {
            if (from[x] != 0)
                to[qint64(x) * size.width() / width] = maskColor;
        }
    }
    return image;
}

} // namespace Kestrel::Workbench
