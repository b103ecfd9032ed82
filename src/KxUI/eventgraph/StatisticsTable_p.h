#pragma once

#include <QTreeWidget>

namespace Kestrel::UI {

class EventGraphView;

/** The distribution of durations and values of each track of a view. */
class StatisticsTable : public QTreeWidget {
    Q_OBJECT

public:
    explicit StatisticsTable(QWidget* parent = nullptr);

    /** Shows the numbers of a capture that has ended, nothing while one runs. */
    void fill(const EventGraphView& view);
};

} // namespace Kestrel::UI
