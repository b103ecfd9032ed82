#include <KxUI/browse/FilePathEdit_p.h>
#include <KxUI/files/FileManager.h>
#include <KxUI/kit/IconFactory.h>

#include <QAction>
#include <QStyle>

using namespace Kestrel::UI;
namespace Text = Kestrel::UI::PathText;

void FilePathEdit::Private::check() {
    probe.cancel();
    checkTimer.stop();
    if (!checks || q->text().trimmed().isEmpty()) {
        tell(NotChecked, {});
        return;
    }
    checkTimer.start();
    if (validity != NotChecked)
        tell(Checking, {});
}

void FilePathEdit::Private::ask() {
    const Text::Meaning meaning = meaningOf(q->text());
    if (meaning.refusal == Text::Refusal::OtherHost) {
        tell(NotReachable, tr("This is on another computer."));
    } else if (!meaning) {
        tell(Missing, tr("This is no path."));
    } else {
        const QPointer<FilePathEdit> alive(q);
        tell(Checking, {});
        if (alive)
            probe.ask(meaning.path, AnswerWithin,
                      [this](const PathFound& found) { takeAnswer(found, false); });
    }
}

// `isOfFolder`: of the folder of a file to be saved, which is not there itself.
void FilePathEdit::Private::takeAnswer(const PathFound& found, bool isOfFolder) {
    const bool wantsFolder = kind == Folder || isOfFolder;
    switch (found.kind) {
    case PathFound::Folder:
        if (wantsFolder || kind == Any)
            tell(Valid, {});
        else
            tell(WrongKind, tr("This is a folder."));
        break;
    case PathFound::File:
        if (wantsFolder)
            tell(WrongKind, tr("This is not a folder."));
        else
            tell(Valid, kind == SaveFile ? tr("This file exists.") : QString());
        break;
    case PathFound::Nothing:
        if (kind == SaveFile && !isOfFolder)
            probe.ask(Text::parentOf(meaningOf(q->text()).path), AnswerWithin,
                      [this](const PathFound& folder) { takeAnswer(folder, true); });
        else
            tell(Missing,
                 wantsFolder ? tr("This folder does not exist.") : tr("This file does not exist."));
        break;
    case PathFound::Denied:
    case PathFound::Failed:
        tell(NotReachable, FileManager::errorText(found.error));
        break;
    case PathFound::NoAnswer:
        tell(NotReachable, tr("The server of this path does not answer."));
        break;
    }
}

void FilePathEdit::Private::tell(Validity now, const QString& sentence) {
    if (now == validity && sentence == validityText)
        return;
    validity = now;
    validityText = sentence;
    showButtons();
    // Style sheets ask for properties only when they are told to.
    if (q->testAttribute(Qt::WA_StyleSheet)) {
        q->style()->unpolish(q);
        q->style()->polish(q);
    }
    Q_EMIT q->validityChanged();
}

void FilePathEdit::Private::showButtons() {
    const QString choose = kind == Folder ? tr("Choose a folder")
                           : kind == Any  ? tr("Choose a path")
                                          : tr("Choose a file");
    browseAction->setText(choose);
    browseAction->setToolTip(tr("%1 (F4)").arg(choose));
    browseAction->setVisible(!q->isReadOnly());
    if (!checks) {
        delete stateAction;
        stateAction = nullptr;
        return;
    }
    if (!stateAction)
        stateAction = q->addAction(QIcon(), QLineEdit::TrailingPosition);
    const char* icon = nullptr;
    if (validity == Checking)
        icon = "PathWaiting";
    else if (validity == Missing || validity == WrongKind || validity == NotReachable)
        icon = "PathWrong";
    else if (!validityText.isEmpty())
        icon = "PathThere";
    stateAction->setVisible(icon != nullptr);
    stateAction->setIcon(icon ? IconFactory::icon(QLatin1String(icon)) : QIcon());
    stateAction->setText(validity == Checking ? tr("Looking\u2026") : validityText);
    q->setAccessibleDescription(validityText);
}
