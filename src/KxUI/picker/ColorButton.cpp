#include <KxUI/picker/ColorButton.h>

#include <KxUI/kit/InterfaceThread_p.h>
#include <KxUI/picker/ColorButtonAccessible_p.h>
#include <KxUI/picker/ColorButton_p.h>
#include <KxUI/picker/ColorMime_p.h>
#include <KxUI/picker/ColorPicker.h>

#include <QContextMenuEvent>
#include <QDragEnterEvent>
#include <QKeyEvent>
#include <QMenu>
#include <QMouseEvent>
#include <QPainter>
#include <QStyleOptionButton>

#include <algorithm>
#include <utility>

namespace Kestrel::UI {

ColorButton::ColorButton(QWidget* parent)
    : QAbstractButton(parent)
    , d(std::make_unique<ColorButtonPrivate>(this)) {
    installAccessible<ColorButtonAccessible, ColorButton>();
    qRegisterMetaType<ColorValue>();
    setFocusPolicy(Qt::StrongFocus);
    setAcceptDrops(true);
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
    setAttribute(Qt::WA_WState_OwnSizePolicy, false); // not the host's
    connect(this, &QAbstractButton::clicked, this, [this] { setOpen(!isOpen()); });
}

ColorButton::~ColorButton() {
    d->popup.reset();
}

ColorValue ColorButton::color() const {
    return d->color;
}

void ColorButton::setColor(const ColorValue& color) {
    KXUI_INTERFACE_THREAD(this);
    if (!isFinite(color))
        return;
    ColorValue limited = color;
    limited.alpha = std::clamp(color.alpha, 0.0F, 1.0F);
    d->bracket.hostSet(limited);
    const QPointer<ColorButton> alive(this);
    d->store(limited);
    if (alive)
        d->showInPicker();
}

DisplayTransform ColorButton::displayTransform() const {
    return d->display.transform();
}

void ColorButton::setDisplayTransform(const DisplayTransform& transform) {
    KXUI_INTERFACE_THREAD(this);
    d->display = DisplayCall(transform);
    if (isOpen())
        picker()->setDisplayTransform(transform);
    update();
}

bool ColorButton::isAlphaEnabled() const {
    return d->isAlphaEnabled;
}

void ColorButton::setAlphaEnabled(bool enabled) {
    KXUI_INTERFACE_THREAD(this);
    if (std::exchange(d->isAlphaEnabled, enabled) == enabled)
        return;
    if (isOpen())
        picker()->setAlphaEnabled(enabled);
    Q_EMIT displayChanged();
}

QString ColorButton::title() const {
    return d->title;
}

void ColorButton::setTitle(const QString& title) {
    KXUI_INTERFACE_THREAD(this);
    if (std::exchange(d->title, title) != title)
        Q_EMIT displayChanged();
}

ColorPicker* ColorButton::picker() const {
    return d->shared ? d->shared.data() : d->own.get();
}

void ColorButton::setPicker(ColorPicker* shared) {
    KXUI_INTERFACE_THREAD(this);
    if (shared == d->shared)
        return;
    const QPointer<ColorButton> alive(this);
    const QPointer<ColorPicker> kept(shared);
    d->close();
    if (alive)
        d->shared = kept;
}

bool ColorButton::isOpen() const {
    return d->popup != nullptr;
}

void ColorButton::setOpen(bool open) {
    KXUI_INTERFACE_THREAD(this);
    if (open && !isOpen())
        d->open();
    else if (!open)
        d->close();
}

bool ColorButton::isEditing() const {
    return d->bracket.isEditing();
}

QSize ColorButton::sizeHint() const {
    ensurePolished();
    QStyleOptionButton option;
    option.initFrom(this);
    const QSize contents(40, fontMetrics().height());
    return style()->sizeFromContents(QStyle::CT_PushButton, &option, contents, this);
}

QSize ColorButton::minimumSizeHint() const {
    return {20, 16};
}

void ColorButton::copy() {
    KXUI_INTERFACE_THREAD(this);
    copyColor(d->color, d->display);
}

void ColorButton::paste() {
    KXUI_INTERFACE_THREAD(this);
    d->take(copiedColor(d->display, d->color.alpha));
}

void ColorButton::cancelEdit() {
    KXUI_INTERFACE_THREAD(this);
    d->bracket.cancel();
}

bool ColorButton::event(QEvent* event) {
    const QPointer<ColorButton> alive(this);
    if (event->type() == QEvent::Hide || (event->type() == QEvent::EnabledChange && !isEnabled()))
        d->close();
    if (!alive || d->bracket.takes(event))
        return true;
    return d->place.takes(event) || QAbstractButton::event(event);
}

void ColorButton::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    d->paint(painter);
}

void ColorButton::mousePressEvent(QMouseEvent* event) {
    d->place.forget();
    d->place.press(*event);
    QAbstractButton::mousePressEvent(event);
}

void ColorButton::mouseMoveEvent(QMouseEvent* event) {
    if (!d->place.drags(*event)) {
        QAbstractButton::mouseMoveEvent(event);
        return;
    }
    setDown(false);
    dragColor(this, d->color, d->display); // nothing after it: the button may be gone
}

void ColorButton::keyPressEvent(QKeyEvent* event) {
    if (event->matches(QKeySequence::Copy))
        copy();
    else if (event->matches(QKeySequence::Paste))
        paste();
    else if (event->key() == Qt::Key_Down && event->modifiers() == Qt::AltModifier)
        setOpen(true);
    else
        QAbstractButton::keyPressEvent(event);
}

void ColorButton::contextMenuEvent(QContextMenuEvent* event) {
    auto* const menu = new QMenu(this);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    connect(menu->addAction(tr("&Copy colour")), &QAction::triggered, this, &ColorButton::copy);
    QAction* const paste = menu->addAction(tr("&Paste colour"));
    paste->setEnabled(copiedColor(d->display, d->color.alpha).has_value());
    connect(paste, &QAction::triggered, this, &ColorButton::paste);
    menu->popup(event->globalPos());
}

void ColorButton::dragEnterEvent(QDragEnterEvent* event) {
    d->place.enter(event);
}

void ColorButton::dragLeaveEvent(QDragLeaveEvent*) {
    d->place.leave();
}

void ColorButton::dropEvent(QDropEvent* event) {
    d->take(d->place.drop(event));
}

} // namespace Kestrel::UI
