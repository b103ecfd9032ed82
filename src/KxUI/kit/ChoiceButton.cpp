#include <KxUI/kit/ChoiceButton.h>

#include <KxUI/kit/ChoiceAccessible_p.h>
#include <KxUI/kit/Choices_p.h>
#include <KxUI/kit/ColorContrast_p.h>
#include <KxUI/kit/InterfaceThread_p.h>

#include <QKeyEvent>
#include <QMenu>
#include <QStringList>
#include <QStyleOptionComboBox>
#include <QStyleOptionToolButton>
#include <QStylePainter>
#include <QWheelEvent>

#include <algorithm>
#include <optional>

namespace Kestrel::UI {
namespace {

constexpr int LabelMargin = 2;

} // namespace

/** The data of a ChoiceButton. */
class ChoiceButtonPrivate : public ChoicesPrivate {
public:
    explicit ChoiceButtonPrivate(ChoiceButton* button)
        : ChoicesPrivate(button)
        , q(button) {}

    void tell(ChoiceSignal signal, int value) override;
    void shown(bool sizes) override;

    /** The button's text follows what is on. */
    void showText();
    QStyleOptionComboBox comboOption() const;
    QSize sizeOf(int textWidth) const;
    /** Where a key leads; -1 for nowhere, empty for another key. */
    std::optional<int> wayOf(const QKeyEvent& event) const;
    bool opensMenu(const QKeyEvent& event) const;

    ChoiceButton* const q;
    QString placeholder;
    WheelPolicy::Policy wheelPolicy = WheelPolicy::WheelWhenFocused;
    mutable int widestText = -1;
};

ChoiceButton::ChoiceButton(QWidget* parent)
    : QToolButton(parent)
    , Choices(std::make_unique<ChoiceButtonPrivate>(this)) {
    ChoiceButtonAccessible::install();
    setFocusPolicy(Qt::StrongFocus);
    setPopupMode(QToolButton::InstantPopup);
    setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    setSizePolicy(QSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed, QSizePolicy::ComboBox));
    auto* const menu = new QMenu(this);
    setMenu(menu);
    connect(menu, &QMenu::aboutToShow, this, [this, menu] {
        d().fillMenu(menu, 0);
        menu->setMinimumWidth(width());
        const QList<QAction*> actions = menu->actions();
        const auto current =
            std::find_if(actions.begin(), actions.end(),
                         [](const QAction* action) { return action->isChecked(); });
        if (current != actions.end())
            menu->setActiveAction(*current);
    });
}

ChoiceButton::~ChoiceButton() = default;

ChoiceButtonPrivate& ChoiceButton::d() const {
    return static_cast<ChoiceButtonPrivate&>(choices());
}

void ChoiceButton::addSeparator() {
    addSection(QString());
}

void ChoiceButton::addSection(const QString& title) {
    KXUI_INTERFACE_THREAD(this);
    d().breaks.push_back({choiceCount(), title});
}

QString ChoiceButton::placeholderText() const {
    return d().placeholder;
}

void ChoiceButton::setPlaceholderText(const QString& text) {
    KXUI_INTERFACE_THREAD(this);
    if (text == d().placeholder)
        return;
    d().placeholder = text;
    d().shown(true);
    Q_EMIT placeholderTextChanged(text);
}

WheelPolicy::Policy ChoiceButton::wheelPolicy() const {
    return d().wheelPolicy;
}

void ChoiceButton::setWheelPolicy(WheelPolicy::Policy policy) {
    KXUI_INTERFACE_THREAD(this);
    if (policy == d().wheelPolicy)
        return;
    d().wheelPolicy = policy;
    Q_EMIT wheelPolicyChanged(policy);
}

void ChoiceButton::setCurrentIndex(int index) {
    Choices::setCurrentIndex(index);
}

void ChoiceButton::cancelEdit() {
    takeBack();
}

void ChoiceButtonPrivate::tell(ChoiceSignal signal, int value) {
    if (signal == ChoiceSignal::CheckedChanged)
        ChoiceButtonAccessible::tellValue(q);
    emitSignal(q, signal, value);
}

void ChoiceButtonPrivate::shown(bool sizes) {
    if (sizes) {
        widestText = -1;
        q->updateGeometry();
    }
    showText();
    q->update();
}

void ChoiceButtonPrivate::showText() {
    QStringList texts;
    for (const Choice& choice : list.all) {
        if (choice.checked)
            texts.append(choice.plainText());
    }
    q->setText(texts.isEmpty() ? placeholder : texts.join(QStringLiteral(", ")));
    q->setIcon(texts.size() == 1 ? list.at(list.current()).icon : QIcon());
}

QStyleOptionComboBox ChoiceButtonPrivate::comboOption() const {
    QStyleOptionComboBox option;
    option.initFrom(q);
    option.currentText = q->text();
    option.currentIcon = q->icon();
    option.iconSize = q->iconSize();
    option.subControls = QStyle::SC_All;
    if (q->isDown())
        option.state |= QStyle::State_Sunken;
    return option;
}

