#include <KxUI/style/ApplicationStyle.h>

#include <KxUI/kit/IconFactory.h>
#include <KxUI/style/ApplicationStyle_p.h>
#include <KxUI/style/StyleMetrics_p.h>

#include <QApplication>
#include <QGuiApplication>
#include <QPainter>
#include <QPointer>
#include <QProgressBar>
#include <QScreen>
#include <QScrollBar>
#include <QStyleFactory>
#include <QToolTip>
#include <QWidget>

#include <algorithm>
#include <unordered_set>

namespace Kestrel::UI {
namespace {

std::int64_t& cacheLimit() {
    static std::int64_t limit = BrushTextures::StandardLimit;
    return limit;
}

std::weak_ptr<StyleCaches>& livingCaches() {
    static std::weak_ptr<StyleCaches> caches;
    return caches;
}

// Pixmaps must not outlive the application, so the caches go with the last style.
std::shared_ptr<StyleCaches> sharedCaches() {
    std::shared_ptr<StyleCaches> caches = livingCaches().lock();
    if (!caches) {
        caches = std::make_shared<StyleCaches>();
        caches->textures.setLimit(cacheLimit());
        livingCaches() = caches;
    }
    return caches;
}

// The style of the application, which may lie below a style sheet.
QPointer<ApplicationStyle>& installedStyle() {
    static QPointer<ApplicationStyle> style;
    return style;
}

double dotsPerInch(const QStyleOption* option, const QWidget* widget) {
    if (option)
        return option->fontMetrics.fontDpi();
    if (widget)
        return widget->logicalDpiX();
    const QScreen* screen = QGuiApplication::primaryScreen();
    return screen ? screen->logicalDotsPerInchX() : 96;
}

/** Holds back the updates of all widgets and updates each window once instead. When the palette
    changes, Qt updates every widget for itself; and a window that is updated along with widgets on
    it is painted twice. */
class OneUpdateEach {
public:
    OneUpdateEach() {
        const QWidgetList widgets = QApplication::allWidgets();
        for (QWidget* widget : widgets) {
            if (widget->updatesEnabled())
                widget->setAttribute(Qt::WA_UpdatesDisabled);
            else
                m_held.insert(widget); // by the host
        }
    }
    ~OneUpdateEach() {
        const QWidgetList widgets = QApplication::allWidgets();
        for (QWidget* widget : widgets) {
            if (!widget->updatesEnabled() && m_held.count(widget) == 0)
                widget->setAttribute(Qt::WA_UpdatesDisabled, false);
        }
        for (QWidget* widget : widgets) {
            if (widget->isVisible() && (widget->isWindow() || paintsForItself(widget)))
                widget->update();
        }
    }
    OneUpdateEach(const OneUpdateEach&) = delete;
    OneUpdateEach& operator=(const OneUpdateEach&) = delete;

private:
    // Not painted along with its window; Qt leaves out what is opaque, as the parts of panels that
    // scroll.
    static bool paintsForItself(const QWidget* widget) {
        return widget->autoFillBackground() || widget->testAttribute(Qt::WA_OpaquePaintEvent) ||
               widget->testAttribute(Qt::WA_NativeWindow) || widget->inherits("QOpenGLWidget") ||
               widget->inherits("QQuickWidget");
    }

