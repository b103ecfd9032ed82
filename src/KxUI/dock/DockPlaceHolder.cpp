#include <KxUI/dock/DockPlaceHolder.h>

#include <QPainter>

namespace Kestrel::UI {

DockPlaceHolder::DockPlaceHolder(QWidget* parent)
    : QWidget(parent) {
    // Nobody but its pane knows it.
    setAttribute(Qt::WA_DeleteOnClose);
}

DockPlaceHolder::~DockPlaceHolder() = default;

void DockPlaceHolder::paintEvent(QPaintEvent* event) {
    if (windowTitle().isEmpty()) {
        QWidget::paintEvent(event);
        return;
    }
    QPainter painter(this);
    QFont titleFont = font();
    titleFont.setPixelSize(25);
    painter.setFont(titleFont);
    painter.setPen(Qt::gray);
    painter.drawText(rect(), Qt::AlignCenter, windowTitle());
}

} // namespace Kestrel::UI
