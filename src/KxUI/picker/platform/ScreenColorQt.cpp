#include <KxUI/picker/platform/ScreenColor_p.h>

#include <KxUI/picker/platform/ScreenPortal_p.h>

#include <QGuiApplication>
#include <QPainter>
#include <QPixmap>
#include <QScreen>

namespace Kestrel::UI {
namespace {

/** By Qt's own means, where the desktop lets them work. */
class QtScreenColor : public ScreenColor {
public:
    bool canGrab() const override {
        const QString platform = QGuiApplication::platformName();
        // An X server that is a guest of another desktop shows black instead of its host's windows.
        const bool isGuest = qEnvironmentVariableIsSet("WAYLAND_DISPLAY") ||
                             qEnvironmentVariable("XDG_SESSION_TYPE") == QLatin1String("wayland");
        return platform == QLatin1String("windows") ||
               (platform == QLatin1String("xcb") && !isGuest);
    }

    QImage grab(const QRect& area) const override {
        QScreen* const screen = QGuiApplication::screenAt(area.center());
        if (!screen || !canGrab())
            return {};
        const QRect seen = area & screen->geometry();
        const QRect place = seen.translated(-screen->geometry().topLeft());
        const QPixmap grabbed =
            screen->grabWindow(0, place.x(), place.y(), place.width(), place.height());
        if (seen == area || grabbed.isNull())
            return grabbed.toImage();
        const double ratio = grabbed.devicePixelRatioF();
        QImage whole(area.size() * ratio, QImage::Format_ARGB32_Premultiplied);
        whole.setDevicePixelRatio(ratio);
        whole.fill(Qt::transparent);
        QPainter(&whole).drawPixmap(seen.topLeft() - area.topLeft(), grabbed);
        return whole;
    }

    bool canAsk() const override {
        const bool hasDesktop = QGuiApplication::platformName() != QLatin1String("offscreen") &&
                                QGuiApplication::platformName() != QLatin1String("minimal");
        return hasDesktop && hasScreenPortal();
    }

    void ask(QObject* context, const Told& told) override { askScreenPortal(context, told); }
};

ScreenColor* replaced = nullptr;

} // namespace

ScreenColor::~ScreenColor() = default;

ScreenColor& ScreenColor::current() {
    static QtScreenColor real;
    return replaced ? *replaced : real;
}

void ScreenColor::replace(ScreenColor* other) {
    replaced = other;
}

} // namespace Kestrel::UI
