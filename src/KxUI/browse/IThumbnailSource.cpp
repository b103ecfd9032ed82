#include <KxUI/browse/IThumbnailSource.h>

namespace Kestrel::UI {

IThumbnailSource::~IThumbnailSource() = default;

} // namespace Kestrel::UI
