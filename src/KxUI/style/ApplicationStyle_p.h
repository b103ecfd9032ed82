#pragma once

#include <KxUI/style/ApplicationStyle.h>
#include <KxUI/style/BrushTextures_p.h>
#include <KxUI/style/Shades_p.h>
#include <KxUI/style/TextRuns_p.h>

#include <QStyleOption>

#include <memory>
#include <optional>

namespace Kestrel::UI {

/** What all styles of a process share. */
struct StyleCaches {
    BrushTextures textures;
    ShadesTable shades;
    TextRuns texts;

    void clear();
};

/** Draws one control: elements in the colours of an option's palette, in pixels of the device. As
    long as it lives, nothing else may be drawn with the painter. */
class StyleCanvas {
public:
    StyleCanvas(QPainter* painter, StyleCaches& caches, const QStyleOption& option);

    const Shades& shades() const { return m_shades; }
    double ratio() const { return m_space.ratio(); }

    void bevel(StyleElement element, const QRectF& area, unsigned state = StateEnabled,
               unsigned edges = 0);
    void mark(StyleMark mark, const QRectF& area, QRgb color);
    /** A mark of that side in the middle of `area`. */
    void mark(StyleMark mark, const QRectF& area, int side, QRgb color);
    void fill(const QRectF& area, QRgb color);
    /** A line of one pixel of the device within `area`, along one of its sides. */
    void line(StyleEdge side, const QRectF& area, QRgb color);

private:
    StyleCaches& m_caches;
    const Shades& m_shades;
    const PixelSpace m_space;
};

/** The drawing of ApplicationStyle. The draw functions return whether the control is one that the
    style draws itself. */
class ApplicationStylePrivate {
public:
    explicit ApplicationStylePrivate(ApplicationStyle* style);

    using Primitive = QStyle::PrimitiveElement;
    using Control = QStyle::ControlElement;
    using Complex = QStyle::ComplexControl;
    using Part = QStyle::SubControl;

    bool drawPrimitive(Primitive element, const QStyleOption& option, QPainter* painter,
                       const QWidget* widget);
    bool drawFrame(Primitive element, const QStyleOption& option, QPainter* painter,
                   const QWidget* widget);
    bool drawIndicator(Primitive element, const QStyleOption& option, QPainter* painter);
    bool drawControl(Control element, const QStyleOption& option, QPainter* painter,
                     const QWidget* widget);
    bool drawBar(Control element, const QStyleOption& option, QPainter* painter,
                 const QWidget* widget);
    bool drawComplex(Complex control, const QStyleOptionComplex& option, QPainter* painter,
                     const QWidget* widget);

    StyleCanvas canvas(QPainter* painter, const QStyleOption& option) {
        return {painter, *caches, option};
    }

    ApplicationStyle* const q;
    const std::shared_ptr<StyleCaches> caches;
    int animationDuration = 0;

private:
    void drawButton(StyleElement element, const QStyleOption& option, QPainter* painter);
    void drawLineEdit(const QStyleOptionFrame& option, QPainter* painter, const QWidget* widget);
    void drawCheck(StyleElement element, const QStyleOption& option, QPainter* painter);
    void drawTabBase(const QStyleOptionTabBarBase& option, QPainter* painter);

    void drawPushButton(const QStyleOptionButton& option, QPainter* painter, const QWidget* widget);
    bool drawPushButtonLabel(const QStyleOptionButton& option, QPainter* painter);
    bool drawComboLabel(const QStyleOptionComboBox& option, QPainter* painter,
                        const QWidget* widget);
    void drawTab(const QStyleOptionTab& option, QPainter* painter);
    void drawHeader(const QStyleOptionHeader& option, QPainter* painter);
    bool drawProgress(const QStyleOptionProgressBar& option, QPainter* painter);
    void drawDockTitle(const QStyleOptionDockWidget& option, QPainter* painter,
                       const QWidget* widget);
    void drawMenuItem(const QStyleOptionMenuItem& option, QPainter* painter, const QWidget* widget);
    void drawMenuBarItem(const QStyleOptionMenuItem& option, QPainter* painter,
                         const QWidget* widget);

    void drawComboBox(const QStyleOptionComboBox& option, QPainter* painter, const QWidget* widget);
    void drawSpinBox(const QStyleOptionSpinBox& option, QPainter* painter, const QWidget* widget);
    void drawSlider(const QStyleOptionSlider& option, QPainter* painter, const QWidget* widget);
    void drawScrollBar(const QStyleOptionSlider& option, QPainter* painter, const QWidget* widget);
};

/** The bits of StyleState for an option. */
unsigned stateOf(const QStyleOption& option);

/** Where a combo box, a spin box or a scroll bar has that part; null for other controls. */
std::optional<QRect> partRect(QStyle::ComplexControl control, const QStyleOptionComplex& option,
                              QStyle::SubControl part);

/** How large a control is around its contents; null for what is as large as in the style below. */
std::optional<QSize> sizeAround(QStyle::ContentsType type, const QStyleOption& option,
                                const QSize& contents);

/** The size of a menu's item around its text. */
QSize menuItemSize(const QStyleOptionMenuItem& option, const QSize& contents);

/** The caches of this process; null where no style lives. */
std::shared_ptr<StyleCaches> livingStyleCaches();

} // namespace Kestrel::UI
