#pragma once

#include "media/Frame.h"

#include <KxUI/eventgraph/EventTrack.h>

#include <QWidget>

namespace Kestrel::Workbench {

/** Paints one frame, fitted, at the full resolution of the screen; a frame without a picture as a
    hatched card with the reason. */
class ViewerCanvas : public QWidget {
    Q_OBJECT

public:
    explicit ViewerCanvas(QWidget* parent = nullptr);

    /** The frame to show; null shows `hint` alone. */
    void setFrame(const FramePtr& frame);

    /** What is written where there is no frame. */
    void setHint(const QString& hint);

    /** Prefers speed to the finest scaling, for playback. */
    void setFast(bool fast);

    /** A track of the profiler for the repaints, or null; borrowed, and outlives the canvas. */
    void setPaintTrack(UI::EventTrack* track) { m_paintTrack = track; }

    /** The pixel of the frame's picture under a place of the desktop; (-1, -1) for none. */
    QPoint pixelUnder(const QPoint& global) const;

    /** Where the picture lies, or would. */
    QRectF pictureRect() const;

    QSize sizeHint() const override;

signals:
    /** The pointer is over that pixel of the frame's picture now; at (-1, -1) over none. */
    void pointed(const QPoint& pixel);

protected:
    void leaveEvent(QEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    void paintFrame(QPainter& painter);
    void paintPicture(QPainter& painter);
    void paintCard(QPainter& painter, const QString& title, const QString& message) const;

    UI::EventTrack* m_paintTrack = nullptr;
    FramePtr m_frame;
    QString m_hint;
    bool m_fast = false;
    /** Shape of the last picture: the card of a missing frame stands where its picture would. */
    QSizeF m_shape{16, 9};
    /** The frame's picture at the screen's resolution, kept while it is shown unchanged. */
    QImage m_scaled;
    FramePtr m_scaledFrame;
};

} // namespace Kestrel::Workbench
