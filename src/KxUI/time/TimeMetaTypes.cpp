#include <KxUI/time/TimeMetaTypes_p.h>

#include <KxUI/base/Time.h>
#include <KxUI/time/TimeFormatter.h>

namespace Kestrel::UI {

void registerTimeMetaTypes() {
    static const bool registered = [] {
        qRegisterMetaType<Kestrel::Base::TimeBase>("Kestrel::Base::TimeBase");
        qRegisterMetaType<Kestrel::Base::Time>("Kestrel::Base::Time");
        qRegisterMetaType<Kestrel::Base::Time>("Kestrel::Base::Time&");
        qRegisterMetaType<const Kestrel::Base::Time*>("const Kestrel::Base::Time*");
        return true;
    }();
    Q_UNUSED(registered)
}

} // namespace Kestrel::UI
