#include <KxUI/values/TinySlider.h>

#include <KxUI/kit/ColorContrast_p.h>
#include <KxUI/values/LinearSliderLook_p.h>
#include <KxUI/values/TinySliderBar_p.h>

#include <QPainter>

#include <cmath>

namespace Kestrel::UI {
namespace {

constexpr int NominalLength = 60;
constexpr int SmallestLength = 24;
constexpr int Thickness = 10;

class TinySliderLook final : public LinearSliderPrivate {
public:
    QSize hint(bool smallest) const override {
        const QSize size(smallest ? SmallestLength : NominalLength, Thickness);
        return isHorizontal() ? size : size.transposed();
    }

    void paint(QPainter& painter, const QRect&) override {
        const SliderGeometry& parts = geometry();
        TinySliderBar bar;
        bar.area = parts.slider;
        bar.orientation = orientation;
        const double low = parts.scale.length >= 0.0 ? TinySliderBar::Inset
                                                     : alongOf(parts.slider) - TinySliderBar::Inset;
        bar.to = parts.scale.pixelOf(value);
        bar.from = !std::isnan(centre) ? parts.scale.pixelOf(centre)
                   : value > minimum   ? low
                                       : bar.to;
        bar.beyond = side() == 0 ? 0 : (side() > 0) == isForward() ? 1 : -1;
        bar.isActive = isDragged() || isHovered();
        bar.hasFocus = q->hasFocus();
        bar.paint(painter, q->palette(), m_pointer);
    }

protected:
    double alongOf(const QRectF& area) const {
        return isHorizontal() ? area.width() : area.height();
    }

    SliderGeometry plan() const override {
        SliderRoom room;
        room.size = q->size();
        room.orientation = orientation;
        room.forward = isForward();
        room.handleAlong = TinySliderBar::PointerSize;
        room.endAlong = TinySliderBar::PointerSize / 2.0 + 1.0; // the frame of the focus
        room.thickness = Thickness;
        return SliderGeometry::of({minimum, maximum, exponent, grid}, room);
    }

    QRectF handleArea(double shown) override {
        return LinearSliderPrivate::handleArea(shown).adjusted(-2.0, -2.0, 2.0, 2.0);
    }

private:
    TinySliderPointer m_pointer;
};

} // namespace

TinySlider::TinySlider(QWidget* parent)
    : LinearSlider(std::make_unique<TinySliderLook>(), parent) {}

TinySlider::~TinySlider() = default;

} // namespace Kestrel::UI
