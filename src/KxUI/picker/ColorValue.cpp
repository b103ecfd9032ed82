#include "ColorValue.h"

namespace Kestrel::UI {

bool ColorValue::operator==(const ColorValue& other) const noexcept {
    return red == other.red && green == other.green && blue == other.blue && alpha == other.alpha;
}

} // namespace Kestrel::UI
