#pragma once

#include <QByteArray>
#include <QSize>
#include <QString>

#include <optional>
#include <vector>

namespace Kestrel::UI {

/** What a file chooser remembers of one purpose, in the group `FileChooser/<purpose>` of the
    settings. Paths are in the system's encoding, and nobody looks whether they are there. */
struct ChooserSettings {
    static constexpr std::size_t MostRecent = 12;

    QByteArray folder;
    QString filter; ///< its text: hosts may list them in another order
    QSize size;
    std::optional<bool> folds;
    std::vector<QByteArray> recent; ///< files used last, the newest first

    /** Empty for an empty purpose. */
    static ChooserSettings of(const QString& purpose);
    void save(const QString& purpose) const;

    /** Puts a path before the others. */
    void use(const QByteArray& path);

    /** The key under which the browser keeps what it remembers; empty for an empty purpose. */
    static QString browserKey(const QString& purpose);
};

} // namespace Kestrel::UI
