#include <KxUI/picker/ColorField.h>

#include <KxUI/kit/InterfaceThread_p.h>
#include <KxUI/kit/ValueAccessible_p.h>
#include <KxUI/picker/ColorField_p.h>

#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QTimerEvent>

namespace Kestrel::UI {
namespace {

constexpr int NominalSide = 200;
constexpr int SmallestSide = 80;

} // namespace

ColorField::ColorField(QWidget* parent)
    : QWidget(parent)
    , d(std::make_unique<ColorFieldPrivate>(this)) {
    installAccessible<ColorFieldAccessible, ColorField>();
    qRegisterMetaType<ColorValue>();
    qRegisterMetaType<ColorModel::Component>();
    setFocusPolicy(Qt::StrongFocus);
    QSizePolicy policy(QSizePolicy::Expanding, QSizePolicy::Expanding);
    setSizePolicy(policy);
}

ColorField::~ColorField() = default;

ColorValue ColorField::color() const {
    return d->state.color();
}

void ColorField::setColor(const ColorValue& color) {
    KXUI_INTERFACE_THREAD(this);
    if (!isFinite(color))
        return;
    ColorState state = d->state;
    state.setEdited(color); // value and light are one thing where there is no exposure
    d->setByHost(state);
}

ColorModel::Component ColorField::pinned() const {
    return d->pinned;
}

void ColorField::setPinned(ColorModel::Component component) {
    KXUI_INTERFACE_THREAD(this);
    if (component == d->pinned || component == ColorModel::Alpha || component < ColorModel::Red ||
        component > ColorModel::Cr)
        return;
    const QPointer<ColorField> alive(this);
    cancelEdit();
    if (!alive)
        return;
    d->pinned = component;
    update();
    Q_EMIT pinnedChanged(component);
}

ColorModel::Component ColorField::horizontalComponent() const {
    return d->plane().across();
}

ColorModel::Component ColorField::verticalComponent() const {
    return d->plane().up();
}

int ColorField::colorSpace() const {
    return d->state.ycbcr();
}

void ColorField::setColorSpace(int option) {
    KXUI_INTERFACE_THREAD(this);
    ColorState state = d->state;
    state.setYCbCr(option);
    if (state.ycbcr() == d->state.ycbcr())
        return;
    d->setByHost(state);
    Q_EMIT colorSpaceChanged(state.ycbcr());
}

DisplayTransform ColorField::displayTransform() const {
    return d->display.transform();
}

void ColorField::setDisplayTransform(const DisplayTransform& transform) {
    KXUI_INTERFACE_THREAD(this);
    d->display = DisplayCall(transform);
    update();
}

bool ColorField::isEditing() const {
    return d->bracket.isEditing();
}

QSize ColorField::sizeHint() const {
    return {NominalSide, NominalSide};
}

QSize ColorField::minimumSizeHint() const {
    return {SmallestSide, SmallestSide};
}

void ColorField::cancelEdit() {
    KXUI_INTERFACE_THREAD(this);
    d->bracket.cancel();
}

bool ColorField::event(QEvent* event) {
    if (d->bracket.takes(event))
        return true;
    if (event->type() == QEvent::ShortcutOverride && d->isOwnKey(*static_cast<QKeyEvent*>(event))) {
        event->accept();
        return true;
    }
    return QWidget::event(event);
}

void ColorField::changeEvent(QEvent* event) {
    update();
    QWidget::changeEvent(event);
}

void ColorField::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    d->paint(painter);
}

void ColorField::mousePressEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton) {
        event->ignore();
        return;
    }
    if (d->bracket.beginDrag(event->button()))
        d->dragTo(*event);
}

void ColorField::mouseMoveEvent(QMouseEvent* event) {
    d->dragTo(*event);
}

void ColorField::mouseReleaseEvent(QMouseEvent*) {
    d->bracket.finish();
}

void ColorField::keyPressEvent(QKeyEvent* event) {
    if (d->isOwnKey(*event))
        d->pressKey(*event);
    else
        QWidget::keyPressEvent(event);
}

void ColorField::timerEvent(QTimerEvent* event) {
    if (!d->sharpen(event->timerId()))
        QWidget::timerEvent(event);
}

} // namespace Kestrel::UI