QSize ChoiceButtonPrivate::sizeOf(int textWidth) const {
    QStyleOptionComboBox option = comboOption();
    const QSize icon = list.hasIcons() ? q->iconSize() + QSize(4, 2) : QSize(0, 0);
    const QFontMetrics metrics = q->fontMetrics();
    const QSize contents(textWidth + icon.width(),
                         std::max({metrics.height(), icon.height(), 14}) + 2);
    QSize size = q->style()->sizeFromContents(QStyle::CT_ComboBox, &option, contents, q);
    // Not every style leaves the label the room that it was asked for.
    option.rect = QRect(QPoint(), size);
    const QRect field =
        q->style()->subControlRect(QStyle::CC_ComboBox, &option, QStyle::SC_ComboBoxEditField, q);
    size.rwidth() += std::max(0, contents.width() + LabelMargin - field.width());
    return size;
}

QSize ChoiceButton::sizeHint() const {
    ensurePolished();
    if (d().widestText < 0) {
        const QFontMetrics metrics = fontMetrics();
        int widest = metrics.horizontalAdvance(d().placeholder);
        for (const Choice& choice : d().list.all)
            widest = std::max(widest, metrics.horizontalAdvance(choice.plainText()));
        d().widestText = widest;
    }
    return d().sizeOf(d().widestText);
}

QSize ChoiceButton::minimumSizeHint() const {
    ensurePolished();
    return d().sizeOf(fontMetrics().averageCharWidth() * 4).boundedTo(sizeHint());
}

/** What a tool button has around the combo box's label, and its arrow. */
void ChoiceButton::paintPanel(QStylePainter& painter, const QStyleOptionComboBox& combo) {
    QStyleOptionToolButton panel;
    initStyleOption(&panel);
    if (isDown() || (isEnabled() && underMouse()) || hasFocus())
        painter.drawPrimitive(QStyle::PE_PanelButtonTool, panel);
    constexpr int arrow = 8;
    const QRect place =
        style()->subControlRect(QStyle::CC_ComboBox, &combo, QStyle::SC_ComboBoxArrow, this);
    panel.rect = QRect(0, 0, arrow, arrow);
    panel.rect.moveCenter(place.center());
    painter.drawPrimitive(QStyle::PE_IndicatorArrowDown, panel);
}

void ChoiceButton::paintEvent(QPaintEvent*) {
    QStylePainter painter(this);
    QStyleOptionComboBox option = d().comboOption();
    if (autoRaise())
        paintPanel(painter, option);
    else
        painter.drawComplexControl(QStyle::CC_ComboBox, option);
    const QRect field =
        style()->subControlRect(QStyle::CC_ComboBox, &option, QStyle::SC_ComboBoxEditField, this);
    const int icon = option.currentIcon.isNull() ? 0 : option.iconSize.width() + 4;
    option.currentText = fontMetrics().elidedText(option.currentText, Qt::ElideRight,
                                                  field.width() - icon - LabelMargin);
    if (currentIndex() < 0) // the palette's own for placeholders is that of text fields
        option.palette.setColor(QPalette::ButtonText,
                                mixed(option.palette.color(QPalette::Button),
                                      option.palette.color(QPalette::ButtonText), 0.6));
    painter.drawControl(QStyle::CE_ComboBoxLabel, option);
}

std::optional<int> ChoiceButtonPrivate::wayOf(const QKeyEvent& event) const {
    if ((event.modifiers() & ~Qt::KeypadModifier) != 0 || !list.exclusive)
        return {};
    switch (event.key()) {
    case Qt::Key_Up:
        return list.next(list.current() < 0 ? list.count() : list.current(), -1);
    case Qt::Key_Down:
        return list.next(list.current(), 1);
    case Qt::Key_Home:
        return list.next(-1, 1);
    case Qt::Key_End:
        return list.next(list.count(), -1);
    default:
        return {};
    }
}

bool ChoiceButtonPrivate::opensMenu(const QKeyEvent& event) const {
    switch (event.key()) {
    case Qt::Key_Down:
        return !list.exclusive || event.modifiers() == Qt::AltModifier;
    case Qt::Key_F4:
    case Qt::Key_Space:
    case Qt::Key_Return:
    case Qt::Key_Enter:
        return (event.modifiers() & ~Qt::KeypadModifier) == 0;
    default:
        return false;
    }
}

bool ChoiceButton::event(QEvent* event) {
    if (d().takes(event))
        return true;
    if (event->type() == QEvent::ShortcutOverride) {
        const auto& key = *static_cast<QKeyEvent*>(event);
        if (d().wayOf(key) || d().opensMenu(key)) {
            event->accept();
            return true;
        }
    }
    return QToolButton::event(event);
}

void ChoiceButton::changeEvent(QEvent* event) {
    QToolButton::changeEvent(event);
    if (event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange)
        d().shown(true);
}

void ChoiceButton::keyPressEvent(QKeyEvent* event) {
    if (const std::optional<int> way = d().wayOf(*event)) {
        if (*way != -1 && *way != currentIndex())
            d().chooseByKey(*way, *event);
    } else if (d().opensMenu(*event)) {
        showMenu();
    } else {
        QToolButton::keyPressEvent(event);
    }
}

void ChoiceButton::wheelEvent(QWheelEvent* event) {
    if (!WheelPolicy::takes(d().wheelPolicy, this) || !isExclusive()) {
        event->ignore();
        return;
    }
    event->accept();
    const int notches = d().turnWheel(*event); // none where the button is gone
    if (notches == 0)
        return;
    int to = currentIndex();
    for (int i = 0; i < std::abs(notches); ++i) {
        const int next = d().list.next(to, notches > 0 ? -1 : 1);
        to = next < 0 ? to : next;
    }
    if (to != currentIndex())
        d().choose(to);
}

} // namespace Kestrel::UI
