#pragma once

#include <QImage>
#include <QRect>

#include <array>
#include <functional>
#include <optional>

class QObject;

namespace Kestrel::UI {

/** The colours on the screen, as far as the desktop lets a program see them. Interface thread. */
class ScreenColor {
public:
    using Rgb = std::array<float, 3>;
    /** Null where the user gave it up. */
    using Told = std::function<void(const std::optional<Rgb>&)>;

    virtual ~ScreenColor();

    /** Whether a program sees the windows of other ones. */
    virtual bool canGrab() const = 0;
    /** What an area of the desktop shows; null where it can not be seen. Nothing of it that lies
        beside the screen its centre is on. */
    virtual QImage grab(const QRect& area) const = 0;

    /** Whether the desktop has a pipette of its own. */
    virtual bool canAsk() const = 0;
    /** Lets the user take a colour with it. `told` is called later, unless `context` is gone. */
    virtual void ask(QObject* context, const Told& told) = 0;

    static ScreenColor& current();
    /** Puts another one, which is borrowed, in its place, null the real one. For tests. */
    static void replace(ScreenColor* other);
};

} // namespace Kestrel::UI
