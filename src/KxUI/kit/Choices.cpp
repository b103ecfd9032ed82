#include <KxUI/kit/Choices.h>

#include <KxUI/kit/Choices_p.h>
#include <KxUI/kit/InterfaceThread_p.h>

#include <QAction>
#include <QActionGroup>
#include <QMenu>
#include <QPainter>
#include <QPixmap>

#include <utility>

namespace Kestrel::UI {
namespace {

/** A menu's entry has no colour of its own. */
QIcon swatch(const QColor& color) {
    QPixmap picture(16, 16);
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    painter.fillRect(QRect(2, 2, 12, 12), color);
    return picture;
}

} // namespace

bool ChoicesPrivate::emitted(ChoiceSignal signal, int value) {
    const QPointer<QWidget> guard(owner);
    tell(signal, value);
    return guard;
}

void ChoicesPrivate::change(const std::function<void(ChoiceList&)>& change) {
    const QList<int> checked = list.checked();
    const int current = list.current();
    const int count = list.count();
    const bool exclusive = list.exclusive;
    change(list);
    const int now = list.current();
    shown(count != list.count());
    if (count != list.count() && !emitted(ChoiceSignal::CountChanged, list.count()))
        return;
    if (exclusive != list.exclusive && !emitted(ChoiceSignal::ExclusiveChanged, list.exclusive))
        return;
    if (checked != list.checked() && !emitted(ChoiceSignal::CheckedChanged))
        return;
    if (current != now && now == list.current()) // else a slot changed it again, which was told
        tell(ChoiceSignal::CurrentIndexChanged, now);
}

void ChoicesPrivate::choose(int index) {
    if (!list.has(index) || !list.at(index).enabled || isClosing())
        return;
    if (list.exclusive && list.at(index).checked) {
        tell(ChoiceSignal::Chosen, index);
        return;
    }
    const QPointer<QWidget> alive(owner);
    const bool byItself = gesture() == NoGesture;
    if (byItself) {
        if (!finish())
            return;
        keepStart();
    }
    if (!open())
        return;
    const int current = edit();
    const auto goesOn = [&] { return alive && isOpen(current); };
    if (list.has(index)) // else somebody who was told took it away
        change([index](ChoiceList& all) { all.check(index, !all.at(index).checked); });
    if (goesOn())
        tell(ChoiceSignal::ValueEdited, index);
    if (goesOn())
        tell(ChoiceSignal::Chosen, index);
    if (goesOn() && byItself)
        finish();
}

void ChoicesPrivate::chooseByKey(int index, const QKeyEvent& event) {
    if (beginKey(event) && gesture() == Keys)
        choose(index);
}

void ChoicesPrivate::goToStart() {
    const QPointer<QWidget> alive(owner);
    const QList<int> before = m_before;
    change([&before](ChoiceList& all) { all.setChecked(before); });
    if (alive)
        tell(ChoiceSignal::ValueEdited, list.current());
}

void ChoicesPrivate::fillMenu(QMenu* menu, int first) {
    menu->clear();
    delete menu->findChild<QActionGroup*>();
    auto* const group = new QActionGroup(menu);
    group->setExclusive(list.exclusive);
    auto nextBreak = breaks.begin();
    for (int i = 0; i < list.count(); ++i) {
        for (; nextBreak != breaks.end() && nextBreak->before <= i; ++nextBreak) {
            if (i >= first && nextBreak->title.isEmpty())
                menu->addSeparator();
            else if (i >= first)
                menu->addSection(nextBreak->title);
        }
        if (i < first)
            continue;
        const Choice& choice = list.at(i);
        const bool swatched = choice.icon.isNull() && choice.color.isValid();
        QAction* const action =
            menu->addAction(swatched ? swatch(choice.color) : choice.icon, choice.text);
        action->setCheckable(true);
        action->setActionGroup(group);
        action->setChecked(choice.checked);
        action->setEnabled(choice.enabled);
        if (!choice.toolTip.isEmpty())
            action->setToolTip(choice.toolTip);
        QObject::connect(action, &QAction::triggered, owner, [this, i] { choose(i); });
    }
}

Choices::Choices(std::unique_ptr<ChoicesPrivate> data)
    : d(std::move(data)) {}

Choices::~Choices() = default;

ChoicesPrivate& Choices::choices() const {
    return *d;
}

int Choices::addChoice(const QString& text, const QIcon& icon, const QVariant& data) {
    KXUI_INTERFACE_THREAD(d->owner);
    const int index = d->list.count();
    d->change([&](ChoiceList& list) {
        list.all.push_back({text, icon, data, QString(), QColor(), true, false});
    });
    return index;
}

void Choices::removeChoice(int index) {
    KXUI_INTERFACE_THREAD(d->owner);
    if (!d->list.has(index))
        return;
    for (ChoicesPrivate::Break& each : d->breaks)
        each.before -= each.before > index ? 1 : 0;
    d->change([index](ChoiceList& list) { list.all.erase(list.all.begin() + index); });
}

void Choices::clearChoices() {
    KXUI_INTERFACE_THREAD(d->owner);
    d->breaks.clear();
    d->change([](ChoiceList& list) { list.all.clear(); });
}

int Choices::choiceCount() const {
    return d->list.count();
}

QString Choices::choiceText(int index) const {
    return d->list.has(index) ? d->list.at(index).text : QString();
}

void Choices::setChoiceText(int index, const QString& text) {
    KXUI_INTERFACE_THREAD(d->owner);
    if (!d->list.has(index) || d->list.at(index).text == text)
        return;
    d->list.at(index).text = text;
    d->shown(true);
}

QIcon Choices::choiceIcon(int index) const {
    return d->list.has(index) ? d->list.at(index).icon : QIcon();
}

void Choices::setChoiceIcon(int index, const QIcon& icon) {
    KXUI_INTERFACE_THREAD(d->owner);
    if (!d->list.has(index))
        return;
    d->list.at(index).icon = icon;
    d->shown(true);
}

QVariant Choices::choiceData(int index) const {
    return d->list.has(index) ? d->list.at(index).data : QVariant();
}

void Choices::setChoiceData(int index, const QVariant& data) {
    KXUI_INTERFACE_THREAD(d->owner);
    if (d->list.has(index))
        d->list.at(index).data = data;
}

QString Choices::choiceToolTip(int index) const {
    return d->list.has(index) ? d->list.at(index).toolTip : QString();
}

void Choices::setChoiceToolTip(int index, const QString& toolTip) {
    KXUI_INTERFACE_THREAD(d->owner);
    if (d->list.has(index))
        d->list.at(index).toolTip = toolTip;
}

QColor Choices::choiceColor(int index) const {
    return d->list.has(index) ? d->list.at(index).color : QColor();
}

void Choices::setChoiceColor(int index, const QColor& color) {
    KXUI_INTERFACE_THREAD(d->owner);
    if (!d->list.has(index) || d->list.at(index).color == color)
        return;
    d->list.at(index).color = color;
    d->shown(false);
}

bool Choices::isChoiceEnabled(int index) const {
    return d->list.has(index) && d->list.at(index).enabled;
}

void Choices::setChoiceEnabled(int index, bool enabled) {
    KXUI_INTERFACE_THREAD(d->owner);
    if (!d->list.has(index) || d->list.at(index).enabled == enabled)
        return;
    d->list.at(index).enabled = enabled;
    d->shown(false);
}

int Choices::findChoice(const QVariant& data) const {
    for (int i = 0; i < d->list.count(); ++i) {
        if (d->list.at(i).data == data)
            return i;
    }
    return -1;
}

int Choices::currentIndex() const {
    return d->list.current();
}

void Choices::setCurrentIndex(int index) {
    KXUI_INTERFACE_THREAD(d->owner);
    if (index != -1 && !d->list.has(index))
        return;
    if (d->list.checked() != (index < 0 ? QList<int>() : QList<int>{index}))
        d->change([index](ChoiceList& list) { list.setChecked({index}); });
}

QVariant Choices::currentData() const {
    return choiceData(currentIndex());
}

bool Choices::isChoiceChecked(int index) const {
    return d->list.has(index) && d->list.at(index).checked;
}

void Choices::setChoiceChecked(int index, bool checked) {
    KXUI_INTERFACE_THREAD(d->owner);
    if (d->list.has(index) && d->list.at(index).checked != checked)
        d->change([=](ChoiceList& list) { list.check(index, checked); });
}

QList<int> Choices::checkedChoices() const {
    return d->list.checked();
}

bool Choices::isExclusive() const {
    return d->list.exclusive;
}

void Choices::setExclusive(bool exclusive) {
    KXUI_INTERFACE_THREAD(d->owner);
    if (exclusive == d->list.exclusive)
        return;
    d->change([exclusive](ChoiceList& list) {
        list.exclusive = exclusive;
        list.setChecked(list.checked());
    });
}

bool Choices::isEditing() const {
    return d->isEditing();
}

void Choices::takeBack() {
    d->cancel();
}

} // namespace Kestrel::UI
