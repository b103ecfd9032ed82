#include <KxUI/browse/PathBar.h>

#include <KxUI/browse/BusyMark_p.h>
#include <KxUI/browse/PathBar_p.h>
#include <KxUI/browse/PathMime_p.h>
#include <KxUI/kit/InterfaceThread_p.h>

#include <QApplication>
#include <QClipboard>
#include <QDropEvent>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMimeData>
#include <QPainter>
#include <QStyle>
#include <QStyleOptionFrame>

#include <algorithm>

namespace Kestrel::UI {
namespace {

constexpr int NominalWidth = 320;
constexpr int LeastWidth = 120;

} // namespace

PathBarPrivate::PathBarPrivate(PathBar* bar)
    : q(bar)
    , field(new QLineEdit(bar))
    , busyMark(new BusyMark(bar))
    , error(new QLabel(bar)) {
    error->hide();
    error->setTextFormat(Qt::PlainText);
    error->setIndent(3);
}

PathBar::PathBar(QWidget* parent)
    : QWidget(parent)
    , d(std::make_unique<PathBarPrivate>(this)) {
    setAcceptDrops(true);
    setLayoutDirection(Qt::LeftToRight);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    setCursor(Qt::IBeamCursor);
    setAccessibleName(tr("Path"));
    d->setUpField();
    d->layOut();
}

PathBar::~PathBar() {
    d->field->removeEventFilter(this);
}

QByteArray PathBar::path() const {
    return d->path;
}

void PathBar::setPath(const QByteArray& path) {
    KXUI_INTERFACE_THREAD(this);
    if (!path.isEmpty() && !PathText::isAbsolute(path))
        return;
    const QByteArray clean =
        path.isEmpty() ? path : PathText::meaningOf(path, PathText::Place()).path;
    if (clean == d->path)
        return;
    d->path = clean;
    d->showPath();
    setAccessibleDescription(PathText::readable(clean));
    Q_EMIT pathChanged(clean);
}

bool PathBar::isEditing() const {
    return d->isEditing;
}

bool PathBar::isBusy() const {
    return d->isBusy;
}

QString PathBar::errorText() const {
    return d->error->text();
}

bool PathBar::isCompletionEnabled() const {
    return d->completer->isEnabled();
}

void PathBar::setCompletionEnabled(bool enabled) {
    KXUI_INTERFACE_THREAD(this);
    if (enabled == isCompletionEnabled())
        return;
    d->completer->setEnabled(enabled);
    Q_EMIT completionEnabledChanged(enabled);
}

void PathBar::setExpander(std::function<QString(const QString&)> expander) {
    KXUI_INTERFACE_THREAD(this);
    d->expander = std::move(expander);
}

QSize PathBar::sizeHint() const {
    const int error = d->error->text().isEmpty() ? 0 : d->error->sizeHint().height() + 2;
    return {NominalWidth, d->rowHeight() + error};
}

QSize PathBar::minimumSizeHint() const {
    return {LeastWidth, sizeHint().height()};
}

void PathBar::startEditing(const QString& text) {
    KXUI_INTERFACE_THREAD(this);
    const QPointer<PathBar> alive(this);
    const bool begins = !d->isEditing;
    if (begins) {
        QWidget* const before = QApplication::focusWidget();
        d->focusBefore = before && before != d->field ? before : nullptr;
        d->isEditing = true;
    }
    d->forgetQuestion();
    if (alive)
        d->setError({});
    if (!alive)
        return;
    if (text.isEmpty()) {
        d->filled = d->path;
        d->field->setText(PathText::shown(d->path));
        d->field->selectAll();
    } else {
        d->filled.clear();
        d->field->setText(text);
    }
    d->layOut();
    setFocusProxy(d->field);
    d->field->show();
    d->field->setFocus(Qt::ShortcutFocusReason);
    if (text.isEmpty())
        d->field->selectAll();
    else
        d->field->end(false);
    if (begins)
        Q_EMIT editingChanged(true);
}

void PathBar::stopEditing() {
    KXUI_INTERFACE_THREAD(this);
    d->stop(true);
}

bool PathBar::paste() {
    KXUI_INTERFACE_THREAD(this);
    const QMimeData* const copied = QApplication::clipboard()->mimeData();
    return copied && d->take(*copied);
}

bool PathBar::event(QEvent* event) {
    if (event->type() == QEvent::ShortcutOverride) {
        const auto& key = static_cast<const QKeyEvent&>(*event);
        if (key.key() == Qt::Key_Escape && d->isEditing) {
            event->accept();
            return true;
        }
    }
    return QWidget::event(event);
}

void PathBar::changeEvent(QEvent* event) {
    QWidget::changeEvent(event);
    if (event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange) {
        updateGeometry();
        d->layOut();
    }
}

bool PathBar::eventFilter(QObject* watched, QEvent* event) {
    if (watched != d->field) {
        if (event->type() == QEvent::FocusIn)
            d->setFocused(static_cast<CrumbButton*>(watched));
        return QWidget::eventFilter(watched, event);
    }
    if (event->type() == QEvent::KeyPress && !d->completer->isOpen())
        return d->takesFieldKey(static_cast<const QKeyEvent&>(*event));
    if (event->type() == QEvent::FocusOut) {
        const Qt::FocusReason reason = static_cast<QFocusEvent*>(event)->reason();
        const bool comesBack = reason == Qt::PopupFocusReason ||
                               reason == Qt::ActiveWindowFocusReason ||
                               reason == Qt::MenuBarFocusReason;
        if (!comesBack && d->isEditing)
            d->stop(false);
    }
    return QWidget::eventFilter(watched, event);
}

void PathBar::keyPressEvent(QKeyEvent* event) {
    const bool isPlain = (event->modifiers() & ~Qt::KeypadModifier & ~Qt::ShiftModifier) == 0;
    const int key = event->key();
    if (event->matches(QKeySequence::Paste)) {
        paste();
    } else if (event->matches(QKeySequence::Copy)) {
        QApplication::clipboard()->setText(PathText::shown(d->path));
    } else if ((isPlain && key == Qt::Key_F4) ||
               (event->modifiers() == Qt::ControlModifier && key == Qt::Key_L)) {
        startEditing();
    } else if (isPlain &&
               (event->text() == QLatin1String("/") || event->text() == QLatin1String("~"))) {
        startEditing(event->text());
    } else if (isPlain && (key == Qt::Key_Left || key == Qt::Key_Right || key == Qt::Key_Home ||
                           key == Qt::Key_End)) {
        d->goAlong(key);
    } else if (isPlain && key == Qt::Key_Down && d->focused) {
        if (d->focused->part() == CrumbButton::Dots)
            d->openHidden();
        else
            d->openMenu(d->focused);
    } else {
        QWidget::keyPressEvent(event);
    }
}

void PathBar::mousePressEvent(QMouseEvent* event) {
    if (event->button() == Qt::LeftButton && d->rowRect().contains(event->pos()))
        startEditing();
    else
        QWidget::mousePressEvent(event);
}

void PathBar::paintEvent(QPaintEvent*) {
    if (d->isEditing)
        return;
    QPainter painter(this);
    QStyleOptionFrame option;
    option.initFrom(this);
    option.rect = d->rowRect();
    option.lineWidth = style()->pixelMetric(QStyle::PM_DefaultFrameWidth, &option, this);
    option.state |= QStyle::State_Sunken;
    option.state.setFlag(QStyle::State_HasFocus, false); // one of the buttons has a ring
    style()->drawPrimitive(QStyle::PE_PanelLineEdit, &option, &painter, this);
}

void PathBar::resizeEvent(QResizeEvent*) {
    d->layOut();
}

void PathBar::dragEnterEvent(QDragEnterEvent* event) {
    if (!PathMime::pathsOf(*event->mimeData()).empty())
        event->acceptProposedAction();
}

void PathBar::dropEvent(QDropEvent* event) {
    event->acceptProposedAction();
    d->take(*event->mimeData());
}

} // namespace Kestrel::UI
