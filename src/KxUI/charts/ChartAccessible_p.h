#pragma once

#include <KxUI/charts/Chart.h>

#include <QAccessibleWidget>

#include <vector>

namespace Kestrel::UI {

/** What screen readers know of a chart: its read-out as its value, and a child for each series or
    slice. */
class ChartAccessible : public QAccessibleWidget {
public:
    explicit ChartAccessible(Chart* chart);
    ~ChartAccessible() override;

    /** Makes charts known; once does. */
    static void install();
    /** Says the read-out. */
    static void tell(Chart* chart);

    QString text(QAccessible::Text kind) const override;
    int childCount() const override;
    QAccessibleInterface* child(int index) const override;
    int indexOfChild(const QAccessibleInterface* child) const override;

private:
    Chart* chart() const { return static_cast<Chart*>(object()); }

    mutable std::vector<QAccessible::Id> m_children;
};

} // namespace Kestrel::UI
