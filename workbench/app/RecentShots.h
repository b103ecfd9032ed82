#pragma once

#include <QByteArray>
#include <QList>
#include <QMenu>

namespace Kestrel::Workbench {

/** The shots that were opened last, to open one again. Nobody looks whether they are still there
    before one is chosen. */
class RecentShots : public QMenu {
    Q_OBJECT

public:
    explicit RecentShots(QWidget* parent);

    /** Newest first. */
    const QList<QByteArray>& paths() const { return m_paths; }

    /** A shot was opened: it comes first. */
    void add(const QByteArray& path);

    /** Takes those of the last time, and keeps them from now on. */
    void remember();

signals:
    void chosen(const QByteArray& path);

private:
    void set(QList<QByteArray> paths);
    void fill();

    QList<QByteArray> m_paths;
    bool m_remembers = false;
};

} // namespace Kestrel::Workbench
