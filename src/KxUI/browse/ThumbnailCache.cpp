#include <KxUI/browse/ThumbnailCache_p.h>

#include <utility>

namespace Kestrel::UI {

ThumbnailCache& ThumbnailCache::shared() {
    // Pictures need no application, so it may stay to the end.
    static auto* const cache = new ThumbnailCache;
    return *cache;
}

const ThumbnailCache::Picture*
ThumbnailCache::find(const QByteArray& path, const QSize& size,
                     const std::shared_ptr<IThumbnailSource>& source) const {
    const Picture* const picture = m_pictures.object({path, size});
    return picture && picture->source.lock() == source ? picture : nullptr;
}

void ThumbnailCache::insert(const QByteArray& path, const QSize& size, Picture picture) {
    const auto cost = static_cast<int>(picture.image.sizeInBytes() / 1024) + 1;
    m_pictures.insert({path, size}, new Picture(std::move(picture)), cost);
}

} // namespace Kestrel::UI
