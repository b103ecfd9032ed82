#include <KxUI/scopes/ScopeView.h>

#include <KxUI/draw/PainterDrawingContext.h>
#include <KxUI/kit/InterfaceThread_p.h>
#include <KxUI/kit/OwnKeys_p.h>
#include <KxUI/scopes/ScopeAccessible_p.h>
#include <KxUI/scopes/ScopeModelLink_p.h>
#include <KxUI/scopes/ScopeView_p.h>

#include <QActionGroup>
#include <QContextMenuEvent>
#include <QMenu>
#include <QMouseEvent>
#include <QPainter>
#include <QStyle>
#include <QStyleOptionFocusRect>
#include <QWheelEvent>

#include <algorithm>
#include <cmath>

namespace Kestrel::UI {
namespace {

constexpr double MostBrightness = 6;
constexpr double NotchZoom = 1.25;
constexpr int LargestImage = 16384;

const QString BrightnessKey = QStringLiteral("brightness");
const QString ToneKey = QStringLiteral("tone");
const QString SinglePixelsKey = QStringLiteral("singlePixels");
const QString UnitKey = QStringLiteral("unit");
const QString ReferenceKey = QStringLiteral("showReference");

} // namespace

ScopeView::ScopeView(std::unique_ptr<ScopeViewPrivate> scope, QWidget* parent)
    : QWidget(parent)
    , d(std::move(scope)) {
    qRegisterMetaType<ScopeReadout>();
    qRegisterMetaType<ScopeReadout>("Kestrel::UI::ScopeReadout");
    qRegisterMetaType<ScopeSelection>("Kestrel::UI::ScopeSelection");
    ScopeAccessible::install();
    d->setView(this);
    setMouseTracking(true);
    setFocusPolicy(Qt::StrongFocus);
    setAttribute(Qt::WA_OpaquePaintEvent);
}

ScopeView::~ScopeView() {
    if (d->model)
        d->model->require(this, {});
}

ScopeModel* ScopeView::model() const {
    return d->model;
}

void ScopeView::setModel(ScopeModel* model) {
    KXUI_INTERFACE_THREAD(this);
    if (!borrowScopeModel(this, *d, d->model, model))
        return;
    if (model) {
        connect(model, &ScopeModel::found, this, [this](const QObject* who, const QPoint& pixel) {
            if (who == this)
                Q_EMIT pixelRequested(pixel);
        });
    }
    d->modelGone();
}

Drawing ScopeView::drawing() const {
    return d->surface->drawing();
}

void ScopeView::setDrawing(Drawing drawing) {
    KXUI_INTERFACE_THREAD(this);
    if (d->surface->drawing() == drawing)
        return;
    d->surface->setDrawing(drawing);
    d->changeTrace();
    Q_EMIT drawingChanged();
}

bool ScopeView::usesOpenGL() const {
    return d->surface->usesOpenGL();
}

double ScopeView::brightness() const {
    return d->brightness;
}

void ScopeView::setBrightness(double stops) {
    KXUI_INTERFACE_THREAD(this);
    const double wanted =
        std::isnan(stops) ? 0 : std::clamp(stops, -MostBrightness, MostBrightness);
    if (d->brightness == wanted)
        return;
    d->brightness = wanted;
    d->changeTrace();
    Q_EMIT brightnessChanged(wanted);
}

ScopeView::Tone ScopeView::tone() const {
    return d->tone;
}

void ScopeView::setTone(Tone tone) {
    KXUI_INTERFACE_THREAD(this);
    if (d->tone == tone)
        return;
    d->tone = tone;
    d->changeTrace();
    Q_EMIT toneChanged(tone);
}

bool ScopeView::singlePixels() const {
    return d->singlePixels;
}

void ScopeView::setSinglePixels(bool visible) {
    KXUI_INTERFACE_THREAD(this);
    if (d->singlePixels == visible)
        return;
    d->singlePixels = visible;
    d->changeTrace();
    Q_EMIT singlePixelsChanged(visible);
}

ScopeUnit ScopeView::unit() const {
    return d->unit;
}

void ScopeView::setUnit(ScopeUnit unit) {
    KXUI_INTERFACE_THREAD(this);
    if (d->unit == unit || int(unit) < 0 || int(unit) >= ScopeUnitCount)
        return;
    d->unit = unit;
    d->changeTrace();
    Q_EMIT unitChanged();
}

QString ScopeView::unitText(ScopeUnit unit) {
    return ScopeViewPrivate::unitText(unit);
}

QVector<ScopeLine> ScopeView::userLines() const {
    return d->userLines;
}

void ScopeView::setUserLines(const QVector<ScopeLine>& lines) {
    KXUI_INTERFACE_THREAD(this);
    if (d->userLines == lines)
        return;
    d->userLines = lines;
    d->changeTrace();
    Q_EMIT userLinesChanged();
}

bool ScopeView::showReference() const {
    return d->showReference;
}

void ScopeView::setShowReference(bool show) {
    KXUI_INTERFACE_THREAD(this);
    if (d->showReference == show)
        return;
    d->showReference = show;
    d->changeTrace();
    Q_EMIT showReferenceChanged(show);
}

ScopeReadout ScopeView::readoutAt(const QPoint& position) const {
    const ScopeGeometry geometry = d->geometry();
    return d->readArea(geometry).contains(position) ? d->readoutAt(geometry.fromWidget(position))
                                                    : ScopeReadout();
}

ScopeReadout ScopeView::readout() const {
    return d->cursor ? d->readoutAt(*d->cursor) : ScopeReadout();
}

bool ScopeView::isEditing() const {
    return d->drag.isSelecting();
}

void ScopeView::cancelEdit() {
    if (isEditing())
        d->execute(d->drag.cancel());
}

QImage ScopeView::toImage(const QSize& size, qreal devicePixelRatio) const {
    const qreal ratio = devicePixelRatio > 0 ? devicePixelRatio : 1;
    const QSize pixels = (QSizeF(size) * ratio).toSize();
    if (pixels.isEmpty() || std::max(pixels.width(), pixels.height()) > LargestImage)
        return {};
    QImage image(pixels, QImage::Format_RGB32);
    image.setDevicePixelRatio(ratio);
    QPainter painter(&image);
    PainterDrawingContext context(painter, size, ratio);
    d->paint(context, d->geometry(size, ratio), false);
    return image;
}

QVariantMap ScopeView::saveState() const {
    QVariantMap state{{BrightnessKey, d->brightness},
                      {ToneKey, int(d->tone)},
                      {SinglePixelsKey, d->singlePixels},
                      {UnitKey, int(d->unit)},
                      {ReferenceKey, d->showReference}};
    d->saveTo(state);
    return state;
}

void ScopeView::restoreState(const QVariantMap& state) {
    const QPointer<ScopeView> guard(this);
    const auto take = [&](const QString& key, auto set) {
        const auto found = state.find(key);
        if (guard && found != state.end())
            set(*found);
    };
    take(BrightnessKey, [this](const QVariant& value) { setBrightness(value.toDouble()); });
    take(ToneKey, [this](const QVariant& value) {
        setTone(value.toInt() == LinearTone ? LinearTone : LogTone);
    });
    take(SinglePixelsKey, [this](const QVariant& value) { setSinglePixels(value.toBool()); });
    take(UnitKey, [this](const QVariant& value) { setUnit(ScopeUnit(value.toInt())); });
    take(ReferenceKey, [this](const QVariant& value) { setShowReference(value.toBool()); });
    if (guard)
        d->restoreFrom(state);
}

QSize ScopeView::sizeHint() const {
    return {360, 240};
}

QSize ScopeView::minimumSizeHint() const {
    return {120, 90};
}

void ScopeView::resetView() {
    d->resetView();
}

bool ScopeView::event(QEvent* event) {
    if (event->type() == QEvent::ShortcutOverride) {
        auto* const key = static_cast<QKeyEvent*>(event);
        if (d->isMoreKey(*key))
            event->accept();
        const bool takesEscape = d->drag.isActive() || d->cursor.has_value();
        if (isOwnKey(*key, {Qt::Key_Left, Qt::Key_Right, Qt::Key_Up, Qt::Key_Down, Qt::Key_Plus,
                            Qt::Key_Equal, Qt::Key_Minus, Qt::Key_0, Qt::Key_B, Qt::Key_U,
                            Qt::Key_H, Qt::Key_P}) ||
            (takesEscape && isOwnKey(*key, {Qt::Key_Escape})))
            event->accept();
    } else if (event->type() == QEvent::WindowStateChange) {
        d->askModel();
    }
    return QWidget::event(event);
}

void ScopeView::paintEvent(QPaintEvent*) {
    const ScopeGeometry geometry = d->geometry();
    d->surface->paint(
        [this, &geometry](DrawingContext& context) { d->paint(context, geometry, true); });
    if (!hasFocus())
        return;
    QPainter painter(this);
    QStyleOptionFocusRect option;
    option.initFrom(this);
    option.rect = rect();
    option.backgroundColor = d->colors.ground;
    style()->drawPrimitive(QStyle::PE_FrameFocusRect, &option, &painter, this);
}

void ScopeView::resizeEvent(QResizeEvent*) {
    d->changeTrace();
}

void ScopeView::showEvent(QShowEvent*) {
    d->askModel();
}

void ScopeView::hideEvent(QHideEvent*) {
    const QPointer<ScopeView> guard(this);
    d->askModel();
    d->execute(d->drag.cancel());
    if (guard)
        d->setCursor(std::nullopt);
}

void ScopeView::changeEvent(QEvent* event) {
    QWidget::changeEvent(event);
    d->changeTrace();
}

void ScopeView::mousePressEvent(QMouseEvent* event) {
    if (event->button() == Qt::RightButton && d->drag.isActive()) {
        d->execute(d->drag.cancel());
        return;
    }
    d->drag.press({event->localPos(), event->button(), event->modifiers(),
                   d->pansAt(d->geometry(), event->localPos())});
}

void ScopeView::mouseMoveEvent(QMouseEvent* event) {
    const ScopeInput input{event->localPos(), Qt::NoButton, event->modifiers()};
    const QPointer<ScopeView> guard(this);
    const ScopeCommand command = d->drag.move(input);
    d->execute(command);
    if (guard && command.kind == ScopeCommand::BeginSelect)
        d->execute(d->drag.move(input));
    if (!guard)
        return;
    const ScopeGeometry geometry = d->geometry();
    d->cursorIsOfKeys = false;
    if (d->readArea(geometry).contains(input.position))
        d->setCursor(geometry.fromWidget(input.position));
    else
        d->setCursor(std::nullopt);
}

void ScopeView::mouseReleaseEvent(QMouseEvent* event) {
    d->execute(d->drag.release({event->localPos(), event->button(), event->modifiers()}));
}

void ScopeView::mouseDoubleClickEvent(QMouseEvent* event) {
    if (event->button() == Qt::LeftButton)
        d->select(ScopeSelection(), true);
}

void ScopeView::leaveEvent(QEvent*) {
    if (!d->cursorIsOfKeys)
        d->setCursor(std::nullopt);
}

void ScopeView::wheelEvent(QWheelEvent* event) {
    const int notches = d->notches.add(event->angleDelta().y());
    if (notches != 0)
        d->zoomAbout(d->geometry().fromWidget(event->position()), std::pow(NotchZoom, notches));
    event->accept();
}

void ScopeView::keyPressEvent(QKeyEvent* event) {
    if (!d->pressKey(*event))
        QWidget::keyPressEvent(event);
}

void ScopeView::contextMenuEvent(QContextMenuEvent* event) {
    d->showMenu(event->globalPos());
}

// ---- The parts of a scope that most have no more of.

void ScopeViewPrivate::saveTo(QVariantMap&) const {}

void ScopeViewPrivate::restoreFrom(const QVariantMap&) {}

void ScopeViewPrivate::addActions(QMenu&) {}

void ScopeViewPrivate::turn(const QPointF&) {}

bool ScopeViewPrivate::pansAt(const ScopeGeometry&, const QPointF&) const {
    return false;
}

void ScopeViewPrivate::resetView() {
    setViewport(ScopeViewport());
}

bool ScopeViewPrivate::isMoreKey(const QKeyEvent&) const {
    return false;
}

void ScopeViewPrivate::pressMoreKey(const QKeyEvent&) {}

void ScopeViewPrivate::showMenu(const QPoint& globalPosition) {
    // The menu asks for nothing while it is open, so that a host may delete the scope meanwhile.
    auto* const menu = new QMenu(q);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    auto* const units = menu->addMenu(ScopeView::tr("Unit"));
    auto* const group = new QActionGroup(units);
    for (int i = 0; i < ScopeUnitCount; ++i) {
        QAction* const action = units->addAction(unitText(ScopeUnit(i)));
        action->setCheckable(true);
        action->setChecked(ScopeUnit(i) == unit);
        group->addAction(action);
        QObject::connect(action, &QAction::triggered, q, [this, i] { q->setUnit(ScopeUnit(i)); });
    }
    const auto toggle = [this, menu](const QString& text, bool on, auto slot) {
        QAction* const action = menu->addAction(text);
        action->setCheckable(true);
        action->setChecked(on);
        QObject::connect(action, &QAction::toggled, q, slot);
    };
    addActions(*menu);
    toggle(ScopeView::tr("Single pixels visible"), singlePixels, &ScopeView::setSinglePixels);
    toggle(ScopeView::tr("Held result visible"), showReference, &ScopeView::setShowReference);
    if (model) {
        const bool held = model->reference() != nullptr;
        QAction* const hold =
            menu->addAction(held ? ScopeView::tr("Let held result go") : ScopeView::tr("Hold"));
        QObject::connect(hold, &QAction::triggered, model.data(),
                         held ? &ScopeModel::clearReference : &ScopeModel::hold);
    }
    QObject::connect(menu->addAction(ScopeView::tr("Show everything")), &QAction::triggered, q,
                     &ScopeView::resetView);
    const QPointer<QMenu> open(menu);
    Q_EMIT q->contextMenuAboutToShow(menu);
    if (open)
        open->popup(globalPosition);
}

} // namespace Kestrel::UI
