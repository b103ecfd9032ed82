#pragma once

#include <KxUI/Export.h>

#include <QColor>
#include <QPalette>
#include <QProxyStyle>

#include <memory>

namespace Kestrel::UI {

class ApplicationStylePrivate;

/** The look of the library: flat, neutral, and in whatever palette it is given. What it does not
    draw itself is drawn by Qt's Fusion, in the same palette.

    Neutral means that greys are greys: beside a picture nothing is tinted. The palette's highlight
    shows where the focus is, what is selected and what is checked, and nowhere else. Style sheets
    of a host go on working on top of it.

    Shapes are drawn once, kept as small textures for all widgets, and copied; texts without
    mnemonics are laid out once. Another palette is seen at the next paint, widget by widget.

    Interface thread. */
class KXUI_EXPORT ApplicationStyle : public QProxyStyle {
    Q_OBJECT
    Q_PROPERTY(int animationDuration READ animationDuration WRITE setAnimationDuration NOTIFY
                   animationDurationChanged)

public:
    /** A set of colours. */
    enum Theme {
        Dark,         ///< light text on dark greys, for dim rooms
        Light,        ///< dark text on light greys
        HighContrast, ///< white and yellow on black, every control outlined
        FromPalette   ///< the palette that the application has
    };
    Q_ENUM(Theme)

    /** Colours of meanings that no palette has a role for, readable on the palette's window. */
    struct Accents {
        QColor playhead; ///< the current time
        QColor mark;     ///< in and out
        QColor keyFrame; ///< where something is set
        QColor cached;   ///< frames in memory
        QColor missing;  ///< frames that are not there
        QColor surround; ///< what lies around a picture
        QColor warning;  ///< text about what may be wrong
        QColor danger;   ///< text about what is lost or wrong
        QColor focus;    ///< around what has the focus
    };

    /** What the textures did so far, and the memory that they take. */
    struct CacheStatistics {
        qint64 hits = 0;   ///< times that one was there
        qint64 misses = 0; ///< times that one had to be drawn
        qint64 bytes = 0;  ///< memory of those that are kept
    };

    /** For QApplication::setStyle(), which takes it; or for a single widget. */
    ApplicationStyle();
    ~ApplicationStyle() override;

    /** Gives the running application this style and the theme's palette, also for tool tips. With
        the style already in use only the palette changes, which costs a repaint: windows, menus
        that are open included, need no word. Needs an application object. */
    static void install(Theme theme);

    /** The theme's palette. With FromPalette the application's. */
    static QPalette palette(Theme theme);

    /** The colours of meanings that go with a palette. */
    static Accents accentsOf(const QPalette& palette);

    /** Of all objects of this class together; zeros where there is none. */
    static CacheStatistics cacheStatistics();

    /** How many bytes of textures are kept; 8 MB at first. Below 0 is 0: only the texture being
        drawn. */
    static void setCacheLimit(qint64 bytes);

    /** How long Qt's own widgets move when something opens or scrolls, in milliseconds; 0 at first,
        so that nothing moves. Below 0 is 0. */
    int animationDuration() const;
    void setAnimationDuration(int milliseconds);

    using QProxyStyle::polish;
    using QProxyStyle::unpolish;

    /** What QStyle asks of a style; for widgets to call. What it does not draw is Fusion's. */
    void drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                       const QWidget* widget = nullptr) const override;
    void drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                     const QWidget* widget = nullptr) const override;
    void drawComplexControl(ComplexControl control, const QStyleOptionComplex* option,
                            QPainter* painter, const QWidget* widget = nullptr) const override;
    void drawItemText(QPainter* painter, const QRect& rect, int flags, const QPalette& palette,
                      bool enabled, const QString& text,
                      QPalette::ColorRole textRole = QPalette::NoRole) const override;
    int pixelMetric(PixelMetric metric, const QStyleOption* option = nullptr,
                    const QWidget* widget = nullptr) const override;
    int styleHint(StyleHint hint, const QStyleOption* option = nullptr,
                  const QWidget* widget = nullptr,
                  QStyleHintReturn* returnData = nullptr) const override;
    QRect subControlRect(ComplexControl control, const QStyleOptionComplex* option,
                         SubControl subControl, const QWidget* widget = nullptr) const override;
    QRect subElementRect(SubElement element, const QStyleOption* option,
                         const QWidget* widget = nullptr) const override;
    QSize sizeFromContents(ContentsType type, const QStyleOption* option, const QSize& contents,
                           const QWidget* widget = nullptr) const override;
    QIcon standardIcon(StandardPixmap which, const QStyleOption* option = nullptr,
                       const QWidget* widget = nullptr) const override;
    QPalette standardPalette() const override;
    void polish(QWidget* widget) override;
    void polish(QPalette& palette) override;
    void polish(QApplication* application) override;
    void unpolish(QWidget* widget) override;
    void unpolish(QApplication* application) override;

Q_SIGNALS:
    /** animationDuration() is another one now. */
    void animationDurationChanged(int milliseconds);

private:
    const std::unique_ptr<ApplicationStylePrivate> d;
};

} // namespace Kestrel::UI
