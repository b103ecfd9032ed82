#pragma once

#include <KxUI/browse/IThumbnailSource.h>

#include <QCache>
#include <QHash>
#include <QImage>

#include <cstdint>
#include <memory>

namespace Kestrel::UI {

/** The pictures of all browsers of the process, of which those that were not looked at for longest
    make room. Interface thread. */
class ThumbnailCache {
public:
    struct Picture {
        QImage image; ///< null where there is none
        std::int64_t modified = 0;
        std::weak_ptr<IThumbnailSource> source;
    };

    static constexpr int LimitKiB = 64 * 1024;

    static ThumbnailCache& shared();

    explicit ThumbnailCache(int limitKiB = LimitKiB)
        : m_pictures(limitKiB) {}

    /** The newest picture of a file in this size, also where the file was written since; null where
        none was asked for. Holds until the next call. */
    const Picture* find(const QByteArray& path, const QSize& size,
                        const std::shared_ptr<IThumbnailSource>& source) const;

    void insert(const QByteArray& path, const QSize& size, Picture picture);

    int usedKiB() const { return static_cast<int>(m_pictures.totalCost()); }

private:
    struct Key {
        QByteArray path;
        QSize size;

        bool operator==(const Key& other) const { return path == other.path && size == other.size; }
        // Found by argument-dependent lookup; the type of a hash differs between versions of Qt.
        friend decltype(qHash(QByteArray())) qHash(const Key& key) {
            return qHash(key.path) ^
                   static_cast<unsigned>(key.size.width() * 31 + key.size.height());
        }
    };

    mutable QCache<Key, Picture> m_pictures;
};

} // namespace Kestrel::UI
