#include <KxUI/picker/ColorSwatch.h>

#include <KxUI/kit/ColorContrast_p.h>
#include <KxUI/kit/Crisp_p.h>
#include <KxUI/kit/EditBracket_p.h>
#include <KxUI/kit/InterfaceThread_p.h>
#include <KxUI/kit/RefusalFlash_p.h>
#include <KxUI/picker/ColorMime_p.h>
#include <KxUI/picker/ColorPlace_p.h>
#include <KxUI/picker/ColorSwatchAccessible_p.h>
#include <KxUI/picker/SwatchPainting_p.h>

#include <QContextMenuEvent>
#include <QDragEnterEvent>
#include <QKeyEvent>
#include <QMenu>
#include <QMouseEvent>
#include <QPainter>

#include <algorithm>
#include <optional>
#include <utility>

namespace Kestrel::UI {
namespace {

bool isClickKey(const QKeyEvent& event) {
    const bool isPlain = (event.modifiers() & ~Qt::KeypadModifier) == 0;
    return isPlain && (event.key() == Qt::Key_Space || event.key() == Qt::Key_Return ||
                       event.key() == Qt::Key_Enter);
}

} // namespace

/** The state of a ColorSwatch. Functions that change the colour may delete it. */
class ColorSwatchPrivate {
public:
    explicit ColorSwatchPrivate(ColorSwatch* swatch)
        : bracket(
              swatch, [this] { return color; }, [this](const ColorValue& edited) { store(edited); })
        , place(swatch, color, display)
        , q(swatch) {}

    void store(const ColorValue& newColor);
    /** Takes a colour that came from elsewhere, or refuses what is none. */
    void take(const std::optional<ColorValue>& taken);
    void fillMenu(QMenu& menu);
    void paint(QPainter& painter) const;

