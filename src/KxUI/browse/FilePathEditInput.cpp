#include <KxUI/browse/FilePathEdit_p.h>
#include <KxUI/browse/PathMime_p.h>
#include <KxUI/files/FileNames.h>
#include <KxUI/files/RawName_p.h>
#include <KxUI/files/filename.h>
#include <KxUI/kit/InterfaceThread_p.h>

#include <QAbstractButton>
#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QContextMenuEvent>
#include <QDropEvent>
#include <QKeyEvent>
#include <QMenu>
#include <QMimeData>
#include <QToolTip>

#include <algorithm>

using namespace Kestrel::UI;
namespace Text = Kestrel::UI::PathText;

FilePathEdit::Private::Deed FilePathEdit::Private::deedOf(const QKeyEvent& event) const {
    const Qt::KeyboardModifiers held = event.modifiers() & ~Qt::KeypadModifier;
    const bool isPlain = held == Qt::NoModifier;
    const bool changesVersion =
        kind == SaveFile && (held & ~Qt::ShiftModifier) == Qt::ControlModifier;
    if (event.matches(QKeySequence::Paste))
        return Deed::Paste;
    switch (event.key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
        return isPlain && !(typed() == taken) ? Deed::Take : Deed::None;
    case Qt::Key_Escape:
        return isPlain && q->text() != taken.text ? Deed::Restore : Deed::None;
    case Qt::Key_F4:
        return isPlain ? Deed::Browse : Deed::None;
    case Qt::Key_Down:
        return held == Qt::AltModifier ? Deed::Browse : Deed::None;
    case Qt::Key_Plus:
    case Qt::Key_Equal: // where plus is above it
        return changesVersion ? Deed::VersionUp : Deed::None;
    case Qt::Key_Minus:
        return changesVersion ? Deed::VersionDown : Deed::None;
    default:
        return Deed::None;
    }
}

void FilePathEdit::Private::run(Deed deed, QKeyEvent& event) {
    switch (deed) {
    case Deed::None:
        break;
    case Deed::Take: {
        const QPointer<FilePathEdit> alive(q);
        takeTyped();
        if (alive)
            q->QLineEdit::keyPressEvent(&event); // who listens to the signals of any line edit
        event.accept();
        break;
    }
    case Deed::Restore:
        restoreText();
        break;
    case Deed::Browse:
        q->browse();
        break;
    case Deed::VersionUp:
        changeVersion(1, event);
        break;
    case Deed::VersionDown:
        changeVersion(-1, event);
        break;
    case Deed::Paste:
        paste();
        break;
    }
}

// The folders that have the version of the name follow it.
void FilePathEdit::Private::changeVersion(int by, const QKeyEvent& event) {
    const FilePathValue now = typed();
    const QByteArray before = now.bytes.isEmpty() ? encodedName(now.text) : now.bytes;
    const auto version = FileNames::versionOf(viewOf(before));
    if (!version || version->number + by < 0)
        return;
    const QByteArray after = Text::withVersion(before, version->number + by);
    isUndoable = true;
    if (!bracket.beginKey(event) || bracket.gesture() != EditGestures::Keys)
        return;
    bracket.change({Text::shown(after), now.bytes.isEmpty() ? QByteArray() : after});
}

bool FilePathEdit::Private::paste() {
    const QMimeData* const copied = QApplication::clipboard()->mimeData();
    if (q->isReadOnly() || !copied)
        return false;
    if (!copied->hasText() || copied->hasFormat(QLatin1String(PathMime::Type))) {
        const QByteArray path = dropped(*copied);
        if (!path.isEmpty())
            takeByUser(path);
        return !path.isEmpty();
    }
    q->insert(Text::pasted(copied->text()));
    return true;
}

// The button clears by the line's own hand, as a host would.
void FilePathEdit::Private::followClearButton(QObject* child) {
    auto* const button = qobject_cast<QAbstractButton*>(child);
    if (!button || button->actions().isEmpty() ||
        button->actions().constFirst()->objectName() != QLatin1String("_q_qlineeditclearaction"))
        return;
    connect(button, &QAbstractButton::pressed, q, [this] { isClearing = true; });
    // Also where the pointer leaves it; the click comes right after.
    connect(
        button, &QAbstractButton::released, q, [this] { isClearing = false; },
        Qt::QueuedConnection);
    connect(button, &QAbstractButton::clicked, q, [this] {
        isClearing = false;
        isEdited = false;
        if (std::exchange(isCleared, false))
            takeTyped();
    });
}

bool FilePathEdit::event(QEvent* event) {
    if (d && event->type() == QEvent::ChildPolished)
        d->followClearButton(static_cast<QChildEvent*>(event)->child());
    if (d && event->type() == QEvent::ShortcutOverride &&
        d->deedOf(static_cast<QKeyEvent&>(*event)) != Private::Deed::None) {
        event->accept();
        return true;
    }
    if (d && event->type() == QEvent::ToolTip && toolTip().isEmpty()) {
        const QString whole = text();
        const bool isCut = !hasFocus() && d->elided() != whole;
        QToolTip::showText(static_cast<QHelpEvent*>(event)->globalPos(),
                           isCut ? Text::readable(whole.toUtf8()) : QString(), this);
        return true;
    }
    // The lists and menus of the field are no end of an edit: what is typed has none open.
    if (d && d->bracket.takes(event))
        return true;
    return QLineEdit::event(event);
}

