#include "panels/StatisticsPanel.h"

#include "play/ScopeFeed.h"
#include "play/Session.h"
#include "scopes/ScopeBar.h"

#include <KxUI/scopes/ImageStatisticsPanel.h>
#include <KxUI/scopes/ScopeView.h>

#include <QActionGroup>
#include <QJsonDocument>
#include <QMenu>
#include <QVBoxLayout>

namespace Kestrel::Workbench {

using UI::ImageStatisticsPanel;

namespace {

constexpr int margin = 6;
const QString unitKey = QStringLiteral("unit");
const QString columnsKey = QStringLiteral("columns");
const QString differenceKey = QStringLiteral("difference");
const QString feedKey = QStringLiteral("values");

} // namespace

StatisticsPanel::StatisticsPanel(Session* session, QWidget* parent)
    : QWidget(parent)
    , m_feed(session->scopes())
    , m_figures(new ImageStatisticsPanel) {
    setObjectName(QStringLiteral("StatisticsPanel"));
    auto* bar = new ScopeBar(m_feed);
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    column->addWidget(bar);
    column->addWidget(m_figures, 1);
    m_figures->setModel(m_feed->model());
    m_figures->setColumns(ImageStatisticsPanel::Minimum | ImageStatisticsPanel::Maximum |
                          ImageStatisticsPanel::Mean | ImageStatisticsPanel::Deviation |
                          ImageStatisticsPanel::Median | ImageStatisticsPanel::Below |
                          ImageStatisticsPanel::Above | ImageStatisticsPanel::NotANumber);
    m_figures->setContentsMargins(margin, 0, margin, margin);
    connect(m_figures, &ImageStatisticsPanel::pixelRequested, m_feed, &ScopeFeed::markPixel);
    connect(bar, &ScopeBar::menuFilling, this, &StatisticsPanel::fillMenu);
}

void StatisticsPanel::fillMenu(QMenu* menu) {
    auto* units = menu->addMenu(tr("&Units"));
    auto* group = new QActionGroup(units);
    for (int i = 0; i < UI::ScopeUnitCount; ++i) {
        const auto unit = UI::ScopeUnit(i);
        QAction* action = group->addAction(units->addAction(UI::ScopeView::unitText(unit)));
        action->setCheckable(true);
        action->setChecked(m_figures->unit() == unit);
        connect(action, &QAction::triggered, m_figures, [this, unit] { m_figures->setUnit(unit); });
    }
    addColumns(menu->addMenu(tr("Colu&mns")));
    QAction* difference = menu->addAction(tr("&Difference from Held Result"));
    difference->setCheckable(true);
    difference->setChecked(m_figures->showDifference());
    connect(difference, &QAction::toggled, m_figures, &ImageStatisticsPanel::setShowDifference);
    connect(menu->addAction(tr("Co&py as Text")), &QAction::triggered, m_figures,
            &ImageStatisticsPanel::copy);
    menu->addSeparator();
}

void StatisticsPanel::addColumns(QMenu* menu) {
    using Columns = ImageStatisticsPanel::Columns;
    for (int bit = 1; bit < ImageStatisticsPanel::AllColumns; bit <<= 1) {
        const auto column = ImageStatisticsPanel::Column(bit);
        QAction* action = menu->addAction(ImageStatisticsPanel::columnText(column));
        action->setCheckable(true);
        action->setChecked(m_figures->columns().testFlag(column));
        connect(action, &QAction::toggled, m_figures, [this, column](bool shown) {
            Columns columns = m_figures->columns();
            m_figures->setColumns(columns.setFlag(column, shown));
        });
    }
}

void StatisticsPanel::showEvent(QShowEvent* event) {
    QWidget::showEvent(event);
    m_feed->watch(this, true);
}

void StatisticsPanel::hideEvent(QHideEvent* event) {
    QWidget::hideEvent(event);
    m_feed->watch(this, false);
}

QString StatisticsPanel::layoutState() const {
    const QJsonObject state{{unitKey, int(m_figures->unit())},
                            {columnsKey, int(m_figures->columns())},
                            {differenceKey, m_figures->showDifference()},
                            {feedKey, m_feed->saveState()}};
    return QString::fromUtf8(QJsonDocument(state).toJson(QJsonDocument::Compact));
}

void StatisticsPanel::setLayoutState(const QString& state) {
    const QJsonObject saved = QJsonDocument::fromJson(state.toUtf8()).object();
    m_feed->restoreState(saved.value(feedKey).toObject());
    m_figures->setUnit(UI::ScopeUnit(saved.value(unitKey).toInt(int(m_figures->unit()))));
    m_figures->setColumns(ImageStatisticsPanel::Columns(
        QFlag(saved.value(columnsKey).toInt(int(m_figures->columns())))));
    m_figures->setShowDifference(saved.value(differenceKey).toBool(m_figures->showDifference()));
}

} // namespace Kestrel::Workbench
