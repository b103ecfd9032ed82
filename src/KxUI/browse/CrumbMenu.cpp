#include <KxUI/browse/CrumbMenu_p.h>

#include <KxUI/browse/PathText_p.h>
#include <KxUI/files/FileGatherer.h>
#include <KxUI/files/FileManager.h>
#include <KxUI/files/FileTexts_p.h>

namespace Kestrel::UI {

QString menuText(const QString& text) {
    QString shown = text;
    return shown.replace(QLatin1Char('&'), QStringLiteral("&&"));
}

CrumbMenu::CrumbMenu(const QByteArray& folder, const QByteArray& current, QWidget* bar)
    : QMenu(bar)
    , m_folder(folder)
    , m_current(current)
    , m_gatherer(std::make_unique<FileGatherer>()) {
    setAttribute(Qt::WA_DeleteOnClose);
    setLayoutDirection(Qt::LeftToRight);
    addAction(tr("Reading\u2026"))->setEnabled(false);
    m_gatherer->setDirectoriesOnly(true);
    m_gatherer->setFoldsSequences(false);
    m_gatherer->setWatch(FileGatherer::Watch::Never); // a menu does not move under the pointer
    connect(m_gatherer.get(), &FileGatherer::finished, this, &CrumbMenu::fill);
    m_gatherer->gather(folder);
}

CrumbMenu::~CrumbMenu() = default;

void CrumbMenu::addFolder(const QByteArray& path, const QString& text, bool isCurrent) {
    QAction* const action = addAction(menuText(text));
    if (isCurrent) {
        QFont font = action->font();
        font.setBold(true);
        action->setFont(font);
        setDefaultAction(action);
    }
    connect(action, &QAction::triggered, this, [this, path] {
        const auto chosen = onChosen;
        if (chosen)
            chosen(path);
    });
}

void CrumbMenu::fill() {
    const auto listing = m_gatherer->listing();
    clear();
    int rows = 0;
    for (int i = 0; i < listing->size(); ++i) {
        const FileListing::Item& item = listing->item(i);
        if (item.kind != FileListing::Kind::Directory)
            continue;
        if (++rows > MostRows)
            break;
        const QByteArray path = listing->path(i);
        addFolder(path, FileTexts::name(item.name), path == m_current);
    }
    if (rows > MostRows) {
        addSeparator();
        addFolder(m_folder, tr("More in the List"), false);
    }
    const QString error = FileManager::errorText(listing->error());
    if (rows == 0)
        addAction(error.isEmpty() ? tr("No folders") : menuText(error))->setEnabled(false);
    if (QAction* const current = defaultAction())
        setActiveAction(current);
}

} // namespace Kestrel::UI
