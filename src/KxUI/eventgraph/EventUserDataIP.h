#pragma once

#include <KxUI/eventgraph/IEventUserData.h>

#include <utility>

namespace Kestrel::UI {

/** Owns one reference to user data, or is null. As cheap as a pointer when null. */
class EventUserDataIP {
public:
    /** Null. */
    EventUserDataIP() noexcept = default;

    /** Adds a reference to `data`, which may be null. Implicit, so that `new EventUserDataInt(1)`
        can be handed to a recorder. */
    EventUserDataIP(IEventUserData* data) noexcept
        : m_data(data) {
        if (m_data)
            m_data->addRef();
    }

    /** Shares the object. */
    EventUserDataIP(const EventUserDataIP& other) noexcept
        : EventUserDataIP(other.m_data) {}

    /** Takes the reference of `other`, which is null afterwards. */
    EventUserDataIP(EventUserDataIP&& other) noexcept
        : m_data(std::exchange(other.m_data, nullptr)) {}

    ~EventUserDataIP() {
        if (m_data)
            m_data->release();
    }

    /** Releases the old object and refers to `data`. The new reference is taken before the old
        object can die, since that may have been what kept `data` alive. */
    EventUserDataIP& operator=(IEventUserData* data) noexcept {
        EventUserDataIP(data).swap(*this);
        return *this;
    }

    /** The same, for the object of `other`. */
    EventUserDataIP& operator=(const EventUserDataIP& other) noexcept {
        return *this = other.m_data;
    }

    /** Takes the reference of `other`, which is null afterwards, and releases the old object. */
    EventUserDataIP& operator=(EventUserDataIP&& other) noexcept {
        EventUserDataIP(std::move(other)).swap(*this);
        return *this;
    }

    /** Exchanges the references, without touching the counts. */
    void swap(EventUserDataIP& other) noexcept { std::swap(m_data, other.m_data); }

    /** The object itself, without touching the count; null without one, which only get() allows. */
    IEventUserData* get() const noexcept { return m_data; }
    IEventUserData* operator->() const noexcept { return m_data; }
    IEventUserData& operator*() const noexcept { return *m_data; }
    /** Whether there is an object. */
    explicit operator bool() const noexcept { return m_data != nullptr; }

private:
    IEventUserData* m_data = nullptr;
};

} // namespace Kestrel::UI
