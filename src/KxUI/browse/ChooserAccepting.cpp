#include <KxUI/browse/FileChooserDialog_p.h>

#include <KxUI/browse/FileBrowser.h>
#include <KxUI/browse/NameEdits_p.h>
#include <KxUI/browse/NoticeLine_p.h>
#include <KxUI/browse/ReplaceSheet_p.h>
#include <KxUI/files/FileListModel.h>
#include <KxUI/files/FileManager.h>
#include <KxUI/files/FileTexts_p.h>
#include <KxUI/files/RawName_p.h>
#include <KxUI/files/platform/Directory_p.h>
#include <KxUI/kit/PushButton.h>

#include <QKeyEvent>
#include <QLineEdit>

namespace Kestrel::UI {

using Deed = ChooserState::Deed;
using Meaning = NameReading::Meaning;
using Phase = ChooserState::Phase;

QByteArray FileChooserDialogPrivate::folderOf(const std::string& typed) const {
    const std::string shown = q->folder().toStdString();
    if (typed.empty())
        return bytesOf(shown);
    if (typed == "~" || typed.compare(0, 2, "~/") == 0)
        return bytesOf(Platform::cleanPath(Platform::homeDirectory() + typed.substr(1)));
    if (Platform::isAbsolute(typed))
        return bytesOf(Platform::cleanPath(typed));
    return bytesOf(Platform::cleanPath(Platform::joinedPath(shown, typed)));
}

std::vector<FileChooserDialogPrivate::Choice> FileChooserDialogPrivate::choices() const {
    const NameReading now = reading();
    return choicesOf(now, *listing(), folderOf(now.folder));
}

std::vector<FileChooserDialogPrivate::Choice>
FileChooserDialogPrivate::choicesOf(const NameReading& now, const FileListing& known,
                                    const QByteArray& folder) const {
    std::vector<Choice> all;
    if (now.meaning == Meaning::Address) {
        all.emplace_back();
        all.back().path = bytesOf(now.text);
    } else if (isFolderMode()) {
        all.emplace_back();
        all.back().path = folder;
    }
    if (now.meaning != Meaning::Names || now.problem == NameProblem::SeveralFolders)
        return all;
    for (const NameTarget& target : now.targets) {
        Choice choice;
        choice.path = bytesOf(Platform::joinedPath(folder.toStdString(), target.name));
        choice.isSequence = target.isSequence;
        choice.frames = target.frames;
        if (target.item >= 0)
            choice.info = target.in(known).fileInfo(target.item);
        choice.replaces = now.replaced.frames;
        choice.replacesFile = now.replaced.frames.empty() && now.replaced.count > 0;
        all.push_back(std::move(choice));
    }
    return all;
}

void FileChooserDialogPrivate::tryAccept() {
    if (state.phase() != Phase::Editing)
        return;
    finished.clear();
    m_answer = nullptr;
    const NameReading now = reading();
    if (now.meaning == Meaning::Nothing && !isFolderMode()) {
        // A folder that is selected is gone into.
        const auto rows = form.browser->selection();
        if (rows.size() == 1 && rows.front().isDir())
            form.browser->setFolder(rows.front().rawAbsoluteFilePath());
        return;
    }
    NameReading asked = now;
    if (isFolderMode() && now.meaning == Meaning::Nothing)
        asked.meaning = Meaning::Folder; // the one that is shown
    const auto known = listing();
    const bool isListed = isFolderMode() ? known->state() == FileListing::State::Complete &&
                                               (asked.folder.empty() || !asked.targets.empty())
                                         : isSettled(asked, *known);
    follow(state.accept(asked, isListed), asked);
}

void FileChooserDialogPrivate::follow(Deed deed, const NameReading& now) {
    const QPointer<FileChooserDialog> alive(q);
    switch (deed) {
    case Deed::None:
        break;
    case Deed::Say:
        say(ChooserTexts::problem(state, now));
        break;
    case Deed::Ask:
        ask(now);
        break;
    case Deed::GoTo:
        setName(isSaving() ? savedName : std::string());
        if (alive)
            form.browser->setFolder(folderOf(now.folder));
        break;
    case Deed::Filter:
        ownPattern = decodedName(bytesOf(now.text));
        setName(isSaving() ? savedName : std::string());
        if (alive)
            applyFilter();
        break;
    case Deed::MakeFolder:
        makeFolder(now);
        break;
    case Deed::Finish:
        finish(now);
        break;
    case Deed::Reject:
        q->reject();
        break;
    }
    if (alive)
        showPhase(now);
}

void FileChooserDialogPrivate::ask(const NameReading& now) {
    m_asked = now;
    m_askedFolder = folderOf(now.folder);
    const bool folds = isSaving() || form.browser->foldsSequences();
    question.ask(m_askedFolder, folds, isSaving());
}

void FileChooserDialogPrivate::answered(const FolderAnswer& answer) {
    m_answer = question.listing();
    NameReading now = m_asked;
    if (!isFolderMode() && answer.error == 0)
        now = readName(input(), rules, *m_answer, true);
    m_asked = now;
    follow(state.answered(now, answer), now);
}

QString FileChooserDialogPrivate::folderToBeMade(const NameReading& now) const {
    if (!isSaving() || !stateRules.createsFolders || now.folder.empty() ||
        now.meaning != NameReading::Meaning::Names)
        return {};
    const std::string folder = now.folder.substr(0, now.folder.size() - 1);
    const bool isHere = NameEdits::nameBegin(folder) == 0 && folder != "." && folder != ".." &&
                        folder != "~" && !folder.empty();
    const auto here = listing();
    const bool isMissing = here->state() == FileListing::State::Complete && here->find(folder) < 0;
    return isHere && isMissing ? FileTexts::name(folder) : QString();
}

void FileChooserDialogPrivate::makeFolder(const NameReading& now) {
    FileManager::makeDirectory(folderOf(now.folder), &m_listener, [this, now](int error) {
        const auto failure = Platform::failureOf(error);
        follow(state.folderMade(failure == Platform::Failure::Exists ? 0 : error), now);
    });
}

void FileChooserDialogPrivate::finish(const NameReading& now) {
    const QPointer<FileChooserDialog> alive(q);
    const auto known = m_answer ? m_answer : listing();
    auto all = choicesOf(now, *known, folderOf(now.folder));
    if (validator) {
        const auto ask = validator;
        const QString refused = ask(all);
        if (!alive)
            return;
        if (!refused.isEmpty()) {
            state.edited();
            say(refused);
            return;
        }
    }
    finished = std::move(all);
    Q_EMIT q->chosen();
    if (alive)
        q->QDialog::accept();
}

void FileChooserDialogPrivate::escape() {
    const bool isAtRest = state.phase() == Phase::Editing;
    if (isAtRest) {
        // The browser may have something to end, wherever the focus is.
        QWidget* const focus = q->focusWidget();
        if (focus && !form.browser->isAncestorOf(focus) && form.browser->isVisible()) {
            QKeyEvent key(QEvent::KeyPress, Qt::Key_Escape, Qt::NoModifier);
            key.setAccepted(true);
            const QPointer<FileChooserDialog> alive(q);
            static_cast<QObject*>(form.browser)->event(&key);
            if (!alive || key.isAccepted())
                return;
        }
    }
    question.stop();
    follow(state.escape(), m_asked);
}

// The button says what is waited for; a question takes its place.
void FileChooserDialogPrivate::showPhase(const NameReading& now) {
    const bool isAsking = state.phase() == Phase::Asking;
    form.accept->setBusy(isAsking);
    const QString text = acceptText.isEmpty() ? ChooserTexts::acceptButton(rules.mode) : acceptText;
    form.accept->setText(isAsking ? ChooserForm::tr("Checking\u2026") : text);
    if (state.phase() == Phase::Sheet)
        showSheet(now);
    else
        hideSheet();
}

void FileChooserDialogPrivate::showSheet(const NameReading& now) {
    if (form.sheet->isVisibleTo(q))
        return;
    focusBefore = q->focusWidget();
    const QString folder = decodedName(m_askedFolder);
    const bool hasVersion =
        state.sheet() == ChooserState::Sheet::Replace && NameEdits::versionOf(nameText());
    form.buttons->hide();
    form.notice->tell({}); // the sheet says it
    form.sheet->ask(ChooserTexts::question(state.sheet(), rules.mode, now, folder), hasVersion);
}

void FileChooserDialogPrivate::hideSheet() {
    if (!form.sheet->isVisibleTo(q))
        return;
    const bool hadFocus = form.sheet->isAncestorOf(q->focusWidget());
    form.sheet->hide();
    form.buttons->show();
    form.accept->setDefault(true);
    pause.start();
    if (hadFocus && focusBefore)
        focusBefore->setFocus(Qt::OtherFocusReason);
}

void FileChooserDialogPrivate::askWritability() {
    const QByteArray folder = form.browser->folder();
    FileManager::requestStatus(folder, ChooserState::Deadline, &m_listener,
                               [this, folder](const FileManager::PathStatus& status) {
                                   if (folder != form.browser->folder())
                                       return;
                                   isDenied = status.error == 0 && !status.isWritable;
                                   refresh();
                               });
}

} // namespace Kestrel::UI