    ColorValue color;
    DisplayCall display;
    EditBracket<ColorSwatch, ColorValue> bracket;
    ColorPlace place;
    bool readOnly = false;

private:
    ColorSwatch* const q;
};

void ColorSwatchPrivate::store(const ColorValue& newColor) {
    if (newColor == color)
        return;
    color = newColor;
    q->update();
    ColorSwatchAccessible::tellColor(q);
    Q_EMIT q->colorChanged(newColor);
}

void ColorSwatchPrivate::take(const std::optional<ColorValue>& taken) {
    if (taken)
        bracket.editOnce(*taken);
    else
        RefusalFlash::over(q);
}

void ColorSwatchPrivate::fillMenu(QMenu& menu) {
    QAction* const copy = menu.addAction(ColorSwatch::tr("&Copy colour"));
    QObject::connect(copy, &QAction::triggered, q, &ColorSwatch::copy);
    QAction* const paste = menu.addAction(ColorSwatch::tr("&Paste colour"));
    paste->setEnabled(!readOnly && copiedColor(display, color.alpha));
    QObject::connect(paste, &QAction::triggered, q, &ColorSwatch::paste);
}

void ColorSwatchPrivate::paint(QPainter& painter) const {
    const double ratio = q->devicePixelRatioF();
    const QPalette palette = q->palette();
    const QColor ground = palette.color(QPalette::Window);
    const QRectF all(q->rect());
    const bool isMarked = place.isDropping() || q->hasFocus();
    const double line = isMarked ? 2.0 : 1.0;
    painter.fillRect(rectOnPixels(all, ratio),
                     isMarked ? visibleHighlight(palette, ground) : swatchOutline(palette, ground));
    QColor shown = shownColor(color, display);
    paintSwatch(painter, rectOnPixels(all.adjusted(line, line, -line, -line), ratio), shown, ratio);
    if (q->isEnabled())
        return;
    QColor veil = ground;
    veil.setAlpha(150);
    painter.fillRect(all, veil);
}

ColorSwatch::ColorSwatch(QWidget* parent)
    : QWidget(parent)
    , d(std::make_unique<ColorSwatchPrivate>(this)) {
    installAccessible<ColorSwatchAccessible, ColorSwatch>();
    qRegisterMetaType<ColorValue>();
    setFocusPolicy(Qt::StrongFocus);
    setAcceptDrops(true);
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
    setAttribute(Qt::WA_WState_OwnSizePolicy, false); // not the host's
}

ColorSwatch::~ColorSwatch() = default;

ColorValue ColorSwatch::color() const {
    return d->color;
}

void ColorSwatch::setColor(const ColorValue& color) {
    KXUI_INTERFACE_THREAD(this);
    if (!isFinite(color))
        return;
    ColorValue limited = color;
    limited.alpha = std::clamp(color.alpha, 0.0F, 1.0F);
    d->bracket.hostSet(limited);
    d->store(limited);
}

DisplayTransform ColorSwatch::displayTransform() const {
    return d->display.transform();
}

void ColorSwatch::setDisplayTransform(const DisplayTransform& transform) {
    KXUI_INTERFACE_THREAD(this);
    d->display = DisplayCall(transform);
    update();
}

bool ColorSwatch::isReadOnly() const {
    return d->readOnly;
}

void ColorSwatch::setReadOnly(bool readOnly) {
    KXUI_INTERFACE_THREAD(this);
    if (std::exchange(d->readOnly, readOnly) == readOnly)
        return;
    setAcceptDrops(!readOnly);
    Q_EMIT readOnlyChanged(readOnly);
}

bool ColorSwatch::isEditing() const {
    return d->bracket.isEditing();
}

QSize ColorSwatch::sizeHint() const {
    return {40, std::max(20, fontMetrics().height() + 6)};
}

QSize ColorSwatch::minimumSizeHint() const {
    return {12, 12};
}

void ColorSwatch::copy() {
    KXUI_INTERFACE_THREAD(this);
    copyColor(d->color, d->display);
}

void ColorSwatch::paste() {
    KXUI_INTERFACE_THREAD(this);
    if (!d->readOnly)
        d->take(copiedColor(d->display, d->color.alpha));
}

void ColorSwatch::cancelEdit() {
    KXUI_INTERFACE_THREAD(this);
    d->bracket.cancel();
}

bool ColorSwatch::event(QEvent* event) {
    if (d->bracket.takes(event))
        return true;
    if (event->type() == QEvent::ShortcutOverride) {
        auto* const key = static_cast<QKeyEvent*>(event);
        if (isClickKey(*key)) {
            event->accept();
            return true;
        }
    }
    return d->place.takes(event) || QWidget::event(event);
}

void ColorSwatch::changeEvent(QEvent* event) {
    if (event->type() == QEvent::EnabledChange)
        d->place.forget();
    QWidget::changeEvent(event);
    update();
}

void ColorSwatch::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    d->paint(painter);
}

void ColorSwatch::mousePressEvent(QMouseEvent* event) {
    d->place.press(*event);
}

void ColorSwatch::mouseMoveEvent(QMouseEvent* event) {
    if (d->place.drags(*event))
        dragColor(this, d->color, d->display); // nothing after it: the swatch may be gone
}

void ColorSwatch::mouseReleaseEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton || !d->place.isPressed())
        return;
    d->place.forget();
    if (rect().contains(event->pos()))
        Q_EMIT clicked();
}

void ColorSwatch::keyPressEvent(QKeyEvent* event) {
    if (event->matches(QKeySequence::Copy))
        copy();
    else if (event->matches(QKeySequence::Paste) && !d->readOnly)
        paste();
    else if (isClickKey(*event) && !event->isAutoRepeat())
        Q_EMIT clicked();
    else
        QWidget::keyPressEvent(event);
}

void ColorSwatch::contextMenuEvent(QContextMenuEvent* event) {
    auto* const menu = new QMenu(this);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    d->fillMenu(*menu);
    menu->popup(event->globalPos());
}

void ColorSwatch::dragEnterEvent(QDragEnterEvent* event) {
    d->place.enter(event);
}

void ColorSwatch::dragLeaveEvent(QDragLeaveEvent*) {
    d->place.leave();
}

void ColorSwatch::dropEvent(QDropEvent* event) {
    d->take(d->place.drop(event));
}

} // namespace Kestrel::UI
