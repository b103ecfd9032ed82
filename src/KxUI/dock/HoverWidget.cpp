#include <KxUI/dock/HoverWidget.h>

#include <KxUI/dock/DropZones_p.h>

#include <KxUI/kit/InterfaceThread_p.h>
#include <KxUI/kit/WindowSystem_p.h>

#include <QPainter>

namespace Kestrel::UI {

namespace {

constexpr int OutlineReach = 3; // the pen of 2 around its line, and a pixel of antialiasing

QRect outlineRect(const QRect& widget, DockDropZone zone) {
    return dropZoneArea(widget.adjusted(1, 1, -1, -1), zone);
}

} // namespace

class HoverWidget::Private {
public:
    DockDropZone zone = DropCentre;
};

HoverWidget::HoverWidget(QWidget* parent)
    : QWidget(parent, Qt::Window | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint)
    , d(std::make_unique<Private>()) {
    setAttribute(Qt::WA_TranslucentBackground);
    setAttribute(Qt::WA_ShowWithoutActivating);
    setAttribute(Qt::WA_TransparentForMouseEvents);
    setAttribute(Qt::WA_QuitOnClose, false);
    setFocusPolicy(Qt::NoFocus);
}

HoverWidget::~HoverWidget() = default;

DockDropZone HoverWidget::zone() const {
    return d->zone;
}

void HoverWidget::setZone(DockDropZone zone) {
    KXUI_INTERFACE_THREAD(this);
    if (d->zone == zone)
        return;
    d->zone = zone;
    updateShape();
    update();
    Q_EMIT zoneChanged(zone);
}

void HoverWidget::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    QPen pen(palette().color(QPalette::Highlight), 2.0, Qt::DashLine, Qt::SquareCap, Qt::BevelJoin);
    painter.setPen(pen);
    painter.setBrush(Qt::NoBrush);
    painter.drawRect(outlineRect(rect(), d->zone));
}

void HoverWidget::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    updateShape();
}

void HoverWidget::updateShape() {
    const QRect outline = outlineRect(rect(), d->zone);
    const int reach = OutlineReach;
    const QRegion outer(outline.adjusted(-reach, -reach, reach, reach));
    const QRegion inner(outline.adjusted(reach, reach, -reach, -reach));
    setWindowShape(this, outer.subtracted(inner));
}

} // namespace Kestrel::UI
