#include <KxUI/progress/ProgressStrip.h>

#include <KxUI/kit/InterfaceThread_p.h>
#include <KxUI/progress/ElidedLabel_p.h>
#include <KxUI/progress/ProgressManager_p.h>
#include <KxUI/progress/ProgressNews_p.h>
#include <KxUI/progress/ProgressRow_p.h>
#include <KxUI/progress/ProgressText.h>

#include <QAccessible>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QPainter>
#include <QPointer>
#include <QProgressBar>
#include <QStyle>
#include <QStyleOptionFocusRect>

namespace Kestrel::UI {

struct ProgressStrip::Private {
    explicit Private(ProgressStrip* strip)
        : q(strip) {}

    void makeWidgets();
    int shownRow() const;
    void refresh();
    void press();
    void tell(const ProgressTask& task, double fraction);

    ProgressStrip* const q;
    QPointer<ProgressManager> manager;
    QPointer<QWidget> opened;
    QLabel* icon = nullptr;
    ElidedLabel* title = nullptr;
    QProgressBar* bar = nullptr;
    QLabel* status = nullptr;
    QLabel* others = nullptr;
    ProgressNews news; ///< of `told`
    const ProgressTask* told = nullptr;
};

void ProgressStrip::Private::makeWidgets() {
    auto* const row = new QHBoxLayout(q);
    row->setContentsMargins(4, 1, 4, 1);
    icon = new QLabel(q);
    const int side = q->style()->pixelMetric(QStyle::PM_SmallIconSize, nullptr, q);
    icon->setPixmap(
        q->style()->standardIcon(QStyle::SP_MessageBoxCritical, nullptr, q).pixmap(side, side));
    title = new ElidedLabel(q);
    bar = new QProgressBar(q);
    bar->setTextVisible(false);
    bar->setFixedWidth(96);
    bar->setMaximumHeight(q->fontMetrics().height() * 2 / 3);
    status = new QLabel(q);
    status->setTextFormat(Qt::PlainText);
    others = new QLabel(q);
    row->addWidget(icon);
    row->addWidget(title, 1);
    row->addWidget(bar);
    row->addWidget(status);
    row->addWidget(others);
    for (QWidget* child :
         {static_cast<QWidget*>(icon), static_cast<QWidget*>(title), static_cast<QWidget*>(bar),
          static_cast<QWidget*>(status), static_cast<QWidget*>(others)})
        child->setAttribute(Qt::WA_TransparentForMouseEvents);
}

// What goes on before what has failed, and that before what is over.
int ProgressStrip::Private::shownRow() const {
    int failed = -1;
    for (int row = 0; manager && row < manager->count(); ++row) {
        const auto task = manager->task(row);
        if (!task->isEnded())
            return row;
        if (task->state() == ProgressTask::State::Failed)
            failed = row;
    }
    return failed;
}

void ProgressStrip::Private::refresh() {
    const int row = shownRow();
    for (QWidget* child : {static_cast<QWidget*>(title), static_cast<QWidget*>(status)})
        child->setVisible(row >= 0);
    q->setFocusPolicy(row >= 0 ? Qt::TabFocus : Qt::NoFocus);
    q->setCursor(row >= 0 ? Qt::PointingHandCursor : Qt::ArrowCursor);
    const auto task = row >= 0 ? manager->task(row) : nullptr;
    const bool hasFailed = task && task->state() == ProgressTask::State::Failed;
    icon->setVisible(hasFailed);
    bar->setVisible(task && !hasFailed);
    const int more = manager ? manager->runningCount() - 1 : 0;
    others->setVisible(more > 0);
    q->setToolTip(task ? task->detail() : QString());
    if (!task) {
        q->setAccessibleName(tr("Tasks"));
        return;
    }
    title->setText(task->title());
    showOnBar(*bar, manager->shownFraction(row));
    const QString text = hasFailed ? ProgressText::state(task->state()) : manager->statusText(row);
    status->setText(text);
    others->setText(tr("(+%1)").arg(more));
    q->setAccessibleName(task->title());
    q->setAccessibleDescription(text);
    tell(*task, manager->shownFraction(row));
}

// Where the dialog does not.
void ProgressStrip::Private::tell(const ProgressTask& task, double fraction) {
    if (told != &task) {
        told = &task;
        news = {};
    }
    const bool isDue = news.isDue(ProgressManagerClock::of(*manager)(), fraction, task.state());
    if (!isDue || !q->isVisible() || (opened && opened->isVisible()) || !QAccessible::isActive())
        return;
    QAccessibleEvent event(q, QAccessible::Alert);
    QAccessible::updateAccessibility(&event);
}

void ProgressStrip::Private::press() {
    if (shownRow() < 0)
        return;
    const QPointer<ProgressStrip> alive(q);
    if (opened) {
        opened->show();
        opened->raise();
        opened->activateWindow();
    }
    if (alive)
        Q_EMIT q->clicked();
}

ProgressStrip::ProgressStrip(QWidget* parent)
    : QWidget(parent)
    , d(std::make_unique<Private>(this)) {
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    d->makeWidgets();
    d->refresh();
}

ProgressStrip::~ProgressStrip() {
    if (d->manager)
        disconnect(d->manager, nullptr, this, nullptr);
}

ProgressManager* ProgressStrip::manager() const {
    return d->manager;
}

void ProgressStrip::setManager(ProgressManager* manager) {
    KXUI_INTERFACE_THREAD(this);
    if (manager == d->manager)
        return;
    if (d->manager)
        disconnect(d->manager, nullptr, this, nullptr);
    d->manager = manager;
    const auto refresh = [this] { d->refresh(); };
    if (manager) {
        connect(manager, &ProgressManager::taskAdded, this, refresh);
        connect(manager, &ProgressManager::taskChanged, this, refresh);
        connect(manager, &ProgressManager::taskRemoved, this, refresh);
        connect(manager, &QObject::destroyed, this, refresh);
    }
    refresh();
}

QWidget* ProgressStrip::opened() const {
    return d->opened;
}

void ProgressStrip::setOpened(QWidget* dialog) {
    d->opened = dialog;
}

// The same whether something goes on or not, so that the status bar does not jump.
QSize ProgressStrip::sizeHint() const {
    return {360, std::max(fontMetrics().height() + 6, 24)};
}

void ProgressStrip::mouseReleaseEvent(QMouseEvent* event) {
    if (event->button() == Qt::LeftButton && rect().contains(event->pos()))
        d->press();
}

void ProgressStrip::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Space || event->key() == Qt::Key_Return)
        d->press();
    else
        QWidget::keyPressEvent(event);
}

void ProgressStrip::paintEvent(QPaintEvent*) {
    if (!hasFocus())
        return;
    QPainter painter(this);
    QStyleOptionFocusRect option;
    option.initFrom(this);
    style()->drawPrimitive(QStyle::PE_FrameFocusRect, &option, &painter, this);
}

} // namespace Kestrel::UI
