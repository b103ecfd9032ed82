#pragma once

namespace Kestrel::UI {

/** Adds up what a wheel or a trackpad turns to whole notches. */
class WheelNotches {
public:
    /** Takes eighths of a degree and returns how many notches they complete. */
    int add(int delta) {
        m_rest += delta;
        const int notches = m_rest / Notch;
        m_rest -= notches * Notch;
        return notches;
    }

    /** Forgets what is short of a notch. */
    void drop() { m_rest = 0; }

private:
    static constexpr int Notch = 120;
    int m_rest = 0;
};

} // namespace Kestrel::UI
