#include "app/RecentShots.h"

#include "media/Paths.h"

#include <KxUI/settings/AppSettings.h>

namespace Kestrel::Workbench {

namespace {

constexpr int most = 10;

QString key() {
    return QStringLiteral("recent/shots");
}

/** What of a path does not stand for a key of a menu. */
QString shown(const std::string& bytes) {
    return QString::fromStdString(bytes).replace(QLatin1Char('&'), QStringLiteral("&&"));
}

} // namespace

RecentShots::RecentShots(QWidget* parent)
    : QMenu(tr("Open Recen&t"), parent) {
    setToolTipsVisible(true);
    fill();
}

void RecentShots::add(const QByteArray& path) {
    if (path.isEmpty() || (!m_paths.isEmpty() && m_paths.front() == path))
        return;
    QList<QByteArray> paths = m_paths;
    paths.removeAll(path);
    paths.prepend(path);
    set(paths);
}

void RecentShots::remember() {
    m_remembers = true;
    QList<QByteArray> paths = m_paths;
    const QVariantList kept = UI::AppSettings().value(key()).toList();
    for (const QVariant& each : kept) {
        const QByteArray path = each.toByteArray();
        if (path.startsWith('/') && !paths.contains(path))
            paths.append(path);
    }
    set(paths);
}

void RecentShots::set(QList<QByteArray> paths) {
    while (paths.size() > most)
        paths.removeLast();
    m_paths = std::move(paths);
    fill();
    if (!m_remembers)
        return;
    QVariantList kept;
    for (const QByteArray& path : m_paths)
        kept.append(path);
    UI::AppSettings().setValue(key(), kept);
}

void RecentShots::fill() {
    clear();
    int number = 0;
    for (const QByteArray& path : m_paths) {
        const std::string bytes = path.toStdString();
        QAction* action =
            addAction(tr("&%1  %2").arg(++number % most).arg(shown(fileNameOf(bytes))));
        action->setToolTip(QString::fromUtf8(path));
        connect(action, &QAction::triggered, this, [this, path] { emit chosen(path); });
    }
    addSeparator();
    connect(addAction(tr("&Clear List")), &QAction::triggered, this, [this] { set({}); });
    menuAction()->setEnabled(!m_paths.isEmpty());
}

} // namespace Kestrel::Workbench