    std::unordered_set<const QWidget*> m_held;
};

} // namespace

std::shared_ptr<StyleCaches> livingStyleCaches() {
    return livingCaches().lock();
}

void StyleCaches::clear() {
    textures.clear();
    shades.clear();
    texts.clear();
}

ApplicationStylePrivate::ApplicationStylePrivate(ApplicationStyle* style)
    : q(style)
    , caches(sharedCaches()) {}

ApplicationStyle::ApplicationStyle()
    : QProxyStyle(QStyleFactory::create(QStringLiteral("Fusion")))
    , d(std::make_unique<ApplicationStylePrivate>(this)) {}

ApplicationStyle::~ApplicationStyle() = default;

void ApplicationStyle::install(Theme theme) {
    const OneUpdateEach hold;
    if (!installedStyle())
        QApplication::setStyle(new ApplicationStyle);
    const QPalette colors = palette(theme);
    if (theme != FromPalette) {
        QApplication::setPalette(colors);
        // Qt 6 tells the widgets later.
        QCoreApplication::sendPostedEvents(nullptr, QEvent::ApplicationPaletteChange);
    }
    QToolTip::setPalette(colors);
}

ApplicationStyle::CacheStatistics ApplicationStyle::cacheStatistics() {
    const std::shared_ptr<StyleCaches> caches = livingCaches().lock();
    if (!caches)
        return {};
    const BrushTextures& textures = caches->textures;
    return {textures.hits(), textures.misses(), textures.bytes()};
}

void ApplicationStyle::setCacheLimit(qint64 bytes) {
    cacheLimit() = std::max<std::int64_t>(bytes, 0);
    if (const std::shared_ptr<StyleCaches> caches = livingCaches().lock())
        caches->textures.setLimit(cacheLimit());
}

int ApplicationStyle::animationDuration() const {
    return d->animationDuration;
}

void ApplicationStyle::setAnimationDuration(int milliseconds) {
    const int duration = std::max(milliseconds, 0);
    if (duration == d->animationDuration)
        return;
    d->animationDuration = duration;
    Q_EMIT animationDurationChanged(duration);
}

void ApplicationStyle::drawPrimitive(PrimitiveElement element, const QStyleOption* option,
                                     QPainter* painter, const QWidget* widget) const {
    if (!option || !painter || !d->drawPrimitive(element, *option, painter, widget))
        QProxyStyle::drawPrimitive(element, option, painter, widget);
}

void ApplicationStyle::drawControl(ControlElement element, const QStyleOption* option,
                                   QPainter* painter, const QWidget* widget) const {
    if (!option || !painter || !d->drawControl(element, *option, painter, widget))
        QProxyStyle::drawControl(element, option, painter, widget);
}

void ApplicationStyle::drawComplexControl(ComplexControl control, const QStyleOptionComplex* option,
                                          QPainter* painter, const QWidget* widget) const {
    if (!option || !painter || !d->drawComplex(control, *option, painter, widget))
        QProxyStyle::drawComplexControl(control, option, painter, widget);
}

void ApplicationStyle::drawItemText(QPainter* painter, const QRect& rect, int flags,
                                    const QPalette& palette, bool enabled, const QString& text,
                                    QPalette::ColorRole textRole) const {
    const QPen before = painter->pen();
    if (textRole != QPalette::NoRole)
        painter->setPen(QPen(palette.brush(textRole), before.widthF()));
    if (!d->caches->texts.draw(painter, rect, flags, text))
        QProxyStyle::drawItemText(painter, rect, flags, palette, enabled, text);
    if (textRole != QPalette::NoRole)
        painter->setPen(before);
}

int ApplicationStyle::pixelMetric(PixelMetric metric, const QStyleOption* option,
                                  const QWidget* widget) const {
    if (const std::optional<int> length = StyleMetrics::lengthOf(metric))
        return *length <= 1 ? *length : StyleMetrics::scaled(*length, dotsPerInch(option, widget));
    return QProxyStyle::pixelMetric(metric, option, widget);
}

int ApplicationStyle::styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                                QStyleHintReturn* returnData) const {
    if (const std::optional<int> habit = StyleMetrics::hintOf(hint, d->animationDuration))
        return *habit;
    return QProxyStyle::styleHint(hint, option, widget, returnData);
}

QRect ApplicationStyle::subControlRect(ComplexControl control, const QStyleOptionComplex* option,
                                       SubControl subControl, const QWidget* widget) const {
    if (option) {
        if (const std::optional<QRect> rect = partRect(control, *option, subControl))
            return *rect;
    }
    return QProxyStyle::subControlRect(control, option, subControl, widget);
}

QRect ApplicationStyle::subElementRect(SubElement element, const QStyleOption* option,
                                       const QWidget* widget) const {
    if (option && element == SE_PushButtonContents)
        return option->rect.adjusted(3, 1, -3, -1);
    if (option && element == SE_LineEditContents) {
        const auto* frame = qstyleoption_cast<const QStyleOptionFrame*>(option);
        const int side = frame && frame->lineWidth > 0 ? StyleMetrics::FieldPadding - 2 : 0;
        const int edge = frame && frame->lineWidth > 0 ? 1 : 0;
        return option->rect.adjusted(side, edge, -side, -edge);
    }
    return QProxyStyle::subElementRect(element, option, widget);
}

QSize ApplicationStyle::sizeFromContents(ContentsType type, const QStyleOption* option,
                                         const QSize& contents, const QWidget* widget) const {
    if (option) {
        if (const std::optional<QSize> size = sizeAround(type, *option, contents))
            return *size;
    }
    return QProxyStyle::sizeFromContents(type, option, contents, widget);
}

QIcon ApplicationStyle::standardIcon(StandardPixmap which, const QStyleOption* option,
                                     const QWidget* widget) const {
    // Those of Fusion follow neither the palette nor the scale.
    if (which == SP_TitleBarCloseButton)
        return IconFactory::icon(QStringLiteral("PaneClose"));
    if (which == SP_TitleBarNormalButton)
        return IconFactory::icon(QStringLiteral("PaneFloat"));
    return QProxyStyle::standardIcon(which, option, widget);
}

QPalette ApplicationStyle::standardPalette() const {
    return palette(Dark);
}

void ApplicationStyle::polish(QWidget* widget) {
    QProxyStyle::polish(widget);
    if (qobject_cast<QProgressBar*>(widget))
        widget->setAttribute(Qt::WA_Hover, false); // it looks the same
    else if (qobject_cast<QScrollBar*>(widget))
        widget->setAttribute(Qt::WA_OpaquePaintEvent); // nothing behind it needs to be drawn
}

void ApplicationStyle::polish(QPalette& palette) {
    // Called before the application takes a palette, which stays as the host made it. What was
    // drawn in the old colours is of no more use.
    Q_UNUSED(palette)
    d->caches->clear();
}

void ApplicationStyle::polish(QApplication* application) {
    installedStyle() = this;
    QProxyStyle::polish(application);
}

void ApplicationStyle::unpolish(QWidget* widget) {
    QProxyStyle::unpolish(widget);
}

void ApplicationStyle::unpolish(QApplication* application) {
    QProxyStyle::unpolish(application);
    if (installedStyle() == this)
        installedStyle() = nullptr;
}

} // namespace Kestrel::UI
