#include <KxUI/progress/ProgressRow_p.h>

#include <KxUI/progress/ElidedLabel_p.h>
#include <KxUI/progress/ProgressDialog.h>
#include <KxUI/progress/ProgressManager_p.h>
#include <KxUI/progress/ProgressText.h>

#include <QAccessible>
#include <QClipboard>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QProgressBar>
#include <QPushButton>
#include <QStyle>
#include <QToolButton>
#include <QVBoxLayout>

namespace Kestrel::UI {
namespace {

using State = ProgressTask::State;

constexpr int barSteps = 1000;
constexpr double patience = 5;      // seconds until it is said that the work still stops
constexpr double mostPatience = 30; // and until nobody need look at it any more

void makeQuiet(QLabel& label) {
    label.setForegroundRole(QPalette::PlaceholderText);
}

} // namespace

void showOnBar(QProgressBar& bar, double fraction) {
    const int most = fraction < 0 ? 0 : barSteps;
    if (bar.maximum() != most)
        bar.setRange(0, most);
    if (most > 0)
        bar.setValue(static_cast<int>(fraction * barSteps));
}

ProgressRow::ProgressRow(ProgressManager* manager, std::shared_ptr<ProgressTask> task,
                         QWidget* parent)
    : QWidget(parent)
    , m_manager(manager)
    , m_task(std::move(task)) {
    auto* const column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 8);
    column->setSpacing(3);
    makeHead(*column);
    makeBar(*column);
    makeFoot(*column);
    m_parts = new QWidget(this);
    m_parts->hide();
    auto* const parts = new QVBoxLayout(m_parts);
    parts->setContentsMargins(20, 2, 0, 0);
    parts->setSpacing(2);
    column->addWidget(m_parts);
    setAccessibleName(m_task->title());
    refresh();
}

ProgressRow::~ProgressRow() = default;

void ProgressRow::makeHead(QVBoxLayout& column) {
    auto* const row = new QHBoxLayout;
    m_icon = new QLabel(this);
    const int side = style()->pixelMetric(QStyle::PM_SmallIconSize, nullptr, this);
    m_icon->setPixmap(
        style()->standardIcon(QStyle::SP_MessageBoxCritical, nullptr, this).pixmap(side, side));
    m_icon->hide();
    m_title = new ElidedLabel(this);
    m_title->setText(m_task->title());
    m_title->setToolTip(m_task->title());
    QFont bold = m_title->font();
    bold.setBold(true);
    m_title->setFont(bold);
    m_fold = new QToolButton(this);
    m_fold->setArrowType(Qt::RightArrow);
    m_fold->setAutoRaise(true);
    m_fold->setCheckable(true);
    m_fold->setToolTip(ProgressDialog::tr("Shows the parts of this task"));
    m_fold->setAccessibleName(ProgressDialog::tr("Parts"));
    m_fold->hide();
    connect(m_fold, &QToolButton::toggled, this, [this](bool isOpen) {
        m_fold->setArrowType(isOpen ? Qt::DownArrow : Qt::RightArrow);
        m_parts->setVisible(isOpen);
    });
    row->addWidget(m_fold);
    row->addWidget(m_icon);
    row->addWidget(m_title, 1);
    column.addLayout(row);
    m_detail = new ElidedLabel(this);
    makeQuiet(*m_detail);
    column.addWidget(m_detail);
    m_error = new QLabel(this);
    m_error->setTextFormat(Qt::PlainText);
    m_error->setWordWrap(true);
    m_error->setTextInteractionFlags(Qt::TextSelectableByMouse);
    m_error->hide();
    column.addWidget(m_error);
}

QPushButton* ProgressRow::addButton(QHBoxLayout& row, const QString& text,
                                    void (ProgressRow::*pressed)()) {
    auto* const button = new QPushButton(text, this);
    // Return is for what the user does elsewhere.
    button->setAutoDefault(false);
    connect(button, &QPushButton::clicked, this, pressed);
    row.addWidget(button);
    return button;
}

void ProgressRow::makeBar(QVBoxLayout& column) {
    auto* const row = new QHBoxLayout;
    m_bar = new QProgressBar(this);
    m_bar->setTextVisible(false);
    m_bar->setAccessibleName(m_task->title());
    row->addWidget(m_bar, 1000);
    row->addStretch(1); // where there is no bar
    m_pause = addButton(*row, ProgressDialog::tr("Pause"), &ProgressRow::pauseOrResume);
    m_cancel = addButton(*row, ProgressDialog::tr("&Cancel"), &ProgressRow::cancel);
    m_copy = addButton(*row, ProgressDialog::tr("Copy Details"), &ProgressRow::copyDetails);
    m_close = addButton(*row, ProgressDialog::tr("Close"), &ProgressRow::close);
    column.addLayout(row);
}

void ProgressRow::makeFoot(QVBoxLayout& column) {
    auto* const row = new QHBoxLayout;
    m_amount = new ElidedLabel(this);
    m_status = new QLabel(this);
    m_status->setTextFormat(Qt::PlainText);
    m_status->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    makeQuiet(*m_amount);
    row->addWidget(m_amount, 1);
    row->addWidget(m_status);
    column.addLayout(row);
}

double ProgressRow::now() const {
    return ProgressManagerClock::of(*m_manager)();
}

// How long the work was asked to end and has not, in seconds.
double ProgressRow::cancellingFor() {
    if (m_task->state() != State::Cancelling)
        m_cancellingSince = -1;
    else if (m_cancellingSince < 0)
        m_cancellingSince = now();
    return m_cancellingSince < 0 ? 0 : now() - m_cancellingSince;
}

