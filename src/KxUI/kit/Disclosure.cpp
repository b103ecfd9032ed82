#include <KxUI/kit/Disclosure.h>

#include <KxUI/kit/DisclosureAccessible_p.h>
#include <KxUI/kit/Disclosure_p.h>
#include <KxUI/kit/InterfaceThread_p.h>

#include <QEvent>
#include <QLayoutItem>

#include <algorithm>
#include <utility>

namespace Kestrel::UI {

Disclosure::Disclosure(QWidget* parent)
    : QWidget(parent)
    , d(std::make_unique<DisclosurePrivate>(this)) {
    DisclosureAccessible::install();
}

Disclosure::~Disclosure() {
    // What the children are told while they go must not reach the data, which go first.
    d->viewport->removeEventFilter(this);
    delete d->header;
}

QString Disclosure::title() const {
    return d->title;
}

void Disclosure::setTitle(const QString& title) {
    KXUI_INTERFACE_THREAD(this);
    if (title == d->title)
        return;
    d->title = title;
    if (d->header->testAttribute(Qt::WA_WState_Polished))
        d->header->grabLetter();
    d->header->shownChanged();
    Q_EMIT titleChanged(title);
}

bool Disclosure::isExpanded() const {
    return d->expanded;
}

void Disclosure::setExpanded(bool expanded) {
    KXUI_INTERFACE_THREAD(this);
    d->setOpen(expanded, true);
}

void Disclosure::toggleExpanded() {
    setExpanded(!d->expanded);
}

void Disclosure::setAllExpanded(bool expanded) {
    KXUI_INTERFACE_THREAD(this);
    d->setAllOpen(expanded);
}

QString Disclosure::summary() const {
    return d->summary;
}

void Disclosure::setSummary(const QString& summary) {
    KXUI_INTERFACE_THREAD(this);
    if (summary == d->summary)
        return;
    d->summary = summary;
    d->header->shownChanged();
    Q_EMIT summaryChanged(summary);
}

bool Disclosure::isCheckable() const {
    return d->checkable;
}

void Disclosure::setCheckable(bool checkable) {
    KXUI_INTERFACE_THREAD(this);
    if (checkable == d->checkable)
        return;
    d->checkable = checkable;
    d->header->shownChanged();
    Q_EMIT checkableChanged(checkable);
}

bool Disclosure::isChecked() const {
    return d->checked;
}

void Disclosure::setChecked(bool checked) {
    KXUI_INTERFACE_THREAD(this);
    d->check.hostSet(checked);
    d->storeChecked(checked);
}

bool Disclosure::isModified() const {
    return d->modified;
}

void Disclosure::setModified(bool modified) {
    KXUI_INTERFACE_THREAD(this);
    if (modified == d->modified)
        return;
    d->modified = modified;
    d->header->shownChanged();
    Q_EMIT modifiedChanged(modified);
}

void Disclosure::setContent(QWidget* content) {
    KXUI_INTERFACE_THREAD(this);
    d->factory = nullptr;
    if (content == d->content)
        return;
    const QPointer<QWidget> before = d->content;
    d->adopt(content);
    delete before;
    d->settle();
}

QWidget* Disclosure::content() const {
    return d->content;
}

QWidget* Disclosure::takeContent() {
    KXUI_INTERFACE_THREAD(this);
    QWidget* const taken = d->content;
    d->content = nullptr;
    if (taken)
        taken->setParent(nullptr);
    d->settle();
    return taken;
}

void Disclosure::setContentFactory(ContentFactory factory) {
    KXUI_INTERFACE_THREAD(this);
    setContent(nullptr);
    d->factory = std::move(factory);
    if (!d->expanded)
        return;
    const QPointer<Disclosure> alive(this);
    d->makeContent();
    if (alive)
        d->settle();
}

void Disclosure::addHeaderWidget(QWidget* widget) {
    KXUI_INTERFACE_THREAD(this);
    if (widget)
        d->header->addWidget(widget);
}

QString Disclosure::group() const {
    return d->group;
}

void Disclosure::setGroup(const QString& group) {
    KXUI_INTERFACE_THREAD(this);
    if (group == d->group)
        return;
    d->group = group;
    Q_EMIT groupChanged(group);
}

bool Disclosure::exclusiveGroup() const {
    return d->exclusive;
}

void Disclosure::setExclusiveGroup(bool exclusive) {
    KXUI_INTERFACE_THREAD(this);
    if (exclusive == d->exclusive)
        return;
    d->exclusive = exclusive;
    Q_EMIT exclusiveGroupChanged(exclusive);
}

QString Disclosure::settingsKey() const {
    return d->settingsKey;
}

void Disclosure::setSettingsKey(const QString& key) {
    KXUI_INTERFACE_THREAD(this);
    if (key == d->settingsKey)
        return;
    d->settingsKey = key;
    const QPointer<Disclosure> alive(this);
    const QVariant remembered = key.isEmpty() ? QVariant() : DisclosurePrivate::remembered(key);
    if (remembered.isValid())
        d->setOpen(remembered.toBool(), false);
    if (alive)
        Q_EMIT settingsKeyChanged(key);
}

bool Disclosure::isAnimated() const {
    return d->animated;
}

void Disclosure::setAnimated(bool animated) {
    KXUI_INTERFACE_THREAD(this);
    if (animated == d->animated)
        return;
    d->animated = animated;
    if (!animated && d->isMoving())
        d->settle();
    Q_EMIT animatedChanged(animated);
}

bool Disclosure::isEditing() const {
    return d->check.isEditing();
}

void Disclosure::cancelEdit() {
    d->check.cancel();
}

QSize Disclosure::sizeHint() const {
    QSize hint = d->header->sizeHint();
    if (d->content && !d->content->isHidden()) {
        // As wide closed as open: panels do not change their width while one looks for something.
        const QSize own = QWidgetItem(d->content).sizeHint();
        hint.setWidth(std::max(hint.width(), own.width()));
        if (d->progress > 0.0)
            hint.rheight() += d->isMoving() ? d->seenHeight(width()) : own.height();
    }
    return hint;
}

QSize Disclosure::minimumSizeHint() const {
    QSize hint = d->header->minimumSizeHint();
    if (d->content && !d->content->isHidden()) {
        const QSize own = QWidgetItem(d->content).minimumSize();
        hint.setWidth(std::max(hint.width(), own.width()));
        if (d->progress > 0.0)
            hint.rheight() += d->isMoving() ? d->seenHeight(width()) : own.height();
    }
    return hint;
}

bool Disclosure::hasHeightForWidth() const {
    return d->content && d->progress > 0.0 && QWidgetItem(d->content).hasHeightForWidth();
}

int Disclosure::heightForWidth(int width) const {
    return hasHeightForWidth() ? d->headerHeight() + d->seenHeight(width) : -1;
}

bool Disclosure::event(QEvent* event) {
    if (event->type() == QEvent::LayoutRequest) { // the header's
        updateGeometry();
        d->place();
    }
    return QWidget::event(event);
}

bool Disclosure::eventFilter(QObject* watched, QEvent* event) {
    // Nothing is heard of a content that becomes another one before it is shown.
    const bool changed = event->type() == QEvent::LayoutRequest ||
                         event->type() == QEvent::ChildRemoved || event->type() == QEvent::Show;
    if (watched == d->viewport && changed)
        d->contentChanged();
    return QWidget::eventFilter(watched, event);
}

void Disclosure::changeEvent(QEvent* event) {
    QWidget::changeEvent(event);
    if (event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange)
        updateGeometry();
}

void Disclosure::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    d->place();
}

void Disclosure::hideEvent(QHideEvent* event) {
    QWidget::hideEvent(event);
    if (d->isMoving())
        d->settle(); // nobody sees the rest
}

} // namespace Kestrel::UI
