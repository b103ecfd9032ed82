#pragma once

#include <KxUI/values/LinearSlider_p.h>

#include <QStyleOptionSlider>

namespace Kestrel::UI {

/** The look of a LinearSlider: groove and handle are the style's, ticks and labels its own. */
class LinearSliderLook final : public LinearSliderPrivate {
public:
    void paint(QPainter& painter, const QRect& exposed) override;
    QSize hint(bool smallest) const override;

protected:
    SliderGeometry plan() const override;

private:
    SliderRoom room(const QSize& size) const;
    /** With a position for each logical pixel that the handle can stand at. */
    QStyleOptionSlider option(const QRect& area, int length) const;
    void paintSlider(QPainter& painter, const QSize& size);
    void paintGroove(QPainter& painter, QStyleOptionSlider& groove);
    void paintHandle(QPainter& painter, const QStyleOptionSlider& handle, double rest);
    void paintSide(QPainter& painter);
    void paintTicks(QPainter& painter, const QRect& exposed);
};

/** A small triangle that says that a value lies beyond an end: in the middle of `area`, its tip
    where `towards` points, 1 or -1 along x, or along y if vertical. */
void paintBeyond(QPainter& painter, const QRectF& area, Qt::Orientation orientation, double towards,
                 const QPalette& palette);

} // namespace Kestrel::UI
