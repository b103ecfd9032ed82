#pragma once

#include <QAccessibleWidget>

namespace Kestrel::UI {

class CrumbButton;

/** A part of a path bar as assistive technology sees it: a button, or one that opens a menu. */
class CrumbButtonAccessible : public QAccessibleWidget {
public:
    explicit CrumbButtonAccessible(CrumbButton* button);

    QAccessible::State state() const override;
    QStringList actionNames() const override;
    void doAction(const QString& name) override;

private:
    CrumbButton* button() const;
    const QString& ownAction() const;
};

} // namespace Kestrel::UI
