#pragma once

#include <KxUI/Export.h>

#include <QString>

#include <atomic>

namespace Kestrel::UI {

/** What an event carries besides its time: something that can be shown as text.

    Counts its references itself, starting at 0; EventUserDataIP does the counting. The count is
    atomic, so that an object may be made on one thread and released on another. `text()` is called
    only when the event is shown, searched or saved, on the thread that does so. */
class KXUI_EXPORT IEventUserData {
public:
    /** The text shown in pop-ups and saved in files. */
    virtual QString text() const = 0;

    virtual ~IEventUserData();

    IEventUserData(const IEventUserData&) = delete;
    IEventUserData& operator=(const IEventUserData&) = delete;

    /** Adds a reference. Any thread. */
    void addRef() noexcept { m_references.fetch_add(1, std::memory_order_relaxed); }

    /** Drops a reference; the last one deletes the object. Any thread. */
    void release() noexcept {
        if (m_references.fetch_sub(1, std::memory_order_acq_rel) == 1)
            destroy();
    }

protected:
    IEventUserData() = default;

private:
    void destroy() noexcept;

    std::atomic<qint32> m_references{0};
};

} // namespace Kestrel::UI
