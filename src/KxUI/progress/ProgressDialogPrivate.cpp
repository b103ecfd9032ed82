#include <KxUI/kit/WindowPlacement.h>
#include <KxUI/progress/ProgressDialog_p.h>
#include <KxUI/progress/ProgressRow_p.h>
#include <KxUI/settings/AppSettings.h>

#include <QPushButton>
#include <QScrollArea>
#include <QVBoxLayout>

#include <algorithm>

namespace Kestrel::UI {
namespace {

using std::chrono::milliseconds;

constexpr int pace = 100;                  // milliseconds
constexpr int leastVisible = 800;          // that it does not flash
constexpr milliseconds unknownAfter(1500); // for a task that nobody knows the length of
constexpr std::chrono::seconds worthIt(2); // for what is over sooner it does not open
constexpr int titlePace = 1000;
constexpr std::size_t rowsInSight = 3;

} // namespace

ProgressDialog::Private::Private(ProgressDialog* dialog)
    : q(dialog) {
    timer.setInterval(pace);
    QObject::connect(&timer, &QTimer::timeout, q, [this] { decide(); });
}

void ProgressDialog::Private::makeWidgets() {
    auto* const column = new QVBoxLayout(q);
    auto* const inside = new QWidget;
    list = new QVBoxLayout(inside);
    list->setContentsMargins(0, 0, 6, 0);
    list->addStretch(1);
    area = new QScrollArea(q);
    area->setWidget(inside);
    area->setWidgetResizable(true);
    area->setFrameShape(QFrame::NoFrame);
    area->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    area->setFocusPolicy(Qt::NoFocus);
    column->addWidget(area, 1);
    auto* const buttons = new QHBoxLayout;
    cancelAll = new QPushButton(tr("Cancel All"), q);
    cancelAll->setAutoDefault(false);
    QObject::connect(cancelAll, &QPushButton::clicked, q, [this] {
        if (manager)
            manager->cancelAll();
    });
    hide = new QPushButton(tr("Hide"), q);
    hide->setAutoDefault(false);
    hide->setToolTip(tr("The work goes on (Esc)"));
    QObject::connect(hide, &QPushButton::clicked, q, [this] { hideByUser(); });
    buttons->addStretch(1);
    buttons->addWidget(cancelAll);
    buttons->addWidget(hide);
    column->addLayout(buttons);
    q->resize(440, 160);
}

void ProgressDialog::Private::addRow(int row) {
    auto* const added = new ProgressRow(manager, manager->task(row), q);
    added->setModal(q->isModal() || q->windowModality() != Qt::NonModal);
    QObject::connect(added, &ProgressRow::hideWanted, q, [this, added] { hideRow(added); });
    rows.insert(rows.begin() + row, added);
    list->insertWidget(row, added);
    timer.start();
    refreshFrame();
    if (q->isVisible())
        fit();
}

void ProgressDialog::Private::removeRow(int row) {
    if (row < 0 || row >= static_cast<int>(rows.size()))
        return;
    ProgressRow* const removed = rows[static_cast<std::size_t>(row)];
    dismissed.erase(removed->task());
    rows.erase(rows.begin() + row);
    list->removeWidget(removed);
    removed->hide();
    removed->deleteLater(); // it may be its own button that was pressed
    timer.start();
    refreshFrame();
}

void ProgressDialog::Private::clear() {
    while (!rows.empty())
        removeRow(static_cast<int>(rows.size()) - 1);
}

void ProgressDialog::Private::refresh(int first, int last) {
    if (q->isVisible()) {
        for (int row = first; row <= last && row < static_cast<int>(rows.size()); ++row)
            rows[static_cast<std::size_t>(row)]->refresh();
    }
    if (!titleAge.isValid() || titleAge.hasExpired(titlePace))
        refreshFrame();
}

void ProgressDialog::Private::refreshFrame() {
    titleAge.start();
    const int running = manager ? manager->runningCount() : 0;
    cancelAll->setVisible(running > 1);
    hide->setVisible(q->windowModality() == Qt::NonModal);
    q->setWindowTitle(title());
}

// Room for some tasks, but not for any number.
void ProgressDialog::Private::fit() {
    if (rows.size() < 2)
        return;
    int height = 0;
    for (std::size_t i = 0; i < rows.size() && i < rowsInSight; ++i)
        height += rows[i]->sizeHint().height() + list->spacing();
    const int others = q->layout()->sizeHint().height() - area->sizeHint().height();
    q->resize(q->width(), std::max(q->height(), height + others));
}

QString ProgressDialog::Private::title() const {
    if (!manager)
        return {};
    const int running = manager->runningCount();
    if (running > 1)
        return tr("%n tasks", nullptr, running);
    for (int row = 0; row < manager->count(); ++row) {
        const auto task = manager->task(row);
        if (task->isEnded() && running > 0)
            continue;
        const double fraction = manager->shownFraction(row);
        return fraction < 0 || task->isEnded()
                   ? task->title()
                   : tr("%1 % - %2").arg(static_cast<int>(fraction * 100)).arg(task->title());
    }
    return tr("Tasks");
}

bool ProgressDialog::Private::wantsToOpen() const {
    if (!manager || !opensByItself)
        return false;
    for (int row = 0; row < manager->count(); ++row) {
        const auto task = manager->task(row);
        const bool isMoving = task->state() == ProgressTask::State::Running;
        if (!isMoving || dismissed.count(task.get()) > 0)
            continue;
        const auto age = std::chrono::duration_cast<milliseconds>(task->workingTime());
        const double fraction = task->fraction();
        // Before a time can be shown there is the plain one.
        const double left =
            fraction > 0 ? double(age.count()) / 1000 * (1 - fraction) / fraction : -1;
        const bool isLong = left > double(worthIt.count()) || (left < 0 && age >= unknownAfter);
        if (age >= showAfter && isLong)
            return true;
    }
    return false;
}

// Whether something goes on, or waits to be read.
bool ProgressDialog::Private::isNeeded() const {
    if (!manager)
        return false;
    const auto tasks = manager->tasks();
    return std::any_of(tasks.begin(), tasks.end(), [](const auto& task) {
        return !task->isEnded() || task->state() == ProgressTask::State::Failed;
    });
}

void ProgressDialog::Private::decide() {
    const bool needed = isNeeded();
    if (!q->isVisible()) {
        if (wantsToOpen())
            q->show();
        else if (!needed)
            timer.stop();
        if (!needed && isFollowing && !q->isVisible())
            q->deleteLater();
        return;
    }
    if (needed || !closesWhenIdle || !visibleFor.hasExpired(leastVisible))
        return;
    timer.stop();
    q->hide();
    if (isFollowing)
        q->deleteLater();
}

// One that does not stop is not looked at any longer; the others are.
void ProgressDialog::Private::hideRow(ProgressRow* row) {
    row->hide();
    dismissed.insert(row->task());
    if (std::all_of(rows.begin(), rows.end(), [](const auto* each) { return each->isHidden(); }))
        hideByUser();
}

QString ProgressDialog::Private::placeKey() const {
    return QStringLiteral("progress/%1/place").arg(q->objectName());
}

void ProgressDialog::Private::savePlace() const {
    if (remembersPlace && isPlaced)
        AppSettings().setValue(placeKey(), q->geometry());
}

// Once: what the user does with it afterwards, the dialog keeps by itself.
void ProgressDialog::Private::restorePlace() {
    if (!remembersPlace || isPlaced)
        return;
    isPlaced = true;
    const QRect place = AppSettings().value(placeKey()).toRect();
    if (place.isValid())
        q->setGeometry(WindowPlacement::pulledBack(place, WindowPlacement::availableAreas()));
}

void ProgressDialog::Private::hideByUser() {
    const bool goesOn = manager && !manager->isIdle();
    dismissed.clear();
    for (const ProgressRow* row : rows)
        dismissed.insert(row->task());
    const QPointer<ProgressDialog> alive(q);
    q->hide();
    // Who closes the dialog has seen what it said.
    const auto tasks = manager ? manager->tasks() : std::vector<std::shared_ptr<ProgressTask>>();
    for (const auto& task : tasks) {
        if (alive && manager && task->state() == ProgressTask::State::Failed)
            manager->acknowledge(task.get());
    }
    if (alive && goesOn)
        Q_EMIT q->hiddenByUser();
}

} // namespace Kestrel::UI
