#pragma once

#include <KxUI/kit/EditBracket_p.h>
#include <KxUI/picker/ColorField.h>
#include <KxUI/picker/ColorPictures_p.h>

#include <QAccessibleWidget>
#include <QBasicTimer>

class QPainter;

namespace Kestrel::UI {

/** Which numbers a colour field has, and where in it they are. */
struct ColorPlane {
    ColorModel::Component pinned = ColorModel::Hue;
    QRectF area; ///< of the colours, in the widget

    ColorModel::Model model() const { return ColorModel::modelOf(pinned); }
    ColorModel::Component across() const;
    ColorModel::Component up() const;
    static ComponentSpan span(ColorModel::Component component);

    /** Where a colour's marker is: at the edge for colours beyond. */
    QPointF pointOf(const ColorTriple& components) const;
    /** The numbers at a point; beyond an edge those of the edge. What is not to change stays. */
    ColorTriple at(const QPointF& point, const ColorTriple& from, bool isAcross, bool isUp) const;
    /** The numbers some hundredths of the plane further, and no further than the edges. */
    ColorTriple stepped(const ColorTriple& from, float across, float up) const;
};

/** The state of a field and the steps that its events consist of. */
class ColorFieldPrivate {
public:
    explicit ColorFieldPrivate(ColorField* field);
    static ColorFieldPrivate& of(const ColorField* field) { return *field->d; }

    ColorPlane plane() const;
    /** Shows a state that is kept elsewhere, as a setter does. */
    void show(const ColorState& newState);
    void setByHost(const ColorState& newState);
    void dragTo(const QMouseEvent& event);
    bool isOwnKey(const QKeyEvent& event) const;
    void pressKey(const QKeyEvent& event);
    void paint(QPainter& painter);
    /** Whether the timer was the field's: it is drawn in full from now on. */
    bool sharpen(int timer);

    ColorField* q;
    ColorState state;
    ColorModel::Component pinned = ColorModel::Hue;
    DisplayCall display;
    EditBracket<ColorField, ColorState> bracket;

private:
    void store(const ColorState& newState);
    GradientGround ground() const;
    bool isOutdated() const;
    const QImage& picture(const QSize& pixels);

    QImage m_picture;
    GradientGround m_ground;
    ColorModel::Component m_pinned = ColorModel::Hue; ///< of the picture
    quint64 m_display = 0;
    QBasicTimer m_rest;
};

/** A field as assistive technology sees it: a colour chooser that tells the two numbers. */
class ColorFieldAccessible final : public QAccessibleWidget {
public:
    explicit ColorFieldAccessible(ColorField* field);

    QString text(QAccessible::Text kind) const override;
};

} // namespace Kestrel::UI
