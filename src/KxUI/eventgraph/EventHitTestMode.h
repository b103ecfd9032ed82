#pragma once

#include <QMetaType>

namespace Kestrel::UI {

/** Which event a point on a timeline stands for. */
enum class EventHitTestMode : int {
    /** Only an event that lies under the point. */
    DirectHitOnly = 0,
    /** Else the next activity of the track that ends at or after the point. */
    AllowNext = 1
};

} // namespace Kestrel::UI

Q_DECLARE_METATYPE(Kestrel::UI::EventHitTestMode)
