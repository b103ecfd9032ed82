#include <KxUI/kit/Disclosure_p.h>

#include <KxUI/kit/DisclosureAccessible_p.h>
#include <KxUI/settings/AppSettings.h>

#include <QCoreApplication>
#include <QLayoutItem>
#include <QScrollArea>
#include <QScrollBar>
#include <QStyle>
#include <QTimer>
#include <QVariantAnimation>

#include <algorithm>
#include <cmath>

namespace Kestrel::UI {
namespace {

/** Above this, most frames of an animation would show nothing but a scrolled
 * panel. */
constexpr int HighestMoving = 2000;

/** One object for all sections: it writes once for all that change at the same
 * time. */
AppSettings& settings() {
    struct Store {
        QPointer<AppSettings> object;
        QString names;
    };
    static Store store;
    const QString names = QCoreApplication::organizationName() + QLatin1Char('\n') +
                          QCoreApplication::applicationName();
    if (!store.object || store.names != names) {
        delete store.object;
        store.object = new AppSettings(QCoreApplication::instance());
        store.names = names;
    }
    return *store.object;
}

QString pathOf(const QString& key) {
    return QStringLiteral("disclosures/") + key;
}

/** Puts what the Tab key reaches in a widget behind another one. What comes to
    a window late would be reached last. */
void chainBehind(QWidget* before, QWidget* root) {
    QVector<QWidget*> own;
    QWidget* widget = root;
    do {
        if ((widget == root || root->isAncestorOf(widget)) && !widget->focusProxy() &&
            (widget->focusPolicy() & Qt::TabFocus))
            own.append(widget);
        widget = widget->nextInFocusChain();
    } while (widget != root);
    for (QWidget* each : qAsConst(own)) {
        QWidget::setTabOrder(before, each);
        before = each;
    }
}

} // namespace

DisclosurePrivate::DisclosurePrivate(Disclosure* disclosure)
    : q(disclosure)
    , header(new DisclosureHeader(disclosure, this))
    , viewport(new QWidget(disclosure))
    , check(
          disclosure, [this] { return checked; }, [this](bool value) { storeChecked(value); }) {
    viewport->hide();
    viewport->installEventFilter(q);
    q->setFocusProxy(header);
    q->setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
}

bool DisclosurePrivate::isMoving() const {
    return m_animation && m_animation->state() != QAbstractAnimation::Stopped;
}

int DisclosurePrivate::headerHeight() const {
    return header->sizeHint().height();
}

int DisclosurePrivate::contentHeight(int width) const {
    if (!content || content->isHidden())
        return 0;
    const QWidgetItem item(content);
    return item.hasHeightForWidth() ? item.heightForWidth(width) : item.sizeHint().height();
}

int DisclosurePrivate::seenHeight(int width) const {
    if (progress <= 0.0)
        return 0;
    const int whole = contentHeight(width);
    return progress >= 1.0 ? whole : static_cast<int>(std::lround(progress * whole));
}

void DisclosurePrivate::adopt(QWidget* widget) {
    content = widget;
    if (!widget)
        return;
    const bool hiddenByHost =
        widget->isHidden() && widget->testAttribute(Qt::WA_WState_ExplicitShowHide);
    widget->setParent(viewport);
    // In a viewport that is hidden it is seen with that, and not laid out before.
    if (!hiddenByHost && viewport->isVisible())
        widget->show();
    chainBehind(header->lastInTabOrder(), widget);
}

void DisclosurePrivate::makeContent() {
    if (!factory)
        return;
    const Disclosure::ContentFactory make = std::move(factory);
    factory = nullptr;
    const QPointer<Disclosure> alive(q);
    const QPointer<QWidget> made = make();
    if (alive && !content)
        adopt(made);
    else
        delete made;
}

bool DisclosurePrivate::setOpen(bool open, bool revealed) {
    if (open == expanded)
        return true;
    const QPointer<Disclosure> alive(q);
    expanded = open;
    if (open)
        makeContent();
    if (!alive)
        return false;
    if (expanded != open) // the factory closed it again
        return true;
    giveFocusToHeader();
    remember();
    m_revealing = open && revealed;
    move();
    header->shownChanged();
    if (open && exclusive)
        closeOthers();
    if (!alive || expanded != open)
        return !alive.isNull();
    DisclosureAccessible::tellExpanded(header);
    Q_EMIT q->expandedChanged(open);
    return !alive.isNull();
}

int DisclosurePrivate::duration() const {
    if (!animated || !q->isVisible() || contentHeight(q->width()) > HighestMoving)
        return 0;
    return q->style()->styleHint(QStyle::SH_Widget_Animation_Duration, nullptr, q);
}

void DisclosurePrivate::move() {
    const double target = expanded ? 1.0 : 0.0;
    const double way = std::abs(target - progress);
    const int time = static_cast<int>(std::lround(duration() * way));
    if (m_animation)
        m_animation->stop();
    if (time <= 0) {
        settle();
        return;
    }
    if (!m_animation) {
        m_animation = new QVariantAnimation(q);
        m_animation->setEasingCurve(QEasingCurve::InOutQuad);
        QObject::connect(m_animation, &QVariantAnimation::valueChanged, q,
                         [this](const QVariant& now) { setProgress(now.toDouble()); });
        QObject::connect(m_animation, &QVariantAnimation::finished, q, [this] { settle(); });
    }
    m_animation->setStartValue(progress);
    m_animation->setEndValue(target);
    m_animation->setDuration(time);
    m_animation->start();
    followContentPolicy();
    place(); // at its final size before it is seen
    viewport->show();
}

void DisclosurePrivate::setProgress(double now) {
    if (!isMoving() || now == progress)
        return;
    progress = now;
    header->update();
    q->updateGeometry();
}

void DisclosurePrivate::settle() {
    if (m_animation)
        m_animation->stop();
    progress = expanded ? 1.0 : 0.0;
    if (expanded && content && !viewport->isVisible()) {
        // Its final size before it is seen, so that it is laid out once.
        const int width = q->width();
        viewport->setGeometry(0, headerHeight(), width, contentHeight(width));
        QWidgetItem(content).setGeometry(QRect(0, 0, width, contentHeight(width)));
    }
    giveFocusToHeader();
    viewport->setVisible(expanded);
    followContentPolicy();
    q->updateGeometry();
    place();
    header->update();
    // Once the layouts around have given it its room.
    if (m_revealing && q->isVisible())
        QTimer::singleShot(0, q, [this] { reveal(); });
    m_revealing = false;
}

void DisclosurePrivate::followContentPolicy() {
    QSizePolicy policy = q->sizePolicy();
    const bool open = expanded && !isMoving() && content && !content->isHidden();
    const bool grows = open && (QWidgetItem(content).expandingDirections() & Qt::Vertical) != 0;
    policy.setVerticalPolicy(grows  ? QSizePolicy::Expanding
                             : open ? QSizePolicy::Maximum
                                    : QSizePolicy::Fixed);
    q->setSizePolicy(policy);
}

void DisclosurePrivate::place() {
    const int head = headerHeight();
    header->setGeometry(0, 0, q->width(), head);
    viewport->setGeometry(0, head, q->width(), std::max(0, q->height() - head));
    if (!content || content->isHidden() || progress + (expanded ? 1.0 : 0.0) <= 0.0)
        return;
    QWidgetItem item(content);
    const bool fits = viewport->height() >= item.minimumSize().height();
    // Where it does not fit, the layout around has not heard yet, or has no more
    // room to give.
    const int height = isMoving() || !fits ? contentHeight(q->width()) : viewport->height();
    item.setGeometry(QRect(0, 0, q->width(), height));
}

void DisclosurePrivate::contentChanged() {
    if (!isMoving())
        followContentPolicy();
    q->updateGeometry();
    place();
}

void DisclosurePrivate::giveFocusToHeader() {
    const QWidget* const focus = q->window()->focusWidget();
    if (!expanded && focus && viewport->isAncestorOf(focus))
        header->setFocus(Qt::OtherFocusReason);
}

void DisclosurePrivate::remember() const {
    if (!settingsKey.isEmpty())
        settings().setValue(pathOf(settingsKey), expanded);
}

QVariant DisclosurePrivate::remembered(const QString& key) {
    return settings().value(pathOf(key));
}

QVector<QPointer<Disclosure>> DisclosurePrivate::peers() const {
    QList<Disclosure*> all;
    if (!group.isEmpty())
        all = q->window()->findChildren<Disclosure*>();
    else if (q->parentWidget())
        all = q->parentWidget()->findChildren<Disclosure*>(QString(), Qt::FindDirectChildrenOnly);
    if (!all.contains(q))
        all.append(q);
    all.erase(std::remove_if(all.begin(), all.end(),
                             [this](const Disclosure* each) { return each->d->group != group; }),
              all.end());
    const QWidget* const window = q->window();
    const auto placeOf = [window](const Disclosure* each) {
        const QPoint at = each->mapTo(window, QPoint());
        return std::make_pair(at.y(), at.x());
    };
    std::sort(all.begin(), all.end(), [&placeOf](const Disclosure* a, const Disclosure* b) {
        return placeOf(a) < placeOf(b);
    });
    QVector<QPointer<Disclosure>> guarded;
    for (Disclosure* each : qAsConst(all))
        guarded.append(each);
    return guarded;
}

void DisclosurePrivate::closeOthers() {
    const auto others = peers();
    for (const QPointer<Disclosure>& other : others) {
        if (other && other->d.get() != this)
            other->d->setOpen(false, false);
    }
}

void DisclosurePrivate::setAllOpen(bool open) {
    const auto all = exclusive && open ? QVector<QPointer<Disclosure>>{q} : peers();
    const Disclosure* const own = q; // which may go meanwhile
    for (const QPointer<Disclosure>& each : all) {
        if (each)
            each->d->setOpen(open, each == own);
    }
}

void DisclosurePrivate::goToPeer(int step) {
    const auto all = peers();
    int at = static_cast<int>(all.indexOf(q));
    do
        at += step;
    while (at >= 0 && at < all.size() && (!all[at]->isVisible() || !all[at]->isEnabled()));
    if (at >= 0 && at < all.size())
        all[at]->d->header->setFocus(step < 0 ? Qt::BacktabFocusReason : Qt::TabFocusReason);
}

void DisclosurePrivate::editChecked(bool value) {
    check.editOnce(value);
}

void DisclosurePrivate::storeChecked(bool value) {
    if (value == checked)
        return;
    checked = value;
    header->update();
    DisclosureAccessible::tellChecked(header);
    Q_EMIT q->toggled(value);
}

void DisclosurePrivate::reveal() {
    for (QWidget* widget = q->parentWidget(); widget; widget = widget->parentWidget()) {
        auto* const area = qobject_cast<QScrollArea*>(widget);
        if (!area || !area->widget() || !area->widget()->isAncestorOf(q))
            continue;
        const int top = q->mapTo(area->widget(), QPoint()).y();
        QScrollBar* const bar = area->verticalScrollBar();
        bar->setValue(
            revealedOffset(top, top + q->height(), area->viewport()->height(), bar->value()));
        return;
    }
}

} // namespace Kestrel::UI
