// The toolbars of the profiler's window, and what they show and hide.

#include <KxUI/eventgraph/EventGraph_p.h>

#include <KxUI/eventgraph/EventGraphGeometry_p.h>
#include <KxUI/eventgraph/StatisticsTable_p.h>
#include <KxUI/settings/AppSettings.h>

#include <QAction>
#include <QCheckBox>
#include <QComboBox>
#include <QDoubleSpinBox>
#include <QLabel>
#include <QLineEdit>
#include <QScrollArea>
#include <QSplitter>
#include <QToolBar>

namespace Kestrel::UI {

QToolBar* EventGraphPrivate::makeCaptureToolBar() {
    auto* const bar = new QToolBar;
    singleShot = bar->addAction(EventGraph::tr("Single shot"), q, &EventGraph::singleShot);
    start = bar->addAction(EventGraph::tr("Start"));
    QObject::connect(start, &QAction::triggered, q, QOverload<>::of(&EventGraph::start));

    modeLabel = new QLabel(EventGraph::tr("    Capture Mode: "));
    mode = new QComboBox;
    mode->addItem(EventGraph::tr("Forwards"), static_cast<int>(EventGraphMode::Forwards));
    mode->addItem(EventGraph::tr("History"), static_cast<int>(EventGraphMode::History));
    QObject::connect(mode, QOverload<int>::of(&QComboBox::currentIndexChanged), q,
                     &EventGraph::modeComboIndexChanged);

    durationLabel = new QLabel(EventGraph::tr("    Capture Duration/s: "));
    duration = new QDoubleSpinBox;
    duration->setDecimals(3);
    duration->setRange(1.0, 3600.0);
    duration->setValue(2.0);

    hideEmptyTracks = new QCheckBox(EventGraph::tr("Hide Empty Tracks"));
    QObject::connect(hideEmptyTracks, &QCheckBox::stateChanged, q,
                     &EventGraph::hideEmptyTracksChanged);

    hitTestLabel = new QLabel(EventGraph::tr("    Event hit test mode: "));
    hitTest = new QComboBox;
    hitTest->addItem(EventGraph::tr("Direct hit only"),
                     static_cast<int>(EventHitTestMode::DirectHitOnly));
    hitTest->addItem(EventGraph::tr("Allow next"), static_cast<int>(EventHitTestMode::AllowNext));
    hitTest->setToolTip(
        EventGraph::tr("The mode to use when doing cursor hit tests against events to\n"
                       "determine what pop-up data to display.\n\n"
                       "Direct hit only: Require a direct hit on an event.\n\n"
                       "Allow next: If there's no direct hit, use the next event on\n"
                       "            the current hit track. This mode is useful if there\n"
                       "            are very short events, which would be difficult to\n"
                       "            hit directly unless extreme zoom settings are used."));
    QObject::connect(hitTest, QOverload<int>::of(&QComboBox::currentIndexChanged), q,
                     &EventGraph::hitTestModeComboChanged);

    for (QWidget* widget : std::initializer_list<QWidget*>{modeLabel, mode, durationLabel, duration,
                                                           hideEmptyTracks, hitTestLabel, hitTest})
        bar->addWidget(widget);
    return bar;
}

QToolBar* EventGraphPrivate::makeFileToolBar() {
    auto* const bar = new QToolBar;
    save = bar->addAction(EventGraph::tr("Save"), q, &EventGraph::save);
    bar->addAction(EventGraph::tr("Load"), q, &EventGraph::load);
    includeUserData = new QCheckBox(EventGraph::tr("Include user data"));
    includeUserData->setChecked(true);
    includeUserData->setToolTip(
        EventGraph::tr("Include user data (rather than just event start/stop times)."));
    skipDuplicates = new QCheckBox(EventGraph::tr("Skip duplicates"));
    skipDuplicates->setChecked(true);
    skipDuplicates->setToolTip(
        EventGraph::tr("Skip duplicated user data in adjacent events.\n"
                       "This doesn't look at the actual data values but just whether the same\n"
                       "user data object is referenced by adjacent events. Typically this means\n"
                       "skipping user data for a stop event if it points to the same user data\n"
                       "object as the preceding start event."));
    bar->addWidget(includeUserData);
    bar->addWidget(skipDuplicates);
    return bar;
}

QAction* EventGraphPrivate::addLook(QToolBar* bar, const QString& text, const QString& toolTip,
                                    std::function<void()> function) {
    QAction* const action = bar->addAction(text, q, std::move(function));
    action->setToolTip(toolTip);
    lookActions << action;
    return action;
}

QToolBar* EventGraphPrivate::makeLookToolBar() {
    auto* const bar = new QToolBar;
    const auto zoom = [this](int steps) {
        const QWidget* const viewport = scrollArea->viewport();
        view->zoomAbout(-view->x() + (nameColumnWidth + viewport->width()) / 2, steps);
    };
    addLook(bar, EventGraph::tr("Zoom in"), EventGraph::tr("Zoom in (+)"), [zoom] { zoom(2); });
    addLook(bar, EventGraph::tr("Zoom out"), EventGraph::tr("Zoom out (-)"), [zoom] { zoom(-2); });
    addLook(bar, EventGraph::tr("Zoom to fit"), EventGraph::tr("Show the whole capture (F)"),
            [this] { view->zoomToFit(); });
    QAction* const toSelection =
        addLook(bar, EventGraph::tr("Zoom to selection"),
                EventGraph::tr("Show the selected time (Z). Drag to select."),
                [this] { view->zoomToSelection(); });
    toSelection->setEnabled(false);
    QObject::connect(view, &EventGraphView::selectionChanged, toSelection, [this, toSelection] {
        toSelection->setEnabled(view->paused() && view->selectionStart() != view->selectionEnd());
    });
    bar->addSeparator();
    makeSearch(bar);
    bar->addSeparator();
    statisticsAction = bar->addAction(EventGraph::tr("Statistics"));
    statisticsAction->setCheckable(true);
    statisticsAction->setToolTip(
        EventGraph::tr("Show the distribution of durations and values of each track"));
    addLook(bar, EventGraph::tr("Export trace..."),
            EventGraph::tr("Write the capture for trace viewers (Chrome trace, JSON)"),
            [this] { q->exportTrace(); });
    return bar;
}

void EventGraphPrivate::makeSearch(QToolBar* bar) {
    search = new QLineEdit;
    search->setPlaceholderText(EventGraph::tr("Find a track or an event's text"));
    search->setClearButtonEnabled(true);
    search->setMaximumWidth(260);
    bar->addWidget(search);
    QObject::connect(search, &QLineEdit::returnPressed, q, [this] { find(false); });
    QObject::connect(search, &QLineEdit::textChanged, search,
                     [this] { search->setStyleSheet({}); });
    addLook(bar, EventGraph::tr("Previous"), EventGraph::tr("Find the previous one (Shift+F3)"),
            [this] { find(true); })
        ->setShortcut(QKeySequence::FindPrevious);
    addLook(bar, EventGraph::tr("Next"), EventGraph::tr("Find the next one (F3)"), [this] {
        find(false);
    })->setShortcut(QKeySequence::FindNext);
}

EventGraphMode EventGraphPrivate::chosenMode() const {
    return static_cast<EventGraphMode>(mode->currentData().toInt());
}

EventGraphView::SaveFlags EventGraphPrivate::saveFlags() const {
    EventGraphView::SaveFlags flags;
    flags.setFlag(EventGraphView::IncludeUserData, includeUserData->isChecked());
    flags.setFlag(EventGraphView::SkipDuplicates, skipDuplicates->isChecked());
    return flags;
}

void EventGraphPrivate::find(bool backwards) {
    const bool found = search->text().isEmpty() || view->findNext(search->text(), backwards);
    search->setStyleSheet(found ? QString() : QStringLiteral("color: #d03030"));
}

void EventGraphPrivate::showStatistics(bool shown) {
    const int height = splitter->height();
    statistics->setVisible(shown);
    // The splitter knows later what the user has made of it.
    if (shown && !std::exchange(statisticsHaveSize, true))
        splitter->setSizes({height * 3 / 5, height * 2 / 5});
    fillStatistics();
    if (tracker)
        AppSettings().setValue(statisticsKey(), shown);
}

// Only a table that is shown has numbers.
void EventGraphPrivate::fillStatistics() {
    if (statisticsAction->isChecked())
        statistics->fill(*view);
}

void EventGraphPrivate::setCapturing(bool capturing) {
    for (QWidget* widget :
         std::initializer_list<QWidget*>{modeLabel, mode, durationLabel, duration, hitTestLabel,
                                         hitTest, includeUserData, skipDuplicates, search})
        widget->setEnabled(!capturing);
    save->setEnabled(!capturing);
    for (QAction* action : qAsConst(lookActions))
        action->setEnabled(!capturing);
    Q_EMIT view->selectionChanged();
}

QString EventGraphPrivate::statisticsKey() const {
    return q->objectName() + QStringLiteral(".statistics");
}

void EventGraphPrivate::savePlace() {
    if (tracker && q->isVisible())
        tracker->saveWidgetLocation(q);
}

} // namespace Kestrel::UI
