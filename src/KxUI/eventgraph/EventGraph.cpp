#include <KxUI/eventgraph/EventGraph_p.h>

#include <KxUI/eventgraph/EventGraphGeometry_p.h>
#include <KxUI/eventgraph/StatisticsTable_p.h>
#include <KxUI/eventgraph/TimeRuler_p.h>
#include <KxUI/settings/AppSettings.h>

#include <QAction>
#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QDoubleSpinBox>
#include <QFile>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QPointer>
#include <QScrollBar>
#include <QSplitter>
#include <QToolBar>
#include <QVBoxLayout>

namespace Kestrel::UI {
namespace {

IEventGraphTimer* sharedTimer = nullptr;

} // namespace

EventGraphPrivate::EventGraphPrivate(EventGraph* window, IEventGraphTimer* timer)
    : q(window)
    , view(new EventGraphView(nullptr, timer))
    , scrollArea(new EventGraphScrollArea(view))
    , splitter(new QSplitter(Qt::Vertical))
    , statistics(new StatisticsTable) {
    splitter->addWidget(scrollArea);
    splitter->addWidget(statistics);
    splitter->setStretchFactor(0, 3);
    splitter->setStretchFactor(1, 2);
    statistics->hide();
}

EventGraph::EventGraph(QWidget* parent, IEventGraphTimer* timer)
    : QWidget(parent, parent ? Qt::Tool : Qt::Window)
    , d(std::make_unique<EventGraphPrivate>(this, timer)) {
    setWindowTitle(tr("Events"));
    auto* const layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(d->makeCaptureToolBar());
    layout->addWidget(d->makeFileToolBar());
    layout->addWidget(d->makeLookToolBar());
    layout->addWidget(d->splitter, 1);

    connect(d->statisticsAction, &QAction::toggled, this,
            [this](bool shown) { d->showStatistics(shown); });
    connect(d->view, &EventGraphView::captureStarting, this, &EventGraph::captureStarting);
    connect(d->view, &EventGraphView::captureStopped, this, &EventGraph::captureStopped);
    connect(d->view, &EventGraphView::pausedChanged, this, &EventGraph::pausedChanged);
    connect(d->view, &EventGraphView::hideEmptyTracksChanged, this, &EventGraph::emptyTracksHidden);
    connect(d->view, &EventGraphView::layoutChanged, this, [this] { d->fillStatistics(); });
    for (QScrollBar* bar :
         {d->scrollArea->horizontalScrollBar(), d->scrollArea->verticalScrollBar()})
        connect(bar, &QScrollBar::valueChanged, this, &EventGraph::scrollChanged);
}

EventGraph::~EventGraph() {
    d->savePlace();
    // The view goes after this; it has nothing to tell us any more.
    d->view->disconnect(this);
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

void EventGraph::start(float seconds, EventGraphMode mode) {
    d->duration->setValue(static_cast<double>(seconds));
    d->mode->setCurrentIndex(d->mode->findData(static_cast<int>(mode)));
    d->view->start(seconds, mode);
}

void EventGraph::singleShot() {
    if (d->chosenMode() == EventGraphMode::Forwards && d->duration->hasAcceptableInput())
        d->view->start(static_cast<float>(d->duration->value()), EventGraphMode::Forwards);
}

void EventGraph::start() {
    if (d->chosenMode() == EventGraphMode::Forwards)
        d->view->start(EventGraphView::unlimitedDuration, EventGraphMode::Forwards);
    else if (d->duration->hasAcceptableInput())
        d->view->start(static_cast<float>(d->duration->value()), EventGraphMode::History);
}

void EventGraph::startCapture() {
    start();
}

void EventGraph::stop() {
    d->view->stop();
}

void EventGraph::clear() {
    d->view->clear();
}

EventGraphView* EventGraph::view() const {
    return d->view;
}

bool EventGraph::paused() const {
    return d->view->paused();
}

void EventGraph::addTrack(EventTrack* track) {
    d->view->addTrack(track);
}

void EventGraph::removeTrack(EventTrack* track) {
    d->view->removeTrack(track);
}

void EventGraph::setBackgroundStripeSpacing(int pixels) {
    d->view->setBackgroundStripeSpacing(pixels);
}

void EventGraph::setHideEmptyTracks(bool hide) {
    d->view->setHideEmptyTracks(hide);
    d->hideEmptyTracks->setChecked(hide);
}

bool EventGraph::hideEmptyTracks() const {
    return d->view->hideEmptyTracks();
}

void EventGraph::setRemembersPlace(bool remembers) {
    if (remembers == remembersPlace())
        return;
    if (remembers) {
        if (objectName().isEmpty())
            setObjectName(QStringLiteral("EventGraph"));
        d->splitter->setObjectName(objectName() + QStringLiteral(".splitter"));
        d->tracker = std::make_unique<WidgetTracker>();
        d->tracker->registerWidget(this, true);
        if (AppSettings().value(d->statisticsKey()).toBool())
            d->statisticsAction->setChecked(true);
        d->tracker->restoreWidget(this);
        connect(qApp, &QCoreApplication::aboutToQuit, this, [this] { d->savePlace(); });
    } else {
        d->tracker.reset();
        qApp->disconnect(this);
    }
    Q_EMIT remembersPlaceChanged(remembers);
}

bool EventGraph::remembersPlace() const {
    return d->tracker != nullptr;
}

QSize EventGraph::sizeHint() const {
    return QWidget::sizeHint().expandedTo({1100, 640});
}

void EventGraph::captureStarting(bool timed) {
    d->singleShot->setEnabled(false);
    d->start->disconnect(this);
    d->start->setEnabled(!timed);
    if (timed) {
        connect(d->start, &QAction::triggered, this, QOverload<>::of(&EventGraph::start));
    } else {
        d->start->setText(tr("Stop"));
        connect(d->start, &QAction::triggered, this, &EventGraph::stop);
    }
    d->setCapturing(true);
}

void EventGraph::captureStopped() {
    d->singleShot->setEnabled(d->chosenMode() == EventGraphMode::Forwards);
    d->start->setEnabled(true);
    d->start->setText(tr("Start"));
    d->start->disconnect(this);
    connect(d->start, &QAction::triggered, this, QOverload<>::of(&EventGraph::start));
    d->setCapturing(false);
}

void EventGraph::modeComboIndexChanged(int) {
    d->singleShot->setEnabled(d->chosenMode() == EventGraphMode::Forwards && d->view->paused());
}

void EventGraph::hitTestModeComboChanged(int) {
    d->view->setHitTestMode(static_cast<EventHitTestMode>(d->hitTest->currentData().toInt()));
}

void EventGraph::hideEmptyTracksChanged(int state) {
    d->view->setHideEmptyTracks(state != Qt::Unchecked);
}

void EventGraph::scrollChanged() {
    d->view->hidePopup();
}

void EventGraphPrivate::askForFile(FileChooserDialog::Mode kind, const QString& title,
                                   const QString& filter,
                                   std::function<void(const QString&)> done) const {
    const auto chosen = [done = std::move(done)](const auto& choices) {
        done(QFile::decodeName(choices.front().path));
    };
    auto* const chooser =
        FileChooserDialog::open(kind, q, QString(), filter.split(QStringLiteral(";;")), chosen);
    chooser->setWindowTitle(title);
    chooser->setAcceptsSequences(false);
    chooser->setFoldsSequences(false);
}

void EventGraph::save() {
    const auto done = [this](const QString& path) {
        if (d->view->save(path, d->saveFlags()))
            QMessageBox::information(this, tr("Save result"),
                                     tr("Event data saved to '%1'").arg(path));
        else
            QMessageBox::warning(this, tr("Save result"),
                                 tr("Failed to open file '%1' for writing.").arg(path));
    };
    d->askForFile(FileChooserDialog::SaveFile, tr("Save events file"),
                  tr("XML (*.xml);;All files (*.*)"), done);
}

void EventGraph::load() {
    const auto done = [](const QString& path) {
        auto* const window = new EventGraph;
        window->setAttribute(Qt::WA_DeleteOnClose);
        window->setWindowTitle(window->windowTitle() + QLatin1Char(' ') + path);
        window->show();
        window->view()->load(path);
    };
    d->askForFile(FileChooserDialog::OpenFile, tr("Load events file"),
                  tr("XML (*.xml);;All files (*.*)"), done);
}

void EventGraph::exportTrace() {
    const auto done = [this](const QString& path) {
        if (!d->view->exportTrace(path))
            QMessageBox::warning(this, tr("Export trace"),
                                 tr("Failed to open file '%1' for writing.").arg(path));
    };
    d->askForFile(FileChooserDialog::SaveFile, tr("Export trace"), tr("Chrome trace (*.json)"),
                  done);
}

} // namespace Kestrel::UI