void FilePathEdit::keyPressEvent(QKeyEvent* event) {
    const Private::Deed deed = d->deedOf(*event);
    if (deed == Private::Deed::None) {
        if (event->key() == Qt::Key_Escape)
            event->ignore(); // a dialog may close
        else
            QLineEdit::keyPressEvent(event);
        return;
    }
    event->accept();
    d->run(deed, *event);
}

void FilePathEdit::focusInEvent(QFocusEvent* event) {
    d->isFirstPress = event->reason() == Qt::MouseFocusReason && d->elided() != text();
    QLineEdit::focusInEvent(event);
    update();
}

void FilePathEdit::focusOutEvent(QFocusEvent* event) {
    const bool comesBack = event->reason() == Qt::PopupFocusReason ||
                           event->reason() == Qt::ActiveWindowFocusReason ||
                           event->reason() == Qt::MenuBarFocusReason;
    const QPointer<FilePathEdit> alive(this);
    if (!comesBack)
        d->takeTyped();
    if (!alive)
        return;
    QLineEdit::focusOutEvent(event);
    if (alive)
        update();
}

// What is under the pointer is not what was seen there when it was pressed.
void FilePathEdit::mousePressEvent(QMouseEvent* event) {
    if (std::exchange(d->isFirstPress, false))
        end(false);
    else
        QLineEdit::mousePressEvent(event);
}

void FilePathEdit::contextMenuEvent(QContextMenuEvent* event) {
    QMenu* const menu = createStandardContextMenu();
    menu->setAttribute(Qt::WA_DeleteOnClose);
    menu->addSeparator();
    QAction* const choose = menu->addAction(d->browseAction->text());
    choose->setEnabled(!isReadOnly());
    connect(choose, &QAction::triggered, this, &FilePathEdit::browse);
    menu->popup(event->globalPos());
}

QByteArray FilePathEdit::Private::dropped(const QMimeData& data) const {
    const std::vector<QByteArray> paths = PathMime::pathsOf(data);
    if (paths.empty())
        return {};
    const QByteArray sequence = acceptsSequences ? Text::sequenceOf(paths) : QByteArray();
    return sequence.isEmpty() ? paths.front() : sequence;
}

// By the text alone: whether it is a folder is asked after the drop.
bool FilePathEdit::Private::welcomes(const QDropEvent& event) const {
    const QByteArray path = dropped(*event.mimeData());
    if (path.isEmpty() || q->isReadOnly() || event.source() == q)
        return false;
    const QStringList wanted = patterns();
    const QByteArray name = Text::nameOf(path);
    const bool mayBeFolder = name.isEmpty() || name.indexOf('.') <= 0;
    return kind == Folder || wanted.isEmpty() || mayBeFolder ||
           std::any_of(wanted.begin(), wanted.end(), [&name](const QString& pattern) {
               return filename_match(name.constData(), encodedName(pattern).constData());
           });
}

void FilePathEdit::dragEnterEvent(QDragEnterEvent* event) {
    if (d->welcomes(*event))
        event->acceptProposedAction();
    else if (event->mimeData()->hasUrls())
        event->ignore();
    else
        QLineEdit::dragEnterEvent(event);
}

void FilePathEdit::dragMoveEvent(QDragMoveEvent* event) {
    if (d->welcomes(*event))
        event->acceptProposedAction();
    else if (event->mimeData()->hasUrls())
        event->ignore();
    else
        QLineEdit::dragMoveEvent(event);
}

void FilePathEdit::dropEvent(QDropEvent* event) {
    if (!d->welcomes(*event)) {
        QLineEdit::dropEvent(event);
        return;
    }
    event->acceptProposedAction();
    d->takeDrop(d->dropped(*event->mimeData()));
}

// A folder in the place of a file keeps the file's name; a file in the place of a folder means its own.
void FilePathEdit::Private::takeDrop(const QByteArray& path) {
    const Text::Meaning meaning = Text::meaningOf(path, place());
    if (!meaning)
        return;
    const QByteArray name = Text::nameOf(meaningOf(q->text()).path);
    const bool isPlain = kind == Any || (kind != Folder && name.isEmpty());
    if (isPlain) {
        takeByUser(meaning.path);
        return;
    }
    dropProbe.ask(meaning.path, DropAnswerWithin, [this, meaning, name](const PathFound& found) {
        QByteArray chosen = meaning.path;
        if (kind == Folder && found.kind == PathFound::File)
            chosen = Text::parentOf(chosen);
        else if (kind != Folder && found.kind == PathFound::Folder)
            chosen = Text::joined(chosen, name);
        takeByUser(chosen);
    });
}
