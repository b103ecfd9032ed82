#pragma once

#include <KxUI/picker/TrackBallGeometry_p.h>

#include <QColor>
#include <QImage>
#include <QPalette>

class QPainter;

namespace Kestrel::UI {

/** The colours of a track ball, from a palette. */
struct TrackBallColors {
    QColor window;
    QColor text;
    QColor mark; ///< what the ring is filled with, and the frame of the focus

    static TrackBallColors of(const QPalette& palette);

    /** Whether texts are lighter than what they stand on. */
    bool isDark() const;
};

bool operator==(const TrackBallColors& a, const TrackBallColors& b);

/** All that does not move: the ball with its colours and the ring's groove. */
QImage drawTrackBall(const TrackBallGeometry& geometry, double rotation, const QSize& size,
                     double deviceRatio, const TrackBallColors& colors);

/** The colour that a balance leans to, as its marker is filled. */
QColor trackBallTint(const QPointF& balance, double rotation, const TrackBallColors& colors);

/** Draws the picture, and anew only where what it shows has changed. */
class TrackBallPictures {
public:
    const QImage& ball(const TrackBallGeometry& geometry, double rotation, const QSize& size,
                       double deviceRatio, const TrackBallColors& colors);

private:
    TrackBallGeometry m_geometry;
    double m_rotation = 0.0;
    QSize m_size;
    double m_ratio = 0.0;
    TrackBallColors m_colors;
    QImage m_ball;
};

} // namespace Kestrel::UI
