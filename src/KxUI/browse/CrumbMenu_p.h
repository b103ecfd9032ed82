#pragma once

#include <QByteArray>
#include <QMenu>

#include <functional>
#include <memory>

namespace Kestrel::UI {

class FileGatherer;

/** What lies in a folder, as a menu that is there at once and is filled when the folder has been
    read; its first lines come earlier where reading takes long. Deletes itself when it is closed. */
class CrumbMenu : public QMenu {
    Q_OBJECT

public:
    static constexpr int MostRows = 500;

    /** Of the folders in `folder`; the one that leads to `current` is marked. */
    CrumbMenu(const QByteArray& folder, const QByteArray& current, QWidget* bar);
    ~CrumbMenu() override;

    /** Is told where to go: to one of the folders, or to `folder` for those that have no room. */
    std::function<void(const QByteArray& path)> onChosen;

private:
    void fill();
    void addFolder(const QByteArray& path, const QString& text, bool isCurrent);

    QByteArray m_folder;
    QByteArray m_current;
    std::unique_ptr<FileGatherer> m_gatherer;
};

/** A text as the text of a menu's item. */
QString menuText(const QString& text);

} // namespace Kestrel::UI
