#include <KxUI/eventgraph/EventGraph.h>

#include <KxUI/eventgraph/CaptureState_p.h>
#include <KxUI/eventgraph/EventGraphScene_p.h>
#include <KxUI/eventgraph/EventGraphView.h>
#include <KxUI/eventgraph/EventGraphWriter.h>
#include <KxUI/eventgraph/EventStatistics_p.h>
#include <KxUI/eventgraph/TimeRuler_p.h>

#include <QAction>
#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QDir>
#include <QDoubleSpinBox>
#include <QFileDialog>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QPointer>
#include <QScrollBar>
#include <QSplitter>
#include <QToolBar>
#include <QTreeWidget>
#include <QVBoxLayout>

namespace Kestrel::UI {
namespace {

IEventGraphTimer* sharedTimer = nullptr;

// A row of the statistics table that sorts its numbers as numbers.
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

} // namespace

EventGraph::EventGraph(QWidget* parent, IEventGraphTimer* timer)
    : QWidget(parent, parent ? Qt::Tool : Qt::Window)
    , m_view(new EventGraphView(nullptr, timer))
    , m_scrollArea(new EventGraphScrollArea(m_view))
    , m_statistics(new QTreeWidget) {
    setWindowTitle(tr("Events"));
    auto* const captureBar = new QToolBar;
    auto* const fileBar = new QToolBar;
    auto* const lookBar = new QToolBar;
    makeCaptureToolBar(captureBar);
    makeFileToolBar(fileBar);
    makeLookToolBar(lookBar);

    m_statistics->setHeaderLabels({tr("Track"), tr("Unit"), tr("Count"), tr("Min"), tr("Mean"),
                                   tr("Max"), tr("50 %"), tr("95 %"), tr("99 %")});
    for (int column = 2; column < m_statistics->columnCount(); ++column)
        m_statistics->headerItem()->setTextAlignment(column, Qt::AlignRight | Qt::AlignVCenter);
    m_statistics->setRootIsDecorated(false);
    m_statistics->setAlternatingRowColors(true);
    m_statistics->setSortingEnabled(true);
    m_statistics->sortByColumn(-1, Qt::AscendingOrder);
    m_statistics->header()->setStretchLastSection(false);
    m_statistics->header()->setSectionResizeMode(QHeaderView::ResizeToContents);
    m_statistics->header()->setSectionResizeMode(0, QHeaderView::Stretch);
    m_statistics->hide();
    auto* const splitter = new QSplitter(Qt::Vertical);
    splitter->addWidget(m_scrollArea);
    splitter->addWidget(m_statistics);
    splitter->setStretchFactor(0, 3);
    splitter->setStretchFactor(1, 2);
    connect(m_showStatistics, &QAction::toggled, this, [this, splitter](bool shown) {
        const int height = splitter->height();
        m_statistics->setVisible(shown);
        if (shown)
            splitter->setSizes({height * 3 / 5, height * 2 / 5});
        fillStatistics();
    });

    auto* const layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    for (QWidget* widget : {static_cast<QWidget*>(captureBar), static_cast<QWidget*>(fileBar),
                            static_cast<QWidget*>(lookBar)})
        layout->addWidget(widget);
    layout->addWidget(splitter, 1);

    connect(m_view, &EventGraphView::captureStarting, this, &EventGraph::captureStarting);
    connect(m_view, &EventGraphView::captureStopped, this, &EventGraph::captureStopped);
    connect(m_view, &EventGraphView::layoutChanged, this, &EventGraph::fillStatistics);
    for (QScrollBar* bar : {m_scrollArea->horizontalScrollBar(), m_scrollArea->verticalScrollBar()})
        connect(bar, &QScrollBar::valueChanged, this, &EventGraph::scrollChanged);
}

EventGraph::~EventGraph() {
    // The view goes after this; it has nothing to tell us any more.
    m_view->disconnect(this);
}

EventGraph* EventGraph::instance() {
    static const bool possible =
        qobject_cast<QApplication*>(QCoreApplication::instance()) != nullptr;
    static QPointer<EventGraph> window;
    static bool made = false;
    if (possible && !made) {
        made = true;
        window = new EventGraph(nullptr, sharedTimer);
        // Windows must not outlive the application.
        qAddPostRoutine([] { delete window; });
    }
    return window;
}

void EventGraph::SetTimer(IEventGraphTimer* timer) {
    sharedTimer = timer;
}

void EventGraph::makeCaptureToolBar(QToolBar* bar) {
    m_singleShot = bar->addAction(tr("Single shot"), this, &EventGraph::singleShot);
    m_start = bar->addAction(tr("Start"));
    connect(m_start, &QAction::triggered, this, QOverload<>::of(&EventGraph::start));

    m_modeLabel = new QLabel(tr("    Capture Mode: "));
    m_mode = new QComboBox;
    m_mode->addItem(tr("Forwards"), static_cast<int>(EventGraphMode::Forwards));
    m_mode->addItem(tr("History"), static_cast<int>(EventGraphMode::History));
    connect(m_mode, QOverload<int>::of(&QComboBox::currentIndexChanged), this,
            &EventGraph::modeComboIndexChanged);

    m_durationLabel = new QLabel(tr("    Capture Duration/s: "));
    m_duration = new QDoubleSpinBox;
    m_duration->setDecimals(3);
    m_duration->setRange(1.0, 3600.0);
    m_duration->setValue(2.0);

    m_hideEmptyTracks = new QCheckBox(tr("Hide Empty Tracks"));
    connect(m_hideEmptyTracks, &QCheckBox::stateChanged, this, &EventGraph::hideEmptyTracksChanged);

    m_hitTestLabel = new QLabel(tr("    Event hit test mode: "));
    m_hitTest = new QComboBox;
    m_hitTest->addItem(tr("Direct hit only"), static_cast<int>(EventHitTestMode::DirectHitOnly));
    m_hitTest->addItem(tr("Allow next"), static_cast<int>(EventHitTestMode::AllowNext));
    m_hitTest->setToolTip(tr("The mode to use when doing cursor hit tests against events to\n"
                             "determine what pop-up data to display.\n\n"
                             "Direct hit only: Require a direct hit on an event.\n\n"
                             "Allow next: If there's no direct hit, use the next event on\n"
                             "            the current hit track. This mode is useful if there\n"
                             "            are very short events, which would be difficult to\n"
                             "            hit directly unless extreme zoom settings are used."));
    connect(m_hitTest, QOverload<int>::of(&QComboBox::currentIndexChanged), this,
            &EventGraph::hitTestModeComboChanged);

    for (QWidget* widget :
         std::initializer_list<QWidget*>{m_modeLabel, m_mode, m_durationLabel, m_duration,
                                         m_hideEmptyTracks, m_hitTestLabel, m_hitTest})
        bar->addWidget(widget);
}

void EventGraph::makeFileToolBar(QToolBar* bar) {
    m_save = bar->addAction(tr("Save"), this, &EventGraph::save);
    bar->addAction(tr("Load"), this, &EventGraph::load);
    m_includeUserData = new QCheckBox(tr("Include user data"));
    m_includeUserData->setChecked(true);
    m_includeUserData->setToolTip(
        tr("Include user data (rather than just event start/stop times)."));
    m_skipDuplicates = new QCheckBox(tr("Skip duplicates"));
    m_skipDuplicates->setChecked(true);
    m_skipDuplicates->setToolTip(
        tr("Skip duplicated user data in adjacent events.\n"
           "This doesn't look at the actual data values but just whether the same\n"
           "user data object is referenced by adjacent events. Typically this means\n"
           "skipping user data for a stop event if it points to the same user data\n"
           "object as the preceding start event."));
    bar->addWidget(m_includeUserData);
    bar->addWidget(m_skipDuplicates);
}

void EventGraph::makeLookToolBar(QToolBar* bar) {
    const auto zoom = [this](int steps) {
        const QWidget* const viewport = m_scrollArea->viewport();
        m_view->zoomAbout(-m_view->x() + (nameColumnWidth + viewport->width()) / 2, steps);
    };
    const auto add = [&](const QString& text, const QString& toolTip, auto function) {
        QAction* const action = bar->addAction(text, this, function);
        action->setToolTip(toolTip);
        m_lookActions << action;
        return action;
    };
    add(tr("Zoom in"), tr("Zoom in (+)"), [zoom] { zoom(2); });
    add(tr("Zoom out"), tr("Zoom out (-)"), [zoom] { zoom(-2); });
    add(tr("Zoom to fit"), tr("Show the whole capture (F)"), [this] { m_view->zoomToFit(); });
    QAction* const toSelection =
        add(tr("Zoom to selection"), tr("Show the selected time (Z). Drag to select."),
            [this] { m_view->zoomToSelection(); });
    toSelection->setEnabled(false);
    connect(m_view, &EventGraphView::selectionChanged, toSelection, [this, toSelection] {
        toSelection->setEnabled(m_view->paused() &&
                                m_view->selectionStart() != m_view->selectionEnd());
    });
    bar->addSeparator();
    m_search = new QLineEdit;
    m_search->setPlaceholderText(tr("Find a track or an event's text"));
    m_search->setClearButtonEnabled(true);
    m_search->setMaximumWidth(260);
    bar->addWidget(m_search);
    connect(m_search, &QLineEdit::returnPressed, this, [this] { find(false); });
    connect(m_search, &QLineEdit::textChanged, m_search, [this] { m_search->setStyleSheet({}); });
    add(tr("Previous"), tr("Find the previous one (Shift+F3)"), [this] {
        find(true);
    })->setShortcut(QKeySequence::FindPrevious);
    add(tr("Next"), tr("Find the next one (F3)"), [this] {
        find(false);
    })->setShortcut(QKeySequence::FindNext);
    bar->addSeparator();
    m_showStatistics = bar->addAction(tr("Statistics"));
    m_showStatistics->setCheckable(true);
    m_showStatistics->setToolTip(tr("Show the distribution of durations and values of each track"));
    add(tr("Export trace..."), tr("Write the capture for trace viewers (Chrome trace, JSON)"),
        [this] { exportTrace(); });
}

void EventGraph::start(float seconds, EventGraphMode mode) {
    m_duration->setValue(static_cast<double>(seconds));
    m_mode->setCurrentIndex(m_mode->findData(static_cast<int>(mode)));
    m_view->start(seconds, mode);
}

EventGraphMode EventGraph::mode() const {
    return static_cast<EventGraphMode>(m_mode->currentData().toInt());
}

void EventGraph::singleShot() {
    if (mode() == EventGraphMode::Forwards && m_duration->hasAcceptableInput())
        m_view->start(static_cast<float>(m_duration->value()), EventGraphMode::Forwards);
}

void EventGraph::start() {
    if (mode() == EventGraphMode::Forwards)
        m_view->start(unlimitedDuration, EventGraphMode::Forwards);
    else if (m_duration->hasAcceptableInput())
        m_view->start(static_cast<float>(m_duration->value()), EventGraphMode::History);
}

void EventGraph::stop() {
    m_view->stop();
}

void EventGraph::clear() {
    m_view->clear();
}

bool EventGraph::paused() const {
    return m_view->paused();
}

void EventGraph::addTrack(EventTrack* track) {
    m_view->addTrack(track);
}

void EventGraph::removeTrack(EventTrack* track) {
    m_view->removeTrack(track);
}

void EventGraph::setBackgroundStripeSpacing(int pixels) {
    m_view->setBackgroundStripeSpacing(pixels);
}

void EventGraph::setHideEmptyTracks(bool hide) {
    m_view->setHideEmptyTracks(hide);
    m_hideEmptyTracks->setChecked(hide);
}

bool EventGraph::hideEmptyTracks() const {
    return m_view->hideEmptyTracks();
}

QSize EventGraph::sizeHint() const {
    return QWidget::sizeHint().expandedTo({1100, 640});
}

void EventGraph::captureStarting(bool timed) {
    m_singleShot->setEnabled(false);
    m_start->disconnect(this);
    m_start->setEnabled(!timed);
    if (timed) {
        connect(m_start, &QAction::triggered, this, QOverload<>::of(&EventGraph::start));
    } else {
        m_start->setText(tr("Stop"));
        connect(m_start, &QAction::triggered, this, &EventGraph::stop);
    }
    setCapturing(true);
}

void EventGraph::captureStopped() {
    m_singleShot->setEnabled(mode() == EventGraphMode::Forwards);
    m_start->setEnabled(true);
    m_start->setText(tr("Start"));
    m_start->disconnect(this);
    connect(m_start, &QAction::triggered, this, QOverload<>::of(&EventGraph::start));
    setCapturing(false);
}

void EventGraph::setCapturing(bool capturing) {
    for (QWidget* widget : std::initializer_list<QWidget*>{
             m_modeLabel, m_mode, m_durationLabel, m_duration, m_hitTestLabel, m_hitTest,
             m_includeUserData, m_skipDuplicates, m_search})
        widget->setEnabled(!capturing);
    m_save->setEnabled(!capturing);
    for (QAction* action : qAsConst(m_lookActions))
        action->setEnabled(!capturing);
    emit m_view->selectionChanged();
}

void EventGraph::modeComboIndexChanged(int) {
    m_singleShot->setEnabled(mode() == EventGraphMode::Forwards && m_view->paused());
}

void EventGraph::hitTestModeComboChanged(int) {
    m_view->setHitTestMode(static_cast<EventHitTestMode>(m_hitTest->currentData().toInt()));
}

void EventGraph::hideEmptyTracksChanged(int state) {
    m_view->setHideEmptyTracks(state != Qt::Unchecked);
}

void EventGraph::scrollChanged() {
    m_view->hidePopup();
}

void EventGraph::find(bool backwards) {
    const bool found = m_search->text().isEmpty() || m_view->findNext(m_search->text(), backwards);
    m_search->setStyleSheet(found ? QString() : QStringLiteral("color: #d03030"));
}

// Numbers of a table that is shown and of a capture that has ended.
void EventGraph::fillStatistics() {
    if (!m_showStatistics->isChecked())
        return;
    m_statistics->setSortingEnabled(false);
    m_statistics->clear();
    if (m_view->paused()) {
        for (const SceneRow& row : m_view->scene().rows) {
            const EventStatistics numbers = statisticsOf(m_view->index(row));
            const bool timeline = row.track.type == EventTrack::TrackType::Timeline;
            const bool bandwidth = row.track.type == EventTrack::TrackType::Bandwidth;
            auto* const item = new StatisticsItem(m_statistics);
            item->setText(0, row.track.name);
            item->setText(1, timeline ? tr("ms") : bandwidth ? tr("bytes/s") : QString());
            item->setText(2, QString::number(numbers.count));
            item->setData(2, Qt::UserRole, static_cast<double>(numbers.count));
            const double columns[] = {numbers.minimum, numbers.mean,         numbers.maximum,
                                      numbers.median,  numbers.percentile95, numbers.percentile99};
            for (int column = 3; column < 9; ++column) {
                const double number = columns[column - 3];
                if (numbers.count > 0)
                    item->setText(column, QString::number(number, 'g', 6));
                item->setData(column, Qt::UserRole, number);
            }
            for (int column = 2; column < 9; ++column)
                item->setTextAlignment(column, Qt::AlignRight | Qt::AlignVCenter);
        }
    }
    m_statistics->setSortingEnabled(true);
}

void EventGraph::save() {
    const QString path = QFileDialog::getSaveFileName(
        this, tr("Save events file"), QDir::homePath(), tr("XML (*.xml);;All files (*.*)"));
    if (path.isEmpty())
        return;
    EventGraphView::SaveFlags flags;
    flags.setFlag(EventGraphView::IncludeUserData, m_includeUserData->isChecked());
    flags.setFlag(EventGraphView::SkipDuplicates, m_skipDuplicates->isChecked());
    if (m_view->save(path, flags))
        QMessageBox::information(this, tr("Save result"), tr("Event data saved to '%1'").arg(path));
    else
        QMessageBox::warning(this, tr("Save result"),
                             tr("Failed to open file '%1' for writing.").arg(path));
}

void EventGraph::load() {
    const QStringList paths = QFileDialog::getOpenFileNames(
        this, tr("Load events file"), QDir::homePath(), tr("XML (*.xml);;All files (*.*)"));
    if (paths.isEmpty())
        return;
    auto* const window = new EventGraph;
    window->setAttribute(Qt::WA_DeleteOnClose);
    window->setWindowTitle(window->windowTitle() + QLatin1Char(' ') + paths.first());
    window->show();
    window->m_view->load(paths.first());
}

void EventGraph::exportTrace() {
    const QString path = QFileDialog::getSaveFileName(this, tr("Export trace"), QDir::homePath(),
                                                      tr("Chrome trace (*.json);;All files (*.*)"));
    if (!path.isEmpty() && !m_view->exportTrace(path))
        QMessageBox::warning(this, tr("Export trace"),
                             tr("Failed to open file '%1' for writing.").arg(path));
}

} // namespace Kestrel::UI
