#pragma once

#include "media/Sequence.h"

#include <KxUI/browse/FavoritesFile.h>
#include <KxUI/files/FileInfo.h>

#include <QByteArray>
#include <QList>
#include <QWidget>

#include <functional>
#include <vector>

class QAbstractItemView;
class QMenu;

namespace Kestrel::UI {
class FileBrowser;
class FileListModel;
} // namespace Kestrel::UI

namespace Kestrel::Workbench {

/** Lists a folder and lets the user walk through folders and choose a sequence. Paths are the bytes
    of the file system, which nobody waits for: what is asked of a folder that is not listed yet
    happens when it is, unless the user goes elsewhere. */
class SequenceListPanel : public QWidget {
    Q_OBJECT

public:
    explicit SequenceListPanel(QWidget* parent = nullptr);

    UI::FileBrowser* browser() const { return m_browser; }
    UI::FileListModel* model() const;
    QAbstractItemView* view() const;

    /** The folder that is listed, or asked for. */
    QByteArray folder() const;
    /** Whether all that is in it is seen, and nothing waits for that. */
    bool isSettled() const;

    /** Lists a folder. */
    void openFolder(const QByteArray& folder);

    /** Lists a folder and chooses its first sequence, or its first file. Of a file it lists the folder
        and chooses the sequence that the file belongs to, at its frame; the same of a sequence that is
        written with # for the frame. */
    void openPath(const QByteArray& path);

    /** Shows where something is that is open already. */
    void showFile(const QByteArray& path);

    /** Offers a folder beside the list without listing it. */
    void offerFolder(const QByteArray& folder);

    /** Reads the folder again, then calls `done`. */
    void reload(std::function<void()> done = {});

    /** The item of a row. */
    UI::FileInfo item(int row) const;
    /** What a file is listed under, by itself or in a sequence; without a name when it is not. */
    UI::FileInfo itemOfFile(const std::string& name) const;
    bool isFolder(int row) const;

signals:
    /** The user chose a sequence; `at` is the frame to go to, or InvalidTime. */
    void sequenceChosen(const Kestrel::Workbench::Sequence& sequence, Kestrel::Base::Time at);

    /** Files were dropped on the list. */
    void pathsDropped(const QList<QByteArray>& paths);

private:
    /** Has something done when the folder is listed, in place of what waits. */
    void whenListed(const QByteArray& path, std::function<void()> deed);
    void takeListed();
    void choose(const UI::FileInfo& info, Base::Time at);
    void chooseFirst();
    void chooseFile(const std::string& name);
    void addToMenu(QMenu* menu, const std::vector<UI::FileInfo>& files);

    UI::FileBrowser* m_browser;
    std::vector<UI::FavoritesFile::Favorite> m_offered;
    std::function<void()> m_deed; ///< that waits
    QByteArray m_wanted;          ///< the path that it is about
};

} // namespace Kestrel::Workbench
