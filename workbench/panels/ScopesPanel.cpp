#include "panels/ScopesPanel.h"

#include "play/ScopeFeed.h"
#include "play/Session.h"
#include "scopes/ScopeBar.h"
#include "scopes/ScopeCell.h"
#include "scopes/ScopeKinds.h"

#include <KxUI/kit/ChoiceBar.h>
#include <KxUI/scopes/ScopeView.h>

#include <QActionGroup>
#include <QGridLayout>
#include <QJsonArray>
#include <QJsonDocument>
#include <QMenu>
#include <QVBoxLayout>

namespace Kestrel::Workbench {

namespace {

constexpr int counts[] = {1, 2, 4};
const char* const firstKinds[] = {"waveform", "vectorscope", "histogram", "cube"};
const QString countKey = QStringLiteral("scopes");
const QString cellsKey = QStringLiteral("cells");
const QString feedKey = QStringLiteral("values");

} // namespace

ScopesPanel::ScopesPanel(Session* session, QWidget* parent)
    : QWidget(parent)
    , m_feed(session->scopes())
    , m_counts(new UI::ChoiceBar)
    , m_grid(new QGridLayout) {
    setObjectName(QStringLiteral("ScopesPanel"));
    auto* bar = new ScopeBar(m_feed);
    makeCount();
    bar->addWidget(m_counts);
    for (std::size_t i = 0; i < m_cells.size(); ++i) {
        const auto& kinds = scopeKinds();
        m_cells[i] =
            new ScopeCell(m_feed->model(), QLatin1String(kinds[i % kinds.size()].id), this);
        m_cells[i]->setKind(QLatin1String(firstKinds[i]));
        m_cells[i]->hide();
        connect(m_cells[i], &ScopeCell::pixelRequested, m_feed, &ScopeFeed::markPixel);
    }
    m_grid->setContentsMargins(0, 0, 0, 0);
    m_grid->setSpacing(2);
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    column->addWidget(bar);
    column->addLayout(m_grid, 1);
    connect(bar, &ScopeBar::menuFilling, this, &ScopesPanel::addUnits);
    arrange();
}

void ScopesPanel::makeCount() {
    m_counts->setAccessibleName(tr("Number of scopes"));
    m_counts->setSizePolicy(QSizePolicy::Maximum, QSizePolicy::Fixed);
    for (const int count : counts)
        m_counts->addChoice(locale().toString(count), {}, count);
    m_counts->setCurrentIndex(m_counts->findChoice(m_count));
    connect(m_counts, &UI::ChoiceBar::valueEdited, this,
            [this](int index) { setScopeCount(m_counts->choiceData(index).toInt()); });
}

void ScopesPanel::setScopeCount(int count) {
    if (count == m_count || m_counts->findChoice(count) < 0)
        return;
    m_count = count;
    m_counts->setCurrentIndex(m_counts->findChoice(count));
    arrange();
}

void ScopesPanel::arrange() {
    m_sideBySide = width() > height();
    for (int i = 0; i < MostScopes; ++i) {
        ScopeCell* cell = m_cells[std::size_t(i)];
        const bool inRow = m_count == MostScopes || m_sideBySide;
        const int row = m_count == MostScopes ? i / 2 : inRow ? 0 : i;
        const int column = inRow ? i % 2 : 0;
        m_grid->removeWidget(cell);
        if (i < m_count)
            m_grid->addWidget(cell, row, column);
        cell->setVisible(i < m_count);
    }
    for (int i = 0; i < 2; ++i) {
        const bool isUsed = i == 0 || m_count == MostScopes;
        m_grid->setRowStretch(i, isUsed || (m_count == 2 && !m_sideBySide) ? 1 : 0);
        m_grid->setColumnStretch(i, isUsed || (m_count == 2 && m_sideBySide) ? 1 : 0);
    }
}

void ScopesPanel::addUnits(QMenu* menu) {
    auto* units = menu->addMenu(tr("&Units"));
    auto* group = new QActionGroup(units);
    const UI::ScopeView* first = m_cells.front()->view();
    for (int i = 0; i < UI::ScopeUnitCount; ++i) {
        const auto unit = UI::ScopeUnit(i);
        QAction* action = group->addAction(units->addAction(UI::ScopeView::unitText(unit)));
        action->setCheckable(true);
        action->setChecked(first && first->unit() == unit);
        connect(action, &QAction::triggered, this, [this, unit] {
            for (const ScopeCell* cell : m_cells) {
                if (cell->view())
                    cell->view()->setUnit(unit);
            }
        });
    }
    QAction* reference = menu->addAction(tr("Held Result &Visible"));
    reference->setCheckable(true);
    reference->setChecked(first && first->showReference());
    connect(reference, &QAction::toggled, this, [this](bool show) {
        for (const ScopeCell* cell : m_cells) {
            if (cell->view())
                cell->view()->setShowReference(show);
        }
    });
    menu->addSeparator();
}

void ScopesPanel::showEvent(QShowEvent* event) {
    QWidget::showEvent(event);
    m_feed->watch(this, true);
}

void ScopesPanel::hideEvent(QHideEvent* event) {
    QWidget::hideEvent(event);
    m_feed->watch(this, false);
}

void ScopesPanel::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    if (m_count == 2 && m_sideBySide != (width() > height()))
        arrange();
}

QString ScopesPanel::layoutState() const {
    QJsonArray cells;
    for (const ScopeCell* cell : m_cells)
        cells.append(cell->saveState());
    const QJsonObject state{{countKey, m_count}, {feedKey, m_feed->saveState()}, {cellsKey, cells}};
    return QString::fromUtf8(QJsonDocument(state).toJson(QJsonDocument::Compact));
}

void ScopesPanel::setLayoutState(const QString& state) {
    const QJsonObject saved = QJsonDocument::fromJson(state.toUtf8()).object();
    m_feed->restoreState(saved.value(feedKey).toObject());
    const QJsonArray cells = saved.value(cellsKey).toArray();
    for (int i = 0; i < MostScopes; ++i)
        m_cells[std::size_t(i)]->restoreState(cells.at(i).toObject());
    setScopeCount(saved.value(countKey).toInt());
}

} // namespace Kestrel::Workbench
