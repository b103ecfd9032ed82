#include <KxUI/eventgraph/StatisticsTable_p.h>

#include <KxUI/eventgraph/EventGraph.h>
#include <KxUI/eventgraph/EventGraphView_p.h>
#include <KxUI/eventgraph/EventStatistics_p.h>

#include <QHeaderView>

namespace Kestrel::UI {
namespace {

constexpr int countColumn = 2;
constexpr int firstNumber = 3;

// A row that sorts its numbers as numbers.
class StatisticsItem : public QTreeWidgetItem {
public:
    using QTreeWidgetItem::QTreeWidgetItem;

    bool operator<(const QTreeWidgetItem& other) const override {
        const int column = treeWidget() ? treeWidget()->sortColumn() : 0;
        if (column == 0)
            return text(0).localeAwareCompare(other.text(0)) < 0;
        return data(column, Qt::UserRole).toDouble() < other.data(column, Qt::UserRole).toDouble();
    }
};

QString unitOf(EventTrack::TrackType type) {
    switch (type) {
    case EventTrack::TrackType::Timeline:
        return EventGraph::tr("ms");
    case EventTrack::TrackType::Bandwidth:
        return EventGraph::tr("bytes/s");
    case EventTrack::TrackType::Value:
        break;
    }
    return {};
}

void setNumbers(QTreeWidgetItem& item, const EventStatistics& numbers) {
    item.setText(countColumn, QString::number(numbers.count));
    item.setData(countColumn, Qt::UserRole, static_cast<double>(numbers.count));
    int column = firstNumber;
    for (const double number : {numbers.minimum, numbers.mean, numbers.maximum, numbers.median,
                                numbers.percentile95, numbers.percentile99}) {
        if (numbers.count > 0)
            item.setText(column, QString::number(number, 'g', 6));
        item.setData(column++, Qt::UserRole, number);
    }
    for (column = countColumn; column < item.columnCount(); ++column)
        item.setTextAlignment(column, Qt::AlignRight | Qt::AlignVCenter);
}

} // namespace

StatisticsTable::StatisticsTable(QWidget* parent)
    : QTreeWidget(parent) {
    setHeaderLabels({EventGraph::tr("Track"), EventGraph::tr("Unit"), EventGraph::tr("Count"),
                     EventGraph::tr("Min"), EventGraph::tr("Mean"), EventGraph::tr("Max"),
                     EventGraph::tr("50 %"), EventGraph::tr("95 %"), EventGraph::tr("99 %")});
    for (int column = countColumn; column < columnCount(); ++column)
        headerItem()->setTextAlignment(column, Qt::AlignRight | Qt::AlignVCenter);
    setRootIsDecorated(false);
    setAlternatingRowColors(true);
    setSortingEnabled(true);
    sortByColumn(-1, Qt::AscendingOrder);
    header()->setStretchLastSection(false);
    header()->setSectionResizeMode(QHeaderView::ResizeToContents);
    header()->setSectionResizeMode(0, QHeaderView::Stretch);
}

void StatisticsTable::fill(const EventGraphView& view) {
    setSortingEnabled(false);
    clear();
    if (view.paused()) {
        const Scene& scene = EventGraphViewPrivate::of(view).upToDateScene();
        for (const SceneRow& row : scene.rows()) {
            auto* const item = new StatisticsItem(this);
            item->setText(0, row.track.name);
            item->setText(1, unitOf(row.track.type));
            setNumbers(*item, statisticsOf(scene.index(row)));
        }
    }
    setSortingEnabled(true);
}

} // namespace Kestrel::UI
