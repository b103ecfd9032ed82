#include <KxUI/values/SearchField.h>

#include <KxUI/kit/IconFactory.h>
#include <KxUI/kit/InterfaceThread_p.h>
#include <KxUI/values/SearchFieldLogic_p.h>

#include <QAbstractItemView>
#include <QAction>
#include <QCompleter>
#include <QKeyEvent>
#include <QMenu>
#include <QPainter>
#include <QPointer>
#include <QStyle>
#include <QStyleOptionFrame>
#include <QToolButton>

#include <algorithm>
#include <utility>

namespace Kestrel::UI {
namespace {

constexpr int NominalCharacters = 24;
constexpr int Gap = 4; // pixels around the number of results

enum class Deed { None, Clear, Next, Previous, Leave, OpenMenu };

Deed deedOf(const QKeyEvent& event, bool hasText) {
    const Qt::KeyboardModifiers held = event.modifiers() & ~Qt::KeypadModifier;
    const bool isPlain = held == Qt::NoModifier;
    switch (event.key()) {
    case Qt::Key_Escape:
        return isPlain && hasText ? Deed::Clear : Deed::None;
    case Qt::Key_Return:
    case Qt::Key_Enter:
    case Qt::Key_F3:
        return isPlain ? Deed::Next : held == Qt::ShiftModifier ? Deed::Previous : Deed::None;
    case Qt::Key_Down:
        return isPlain ? Deed::Leave : held == Qt::AltModifier ? Deed::OpenMenu : Deed::None;
    case Qt::Key_Up:
        return isPlain ? Deed::Leave : Deed::None;
    default:
        return Deed::None;
    }
}

} // namespace

struct SearchField::Private {
    SearchField* q = nullptr;
    SearchFieldLogic logic;
    QAction* magnifier = nullptr;
    QPointer<QMenu> options;
    QString matches;     ///< as shown
    int reserved = 0;    ///< pixels of the text margin that are theirs
    QMargins ownMargins; ///< as the host set them

