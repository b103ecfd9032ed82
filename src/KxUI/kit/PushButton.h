#pragma once

#include <KxUI/Export.h>

#include <QPushButton>

#include <memory>

namespace Kestrel::UI {

class PushButtonPrivate;

/** A push button that says what it is for, and that it is at work: then a ring runs in it and the
    user cannot click it, but it keeps its size and the keyboard focus. Interface thread. */
class KXUI_EXPORT PushButton : public QPushButton {
    Q_OBJECT
    Q_PROPERTY(bool busy READ isBusy WRITE setBusy NOTIFY busyChanged)
    Q_PROPERTY(Role role READ role WRITE setRole NOTIFY roleChanged)

public:
    /** What a click means. */
    enum Role {
        NormalRole,  ///< one of several things to do
        DefaultRole, ///< what most users want; a dialog's default button, in the highlight's colour
        DangerRole   ///< something is lost; in a warning red, and no dialog's default button
    };
    Q_ENUM(Role)

    /** A button without text. */
    explicit PushButton(QWidget* parent = nullptr);
    explicit PushButton(const QString& text, QWidget* parent = nullptr);
    ~PushButton() override;

    /** Whether what was clicked for goes on. Neither mouse nor keys nor assistive technology click
        a busy button; QAbstractButton::click() in code still does. */
    bool isBusy() const;
    void setBusy(bool busy);

    /** `NormalRole` at first. Sets QPushButton::default, and autoDefault for `DangerRole`. */
    Role role() const;
    void setRole(Role role);

Q_SIGNALS:
    /** The button is at work, or no longer. */
    void busyChanged(bool busy);
    /** It means something else. */
    void roleChanged(Kestrel::UI::PushButton::Role role);

protected:
    bool event(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void timerEvent(QTimerEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;

private:
    friend class PushButtonPrivate;

    const std::unique_ptr<PushButtonPrivate> d;
};

} // namespace Kestrel::UI
