#pragma once

#include <QObject>

#include <functional>

namespace Kestrel::UI {

/** Hears Escape while a drag runs, wherever the keyboard focus is: the press that began the drag
    need not have taken it. The key goes nowhere else, neither to a dialog nor to a shortcut. */
class EscapeWatch : public QObject {
public:
    /** `escaped` may delete the watch. */
    explicit EscapeWatch(std::function<void()> escaped);

    void setActive(bool active);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    std::function<void()> m_escaped;
    bool m_active = false;
};

} // namespace Kestrel::UI