QString ProgressRow::statusText() const {
    const State state = m_task->state();
    if (m_cancellingSince >= 0 && now() - m_cancellingSince >= patience)
        return ProgressDialog::tr("Still stopping: waiting for the current step.");
    QString text = m_manager->statusText(m_manager->rowOf(m_task.get()));
    const bool canStop = m_task->abilities() & ProgressTask::Cancellable;
    if (m_isModal && !canStop && state == State::Running && text.isEmpty())
        text = ProgressDialog::tr("This cannot be stopped.");
    return text;
}

void ProgressRow::refresh() {
    if (!m_manager)
        return;
    const State state = m_task->state();
    const bool isFailed = state == State::Failed;
    m_icon->setVisible(isFailed);
    m_detail->setText(m_task->detail());
    m_detail->setVisible(!m_task->isEnded() && !m_detail->text().isEmpty());
    m_error->setVisible(isFailed);
    m_bar->setVisible(!isFailed);
    const double fraction = m_manager->shownFraction(m_manager->rowOf(m_task.get()));
    showOnBar(*m_bar,
              m_task->isEnded() || state == State::Queued ? std::max(0.0, fraction) : fraction);
    const bool canBeHidden = cancellingFor() >= mostPatience && !m_isModal;
    const QString status = statusText();
    const double seconds = std::chrono::duration<double>(m_task->workingTime()).count();
    const QString worked = ProgressText::duration(seconds);
    QLabel* const place = isFailed ? m_error : m_status;
    if (place->text() != status)
        place->setText(status);
    m_status->setVisible(!isFailed);
    m_amount->setVisible(!isFailed);
    const QString amount = ProgressText::amount(*m_task);
    m_amount->setText(seconds < 1        ? amount
                      : amount.isEmpty() ? ProgressDialog::tr("%1 so far").arg(worked)
                                         : ProgressDialog::tr("%1, %2 so far").arg(amount, worked));
    const QString percent =
        fraction < 0 ? QString()
                     : ProgressDialog::tr("%1 percent, ").arg(static_cast<int>(fraction * 100));
    m_bar->setAccessibleDescription(percent + status);
    tell(fraction, percent + status);
    refreshButtons(canBeHidden);
    refreshParts();
}

// To who cannot see it, and not all the time.
void ProgressRow::tell(double fraction, const QString& status) {
    setAccessibleDescription(status);
    if (m_news.isDue(now(), fraction, m_task->state()) && isVisible() && QAccessible::isActive()) {
        QAccessibleEvent news(this, QAccessible::Alert);
        QAccessible::updateAccessibility(&news);
    }
}

void ProgressRow::refreshButtons(bool canBeHidden) {
    const State state = m_task->state();
    const bool goesOn = !m_task->isEnded();
    m_pause->setVisible(goesOn && (m_task->abilities() & ProgressTask::Pausable));
    m_pause->setEnabled(state == State::Running || state == State::Paused);
    m_pause->setText(state == State::Paused ? ProgressDialog::tr("Resume")
                                            : ProgressDialog::tr("Pause"));
    m_cancel->setVisible(goesOn && (m_task->abilities() & ProgressTask::Cancellable));
    m_cancel->setEnabled(state != State::Cancelling || canBeHidden);
    m_cancel->setText(canBeHidden                  ? ProgressDialog::tr("Hide")
                      : state == State::Cancelling ? ProgressDialog::tr("Cancelling\u2026")
                                                   : ProgressDialog::tr("&Cancel"));
    m_copy->setVisible(state == State::Failed);
    m_close->setVisible(state == State::Failed);
}

void ProgressRow::refreshParts() {
    const auto parts = m_task->children();
    m_fold->setVisible(!parts.empty());
    for (std::size_t i = m_partRows.size(); i < parts.size(); ++i) {
        auto* const row = new QWidget(m_parts);
        auto* const line = new QHBoxLayout(row);
        line->setContentsMargins(0, 0, 0, 0);
        auto* const title = new ElidedLabel(row);
        title->setText(parts[i]->title());
        auto* const bar = new QProgressBar(row);
        bar->setTextVisible(false);
        bar->setAccessibleName(parts[i]->title());
        bar->setMaximumHeight(bar->fontMetrics().height() * 2 / 3);
        line->addWidget(title, 1);
        line->addWidget(bar, 1);
        m_parts->layout()->addWidget(row);
        m_partRows.push_back({parts[i], row, bar});
    }
    for (const Part& part : m_partRows) {
        const double fraction = part.task->fraction();
        const bool isMoving = part.task->state() == State::Running;
        showOnBar(*part.bar, isMoving ? fraction : std::max(0.0, fraction));
    }
}

void ProgressRow::cancel() {
    if (m_task->state() == State::Cancelling)
        return Q_EMIT hideWanted();
    const QPointer<ProgressRow> alive(this);
    m_task->cancel();
    if (alive)
        refresh(); // at once, not at the next look
}

void ProgressRow::pauseOrResume() {
    if (m_task->state() == State::Paused)
        m_task->resume();
    else
        m_task->pause();
    refresh();
}

void ProgressRow::copyDetails() {
    QStringList lines{m_task->title(), m_task->error(), m_task->detail()};
    lines.removeAll(QString());
    QGuiApplication::clipboard()->setText(lines.join(QLatin1Char('\n')));
}

void ProgressRow::close() {
    if (m_manager)
        m_manager->acknowledge(m_task.get());
}

} // namespace Kestrel::UI
