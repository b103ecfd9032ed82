#include "panels/ViewerCanvas.h"

#include "media/FrameNote.h"
#include "panels/FittedRect.h"

#include <KxUI/eventgraph/EventAdder.h>
#include <KxUI/style/ApplicationStyle.h>

#include <QMouseEvent>
#include <QPainter>

#include <algorithm>
#include <chrono>
#include <cmath>

namespace Kestrel::Workbench {

ViewerCanvas::ViewerCanvas(QWidget* parent)
    : QWidget(parent) {
    setAttribute(Qt::WA_OpaquePaintEvent);
    setAccessibleName(tr("Viewer"));
    setMinimumSize(160, 90);
    setMouseTracking(true);
}

void ViewerCanvas::setFrame(const FramePtr& frame) {
    if (frame == m_frame)
        return;
    m_frame = frame;
    if (frame && frame->state == Frame::State::Ready)
        m_shape = QSizeF(frame->fullSize.width() * frame->pixelAspect, frame->fullSize.height());
    setAccessibleDescription(frame ? frame->message : m_hint);
    update();
}

void ViewerCanvas::setHint(const QString& hint) {
    m_hint = hint;
    update();
}

void ViewerCanvas::setFast(bool fast) {
    if (fast == m_fast)
        return;
    m_fast = fast;
    update();
}

QSize ViewerCanvas::sizeHint() const {
    return {960, 540};
}

void ViewerCanvas::leaveEvent(QEvent*) {
    emit pointed({-1, -1});
}

void ViewerCanvas::mouseMoveEvent(QMouseEvent* event) {
    QWidget::mouseMoveEvent(event);
    emit pointed(pixelUnder(mapToGlobal(event->pos())));
}

QPoint ViewerCanvas::pixelUnder(const QPoint& global) const {
    if (!m_frame)
        return {-1, -1};
    return pixelAt(mapFromGlobal(global), pictureRect(), m_frame->image.size());
}

QRectF ViewerCanvas::pictureRect() const {
    return fittedRect(m_shape, rect());
}

void ViewerCanvas::paintEvent(QPaintEvent*) {
    UI::EventAdder activity(m_paintTrack, {}, true);
    const auto start = std::chrono::steady_clock::now();
    QPainter painter(this);
    paintFrame(painter);
    const std::chrono::duration<double> spent = std::chrono::steady_clock::now() - start;
    if (m_frame)
        activity.setUserData(new FrameNote(m_frame->time, spent.count()));
}

void ViewerCanvas::paintFrame(QPainter& painter) {
    painter.fillRect(rect(), UI::ApplicationStyle::accentsOf(palette()).surround);
    if (!m_frame) {
        painter.setPen(QColor(0xa8, 0xa8, 0xa8));
        painter.drawText(rect().adjusted(24, 24, -24, -24), Qt::AlignCenter | Qt::TextWordWrap,
                         m_hint);
        return;
    }
    switch (m_frame->state) {
    case Frame::State::Ready:
        paintPicture(painter);
        break;
    case Frame::State::Missing:
        paintCard(painter, tr("Frame %1 is missing").arg(m_frame->time), m_frame->message);
        break;
    case Frame::State::Unreadable:
        paintCard(painter, tr("Frame %1 cannot be shown").arg(m_frame->time), m_frame->message);
        break;
    }
}

void ViewerCanvas::paintPicture(QPainter& painter) {
    const QRectF target = pictureRect();
    const qreal ratio = devicePixelRatioF();
    const QSize device(int(std::lround(target.width() * ratio)),
                       int(std::lround(target.height() * ratio)));
    if (device.isEmpty())
        return;
    const bool enlarged = device.width() >= 3 * m_frame->image.width();
    if (m_fast || enlarged) {
        painter.setRenderHint(QPainter::SmoothPixmapTransform, !enlarged);
        painter.drawImage(target, m_frame->image);
        return;
    }
    if (m_scaledFrame != m_frame || m_scaled.size() != device) {
        m_scaled = m_frame->image.scaled(device, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
        m_scaledFrame = m_frame;
    }
    m_scaled.setDevicePixelRatio(ratio);
    // On whole device pixels: otherwise the painter would resample it once more.
    const QPointF corner(std::round(target.x() * ratio) / ratio,
                         std::round(target.y() * ratio) / ratio);
    painter.drawImage(corner, m_scaled);
}

void ViewerCanvas::paintCard(QPainter& painter, const QString& title,
                             const QString& message) const {
    const QRectF card = pictureRect();
    painter.fillRect(card, QColor(0x30, 0x30, 0x30));
    painter.fillRect(card, QBrush(QColor(0x3c, 0x3c, 0x3c), Qt::BDiagPattern));

    QFont titleFont = font();
    titleFont.setPointSizeF(titleFont.pointSizeF() * 1.5);
    titleFont.setBold(true);
    constexpr double padding = 18.0;
    const QRectF inner = card.adjusted(padding, padding, -padding, -padding);
    const int flags = Qt::AlignHCenter | Qt::AlignTop | Qt::TextWordWrap;
    const QRectF titleBox = QFontMetricsF(titleFont).boundingRect(inner, flags, title);
    const QRectF messageBox = QFontMetricsF(font()).boundingRect(inner, flags, message);
    constexpr double gap = 6.0;
    QRectF text(0, 0, std::max(titleBox.width(), messageBox.width()) + 2 * padding,
                titleBox.height() + gap + messageBox.height() + 2 * padding);
    text.moveCenter(card.center());

    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(QColor(0x1c, 0x1c, 0x1c, 230));
    painter.drawRoundedRect(text, 4, 4);
    const QRectF lines = text.adjusted(padding, padding, -padding, -padding);
    painter.setFont(titleFont);
    painter.setPen(QColor(0xe0, 0x9a, 0x52));
    painter.drawText(lines, flags, title);
    painter.setFont(font());
    painter.setPen(QColor(0xd2, 0xd2, 0xd2));
    painter.drawText(lines.adjusted(0, titleBox.height() + gap, 0, 0), flags, message);
}

} // namespace Kestrel::Workbench
