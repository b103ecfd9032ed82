#pragma once

#include <QTimer>

#include <functional>

namespace Kestrel::UI {

/** The rest after which a run of wheel notches is over. Tests let it pass by hand. */
class EditRest {
public:
    static constexpr int Milliseconds = 500;

    /** `over` may delete this object. */
    explicit EditRest(std::function<void()> over);
    ~EditRest();
    EditRest(const EditRest&) = delete;
    EditRest& operator=(const EditRest&) = delete;

    /** Begins anew. */
    void start();
    void stop();

    /** From now on no rest of this process passes by itself. For tests. */
    static void stopTheClock();
    /** Lets every rest that has begun pass at once. For tests. */
    static void pass();

private:
    void end();

    std::function<void()> m_over;
    QTimer m_timer;
};

} // namespace Kestrel::UI
