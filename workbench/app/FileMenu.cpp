#include "app/FileMenu.h"

#include "app/MainWindow.h"
#include "media/ListedSequence.h"
#include "panels/SequenceListPanel.h"

#include <KxUI/browse/FileBrowser.h>

#include <algorithm>

namespace Kestrel::Workbench {

using Chooser = UI::FileChooserDialog;

namespace {

/** The files of a sequence that lie in a stretch of frames: first and last. Both invalid when there
    are none. */
std::pair<Base::Time, Base::Time> partOf(const Sequence& sequence, const Base::FrameRange& frames) {
    std::pair<Base::Time, Base::Time> part{Base::InvalidTime, Base::InvalidTime};
    for (const Sequence::Member& member : sequence.members()) {
        if (member.first < frames.first || member.first > frames.last)
            continue;
        if (part.first == Base::InvalidTime)
            part.first = member.first;
        part.second = member.first;
    }
    return part;
}

} // namespace

FileMenu::FileMenu(MainWindow* window)
    : QMenu(tr("&File"), window)
    , m_window(window)
    , m_recent(new RecentShots(this)) {
    const auto add = [this](const QString& text, const QKeySequence& keys, auto deed) {
        QAction* action = addAction(text);
        action->setShortcut(keys);
        connect(action, &QAction::triggered, this, deed);
        return action;
    };
    add(tr("&Open..."), QKeySequence::Open, &FileMenu::askForShot);
    add(tr("Open &Folder..."), {}, &FileMenu::askForFolder);
    addMenu(m_recent);
    add(tr("&Reload"), QKeySequence(Qt::Key_F5), &FileMenu::reload);
    addSeparator();
    add(tr("Path &Mappings..."), {}, [this] { m_mappings.edit(m_window); });
    addSeparator();
    QAction* exportAll = add(tr("&Export Sequence..."), QKeySequence(Qt::CTRL | Qt::Key_E),
                             [this] { askForExport(ExportOptions::What::Sequence); });
    QAction* exportOne =
        add(tr("Export Fr&ame..."), {}, [this] { askForExport(ExportOptions::What::Frame); });
    const auto enable = [=] {
        for (QAction* action : {exportAll, exportOne})
            action->setEnabled(!m_window->session()->sequence().isEmpty());
    };
    connect(window->session(), &Session::sequenceChanged, this, enable);
    enable();
    addSeparator();
    add(tr("&Quit"), QKeySequence::Quit, [this] { m_window->close(); });
    connect(m_recent, &RecentShots::chosen, this,
            [this](const QByteArray& path) { m_window->openPaths({path}); });
    connect(window->session(), &Session::sequenceChanged, this, &FileMenu::noteShot);
}

void FileMenu::remember() {
    m_remembers = true;
    m_recent->remember();
    m_mappings.remember();
}

void FileMenu::noteShot() {
    m_recent->add(QByteArray::fromStdString(pathOf(m_window->session()->sequence())));
}

void FileMenu::askForShot() {
    Chooser* chooser = Chooser::open(
        Chooser::OpenFile, m_window, m_remembers ? QStringLiteral("open-shot") : QString(),
        {tr("Images (%1)")
             .arg(QStringLiteral("*.exr *.dpx *.cin *.tif *.tiff *.png *.jpg *.jpeg "
                                 "*.tga *.hdr *.sgi *.bmp"))},
        [this](const std::vector<Chooser::Choice>& choices) { open(choices.front()); });
    beginHere(chooser);
}

void FileMenu::askForFolder() {
    Chooser* chooser = Chooser::open(Chooser::OpenFolder, m_window,
                                     m_remembers ? QStringLiteral("open-folder") : QString(), {},
                                     [this](const std::vector<Chooser::Choice>& choices) {
                                         m_window->openPaths({choices.front().path});
                                         m_window->list()->setFocus();
                                     });
    beginHere(chooser);
}

void FileMenu::askForExport(ExportOptions::What what) {
    m_window->exports()->ask(what, m_remembers ? QStringLiteral("export") : QString());
}

void FileMenu::beginHere(Chooser* chooser) {
    chooser->browser()->setPathRemap(m_mappings.remap());
    if (!m_window->list()->folder().isEmpty())
        chooser->setFolder(m_window->list()->folder());
}

void FileMenu::open(const Chooser::Choice& choice) {
    if (!choice.isSequence || choice.info.getFilenameLength() == 0) {
        m_window->openPaths({choice.path});
        return;
    }
    // As the chooser has listed it: there is nothing left to ask the disk.
    const Sequence sequence = sequenceOf(choice.info);
    const auto [first, last] = partOf(sequence, choice.frames);
    m_window->list()->showFile(QByteArray::fromStdString(pathOf(sequence)));
    m_window->session()->open(sequence, first);
    if (first == Base::InvalidTime ||
        (first == sequence.firstTime() && last == sequence.lastTime()))
        return;
    m_window->session()->model()->setInTime(first, true);
    m_window->session()->model()->setOutTime(last, true);
}

/** Reads the folder again, and the open sequence with it, since files may have come or changed. */
void FileMenu::reload() {
    SequenceListPanel* list = m_window->list();
    list->reload([this, list] {
        Session* session = m_window->session();
        const Sequence& open = session->sequence();
        if (open.isEmpty() || open.folder() != list->folder().toStdString())
            return;
        const UI::FileInfo info = list->itemOfFile(open.members().front().second);
        if (info.getFilenameLength() > 0)
            session->open(sequenceOf(info), session->model()->currentTime());
    });
}

} // namespace Kestrel::Workbench
