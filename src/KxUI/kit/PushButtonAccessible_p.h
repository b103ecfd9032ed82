#pragma once

#include <QAccessibleWidget>

namespace Kestrel::UI {

class PushButton;

/** A push button that can be busy as assistive technology sees it. */
class PushButtonAccessible : public QAccessibleWidget {
public:
    explicit PushButtonAccessible(PushButton* button);

    /** Makes Qt create this interface for these buttons and classes derived from them. */
    static void install();
    /** The button became busy, or is no longer. */
    static void tellBusy(PushButton* button);

    QString text(QAccessible::Text kind) const override;
    QAccessible::State state() const override;
    QStringList actionNames() const override;
    void doAction(const QString& name) override;

private:
    PushButton* button() const;
};

} // namespace Kestrel::UI
