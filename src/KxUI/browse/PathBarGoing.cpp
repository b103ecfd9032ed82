#include <KxUI/browse/PathBar_p.h>

#include <KxUI/browse/BusyMark_p.h>
#include <KxUI/browse/PathMime_p.h>
#include <KxUI/files/FileManager.h>
#include <KxUI/files/RawName_p.h>
#include <KxUI/files/platform/Platform_p.h>

#include <QAccessible>
#include <QApplication>
#include <QClipboard>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMimeData>

#include <utility>

namespace Kestrel::UI {

void PathBarPrivate::setUpField() {
    field->setLayoutDirection(Qt::LeftToRight);
    field->setAccessibleName(PathBar::tr("Path"));
    field->hide();
    field->installEventFilter(q);
    const auto resolve = [this](const QString& folder) {
        return PathText::meaningOf(expander ? expander(folder) : folder, filled, place()).path;
    };
    const auto put = [this](const Completion::Outcome& outcome, const QString& folder) {
        if (!outcome.name.isEmpty())
            filled = PathText::typed(folder, filled) + outcome.name;
        field->selectAll();
        field->insert(outcome.text);
        field->setCursorPosition(outcome.cursor);
    };
    completer = new PathCompleter(field, resolve, put);
    QObject::connect(field, &QLineEdit::textEdited, q, [this] {
        forgetQuestion();
        setError({});
    });
}

PathText::Place PathBarPrivate::place() const {
    const std::string home = Platform::homeDirectory();
    PathText::Place place;
    place.folder = path.isEmpty() ? QByteArray("/") : path;
    place.home = QByteArray(home.data(), static_cast<int>(home.size()));
    return place;
}

void PathBarPrivate::go(const QByteArray& wanted) {
    const QPointer<PathBar> alive(q);
    stop(true);
    if (alive)
        Q_EMIT q->pathEntered(wanted);
}

void PathBarPrivate::enter(const QString& text, const QByteArray& filledFrom) {
    const QString expanded = expander ? expander(text) : text;
    const PathText::Meaning meaning =
        PathText::meaningOf(expanded, expanded == text ? filledFrom : QByteArray(), place());
    switch (meaning.refusal) {
    case PathText::Refusal::None:
        look(meaning);
        break;
    case PathText::Refusal::Empty:
        stop(true);
        break;
    case PathText::Refusal::Nul:
        setError(PathBar::tr("No path has a character of this kind."));
        break;
    case PathText::Refusal::OtherHost:
        setError(PathBar::tr("This is on another computer."));
        break;
    case PathText::Refusal::NoHome:
        setError(PathBar::tr("Nobody knows where your home folder is."));
        break;
    }
}

void PathBarPrivate::look(const PathText::Meaning& meaning) {
    const QPointer<PathBar> alive(q);
    setError({});
    if (alive)
        setBusy(true);
    if (alive)
        probe.ask(meaning.path, AnswerWithin,
                  [this, meaning](const PathFound& found) { takeAnswer(meaning, found); });
}

void PathBarPrivate::takeAnswer(const PathText::Meaning& meaning, const PathFound& found) {
    const QPointer<PathBar> alive(q);
    setBusy(false);
    if (!alive)
        return;
    switch (found.kind) {
    case PathFound::Folder:
        go(meaning.path);
        break;
    case PathFound::File:
        stop(true);
        if (alive)
            Q_EMIT q->fileEntered(meaning.path);
        break;
    case PathFound::Nothing:
        setError(meaning.endsAsFolder ? PathBar::tr("This folder does not exist.")
                                      : PathBar::tr("There is no folder or file of this name."));
        break;
    case PathFound::Denied:
    case PathFound::Failed:
        setError(FileManager::errorText(found.error));
        break;
    case PathFound::NoAnswer:
        setError(PathBar::tr("The server of this folder does not answer."));
        break;
    }
}

bool PathBarPrivate::take(const QMimeData& data) {
    const std::vector<QByteArray> paths = PathMime::pathsOf(data);
    const QString text = paths.empty() ? data.text().trimmed() : decodedName(paths.front());
    const QString expanded = expander && !text.isEmpty() ? expander(text) : text;
    if (paths.empty() && expanded == text)
        return false;
    const PathText::Meaning meaning = expanded == text ? PathText::meaningOf(paths.front(), place())
                                                       : PathText::meaningOf(expanded, {}, place());
    if (meaning)
        look(meaning);
    return static_cast<bool>(meaning);
}

// `keepsFocus`: it goes back to where it was before the editing.
void PathBarPrivate::stop(bool keepsFocus) {
    const QPointer<PathBar> alive(q);
    forgetQuestion();
    if (alive)
        setError({});
    if (!alive || !std::exchange(isEditing, false))
        return;
    completer->close();
    q->setFocusProxy(focused);
    QWidget* const next = focusBefore ? focusBefore.data() : focused.data();
    layOut();
    if (keepsFocus && field->hasFocus() && next)
        next->setFocus(Qt::OtherFocusReason);
    field->hide();
    Q_EMIT q->editingChanged(false);
}

bool PathBarPrivate::takesFieldKey(const QKeyEvent& event) {
    const Qt::KeyboardModifiers held = event.modifiers() & ~Qt::KeypadModifier;
    if (event.matches(QKeySequence::Paste)) {
        field->insert(PathText::pasted(QApplication::clipboard()->text()));
        return true;
    }
    if (held != Qt::NoModifier)
        return false;
    switch (event.key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
        enter(field->text(), filled);
        return true;
    case Qt::Key_Escape:
        if (isBusy)
            forgetQuestion();
        else
            stop(true);
        return true;
    default:
        return false;
    }
}

void PathBarPrivate::forgetQuestion() {
    probe.cancel();
    setBusy(false);
}

void PathBarPrivate::setBusy(bool busy) {
    if (std::exchange(isBusy, busy) == busy)
        return;
    busyMark->setVisible(busy);
    busyMark->raise();
    Q_EMIT q->busyChanged(busy);
}

void PathBarPrivate::setError(const QString& text) {
    if (error->text() == text)
        return;
    error->setText(text);
    error->setVisible(!text.isEmpty());
    q->updateGeometry();
    layOut();
    if (!text.isEmpty() && QAccessible::isActive()) {
        QAccessibleEvent event(error, QAccessible::Alert);
        QAccessible::updateAccessibility(&event);
    }
    Q_EMIT q->errorTextChanged(text);
}

} // namespace Kestrel::UI