    void setUp();
    void showMenuIcon();
    void showMatches(const QString& text);
    void reserve();
    QRect matchesRoom() const;
    bool hasOpenCompletion() const;
    void clearByUser();
    void run(Deed deed, const QKeyEvent& event);
    void search(const QString& text);
    void fillMenu(QMenu& menu);
};

SearchField::SearchField(QWidget* parent)
    : QLineEdit(parent)
    , d(std::make_unique<Private>()) {
    qRegisterMetaType<Qt::Key>();
    d->q = this;
    d->setUp();
}

SearchField::~SearchField() = default;

void SearchField::Private::setUp() {
    q->setPlaceholderText(tr("Search"));
    q->setClearButtonEnabled(true);
    magnifier = q->addAction(QIcon(), QLineEdit::LeadingPosition);
    showMenuIcon();
    connect(magnifier, &QAction::triggered, q, &SearchField::openMenu);
    connect(q, &QLineEdit::textEdited, &logic, &SearchFieldLogic::edited);
    connect(q, &QLineEdit::textChanged, &logic, [this](const QString& text) {
        if (text != logic.text())
            logic.set(text);
    });
    connect(&logic, &SearchFieldLogic::told, q, &SearchField::searchChanged);
    connect(&logic, &SearchFieldLogic::historyChanged, q, [this] {
        showMenuIcon();
        Q_EMIT q->historyChanged();
    });
}

int SearchField::delay() const {
    return d->logic.delay();
}

void SearchField::setDelay(int milliseconds) {
    KXUI_INTERFACE_THREAD(this);
    const int before = delay();
    const QPointer<SearchField> alive(this);
    d->logic.setDelay(milliseconds);
    if (alive && delay() != before)
        Q_EMIT delayChanged(delay());
}

bool SearchField::isHistoryEnabled() const {
    return d->logic.isHistoryEnabled();
}

void SearchField::setHistoryEnabled(bool enabled) {
    KXUI_INTERFACE_THREAD(this);
    if (enabled == isHistoryEnabled())
        return;
    d->logic.setHistoryEnabled(enabled);
    d->showMenuIcon();
    Q_EMIT historyEnabledChanged(enabled);
}

QStringList SearchField::history() const {
    return d->logic.history();
}

void SearchField::setHistory(const QStringList& texts) {
    KXUI_INTERFACE_THREAD(this);
    if (!d->logic.setHistory(texts))
        return;
    d->showMenuIcon();
    Q_EMIT historyChanged();
}

void SearchField::setMatches(int current, int count) {
    KXUI_INTERFACE_THREAD(this);
    const bool isOne = current > 0 && current <= count;
    setAccessibleDescription(count < 0 ? QString() : tr("%n matches", nullptr, count));
    d->showMatches(count < 0 ? QString()
                   : isOne   ? tr("%1 of %2").arg(current).arg(count)
                             : locale().toString(count));
}

void SearchField::setOptionsMenu(QMenu* menu) {
    KXUI_INTERFACE_THREAD(this);
    d->options = menu;
    d->showMenuIcon();
}

QSize SearchField::sizeHint() const {
    const QSize hint = QLineEdit::sizeHint();
    const int text = fontMetrics().averageCharWidth() * NominalCharacters;
    return {std::max(hint.width(), text), hint.height()};
}

void SearchField::Private::showMenuIcon() {
    const bool hasMenu = options || (logic.isHistoryEnabled() && !logic.history().isEmpty());
    magnifier->setIcon(
        IconFactory::icon(hasMenu ? QStringLiteral("SearchMenu") : QStringLiteral("Search")));
    magnifier->setText(hasMenu ? tr("Search options") : tr("Search"));
}

void SearchField::Private::showMatches(const QString& text) {
    if (std::exchange(matches, text) == text)
        return;
    reserve();
    q->update();
}

// Keeps the text away from the number of results, which stands at the end of the field.
void SearchField::Private::reserve() {
    const int wanted =
        matches.isEmpty() ? 0 : q->fontMetrics().horizontalAdvance(matches) + 2 * Gap;
    const bool isLeftToRight = q->layoutDirection() == Qt::LeftToRight;
    if (reserved == 0)
        ownMargins = q->textMargins();
    QMargins margins = ownMargins;
    if (isLeftToRight)
        margins.setRight(margins.right() + wanted);
    else
        margins.setLeft(margins.left() + wanted);
    reserved = wanted;
    q->setTextMargins(margins);
}

QRect SearchField::Private::matchesRoom() const {
    QStyleOptionFrame option;
    q->initStyleOption(&option);
    QRect room = q->style()->subElementRect(QStyle::SE_LineEditContents, &option, q);
    const bool isLeftToRight = q->layoutDirection() == Qt::LeftToRight;
    const auto buttons = q->findChildren<QToolButton*>(QString(), Qt::FindDirectChildrenOnly);
    for (const QToolButton* button : buttons) {
        const QRect taken = button->geometry();
        if (!button->isVisible() || (taken.center().x() > q->width() / 2) != isLeftToRight)
            continue;
        if (isLeftToRight)
            room.setRight(std::min(room.right(), taken.left()));
        else
            room.setLeft(std::max(room.left(), taken.right()));
    }
    return room.adjusted(Gap, 0, -Gap, 0);
}

bool SearchField::Private::hasOpenCompletion() const {
    return q->completer() && q->completer()->popup() && q->completer()->popup()->isVisible();
}

void SearchField::Private::clearByUser() {
    // As though it were typed, so that undo brings it back.
    const QPointer<SearchField> alive(q);
    q->selectAll();
    q->del();
    if (alive)
        logic.apply();
}

void SearchField::Private::run(Deed deed, const QKeyEvent& event) {
    const QPointer<SearchField> alive(q);
    const auto key = static_cast<Qt::Key>(event.key());
    if (deed == Deed::Clear) {
        clearByUser();
        return;
    }
    if (deed == Deed::OpenMenu) {
        q->openMenu();
        return;
    }
    logic.use();
    if (!alive)
        return;
    if (deed == Deed::Leave)
        Q_EMIT q->leaveWanted(key);
    else if (deed == Deed::Next)
        Q_EMIT q->nextWanted();
    else
        Q_EMIT q->previousWanted();
}

void SearchField::Private::search(const QString& text) {
    q->selectAll();
    const QPointer<SearchField> alive(q);
    q->insert(text);
    if (alive)
        logic.use();
}

void SearchField::Private::fillMenu(QMenu& menu) {
    if (logic.isHistoryEnabled()) {
        for (const QString& text : logic.history()) {
            QString shown = text;
            shown.replace(QLatin1Char('&'), QStringLiteral("&&"));
            connect(menu.addAction(shown), &QAction::triggered, q, [this, text] { search(text); });
        }
        if (!logic.history().isEmpty()) {
            menu.addSeparator();
            connect(menu.addAction(tr("Clear Recent Searches")), &QAction::triggered, q,
                    [this] { q->setHistory({}); });
        }
    }
    if (options && !options->actions().isEmpty()) {
        if (!menu.isEmpty())
            menu.addSeparator();
        menu.addActions(options->actions());
    }
}

void SearchField::openMenu() {
    KXUI_INTERFACE_THREAD(this);
    auto* menu = new QMenu(this);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    d->fillMenu(*menu);
    if (menu->isEmpty())
        delete menu;
    else
        menu->popup(mapToGlobal(layoutDirection() == Qt::LeftToRight
                                    ? QPoint(0, height())
                                    : QPoint(width() - menu->sizeHint().width(), height())));
}

bool SearchField::event(QEvent* event) {
    if (event->type() == QEvent::ShortcutOverride && !d->hasOpenCompletion() &&
        deedOf(*static_cast<QKeyEvent*>(event), !text().isEmpty()) != Deed::None) {
        event->accept();
        return true;
    }
    return QLineEdit::event(event);
}

void SearchField::changeEvent(QEvent* event) {
    QLineEdit::changeEvent(event);
    if (event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange ||
        event->type() == QEvent::LayoutDirectionChange)
        d->reserve();
}

void SearchField::focusOutEvent(QFocusEvent* event) {
    const bool stays = event->reason() == Qt::PopupFocusReason ||
                       event->reason() == Qt::ActiveWindowFocusReason ||
                       event->reason() == Qt::MenuBarFocusReason;
    const QPointer<SearchField> alive(this);
    QLineEdit::focusOutEvent(event);
    if (alive && !stays)
        d->logic.use();
}

void SearchField::keyPressEvent(QKeyEvent* event) {
    const Deed deed = deedOf(*event, !text().isEmpty());
    if (d->hasOpenCompletion() || deed == Deed::None) {
        if (event->key() == Qt::Key_Escape)
            event->ignore(); // a dialog may close
        else
            QLineEdit::keyPressEvent(event);
        return;
    }
    const QPointer<SearchField> alive(this);
    if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter)
        QLineEdit::keyPressEvent(event); // who listens to the signals of any line edit
    event->accept();
    if (alive)
        d->run(deed, *event);
}

void SearchField::paintEvent(QPaintEvent* event) {
    QLineEdit::paintEvent(event);
    if (d->matches.isEmpty())
        return;
    QPainter painter(this);
    painter.setPen(palette().color(QPalette::PlaceholderText));
    const Qt::Alignment side =
        layoutDirection() == Qt::LeftToRight ? Qt::AlignRight : Qt::AlignLeft;
    painter.drawText(d->matchesRoom(), static_cast<int>(side | Qt::AlignVCenter), d->matches);
}

} // namespace Kestrel::UI
