#pragma once

#include <QAccessibleWidget>

namespace Kestrel::UI {

class Disclosure;
class DisclosureHeader;

/** A section as assistive technology sees it: a group that can be expanded, of a header and a
    content. */
class DisclosureAccessible : public QAccessibleWidget {
public:
    explicit DisclosureAccessible(Disclosure* section);

    /** Makes Qt create these interfaces for sections and their headers. */
    static void install();
    /** The section is open or closed now; the check box is switched. */
    static void tellExpanded(DisclosureHeader* header);
    static void tellChecked(DisclosureHeader* header);

    QString text(QAccessible::Text kind) const override;
    QAccessible::State state() const override;
};

/** The header: a button that opens and closes, and switches the check box if there is one. */
class DisclosureHeaderAccessible : public QAccessibleWidget {
public:
    explicit DisclosureHeaderAccessible(DisclosureHeader* header);

    QString text(QAccessible::Text kind) const override;
    QAccessible::State state() const override;
    QStringList actionNames() const override;
    void doAction(const QString& name) override;

private:
    Disclosure* section() const;
};

} // namespace Kestrel::UI
