#include <KxUI/values/platform/PointerWarp_p.h>

#include <QCursor>

namespace Kestrel::UI {
namespace {

bool warpByQt(const QPoint& to) {
    QCursor::setPos(to);
    // A pixel or two are lost where logical pixels are not those of the device.
    return (QCursor::pos() - to).manhattanLength() <= 4;
}

} // namespace

bool (*warpPointer)(const QPoint& to) = warpByQt;

} // namespace Kestrel::UI
