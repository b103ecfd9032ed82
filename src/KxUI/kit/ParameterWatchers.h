#pragma once

#include <KxUI/Export.h>
#include <KxUI/kit/IParameter.h>

#include <functional>
#include <memory>

namespace Kestrel::UI {

/** Who watches a parameter; for those who implement IParameter. Interface thread. */
class KXUI_EXPORT ParameterWatchers {
public:
    ParameterWatchers();
    ~ParameterWatchers();
    ParameterWatchers(const ParameterWatchers&) = delete;
    ParameterWatchers& operator=(const ParameterWatchers&) = delete;

    /** What IParameter::watch() returns. It may outlive this object. */
    std::unique_ptr<ParameterWatch> add(std::function<void()> changed);

    /** Calls everyone who watches, in the order in which they came. A call may end any watch, which
        is not called then, and destroy this object, which ends the calls. Those who come meanwhile
        are not called. */
    void tell();

private:
    struct List;
    class Watch;
    const std::shared_ptr<List> m_list;
};

} // namespace Kestrel::UI
