#include <KxUI/values/PromptComboBox.h>

#include <KxUI/kit/EditBracket_p.h>
#include <KxUI/kit/InterfaceThread_p.h>
#include <KxUI/values/PromptPopup_p.h>
#include <KxUI/values/SearchField.h>

#include <QAbstractItemView>
#include <QChildEvent>
#include <QKeyEvent>
#include <QLineEdit>
#include <QStyleOptionComboBox>
#include <QStylePainter>
#include <QWheelEvent>

#include <utility>

namespace Kestrel::UI {
namespace {

constexpr int MostWithoutSearch = 20;

bool isSteppingKey(int key) {
    return key == Qt::Key_Up || key == Qt::Key_Down || key == Qt::Key_PageUp ||
           key == Qt::Key_PageDown || key == Qt::Key_Home || key == Qt::Key_End;
}

bool isTyped(const QKeyEvent& event) {
    return !event.text().isEmpty() && event.text()[0].isPrint() && !event.text()[0].isSpace() &&
           !(event.modifiers() & (Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier));
}

} // namespace

struct PromptComboBox::Private {
    explicit Private(PromptComboBox* box);

    PromptComboBox* q;
    QString prompt = tr("Choose\u2026");
    Behaviour behaviour = PromptUntilChosen;
    WheelPolicy::Policy wheelPolicy = WheelPolicy::WheelWhenFocused;
    EditBracket<PromptComboBox, int> bracket;
    QPointer<PromptPopup> popup;
    QMetaObject::Connection reset;
    int before = -1;   ///< the index when the user began to do something
    QString givenName; ///< the accessible name that the prompt gave

    bool isChoosing() const { return behaviour == PromptUntilChosen; }
    void followModel();
    void showPrompt();
    void showName();
    void activate(int index);
    void openLong();
    void openByTyping(const QString& text);
    void step(int rows);
    QSize withPrompt(const QSize& hint) const;
};

PromptComboBox::Private::Private(PromptComboBox* box)
    : q(box)
    , bracket(
          box, [box] { return box->currentIndex(); },
          [box](int index) { box->setCurrentIndex(index); }) {}

PromptComboBox::PromptComboBox(QWidget* parent)
    : QComboBox(parent)
    , d(std::make_unique<Private>(this)) {
    qRegisterMetaType<Behaviour>();
    qRegisterMetaType<WheelPolicy::Policy>();
    setFocusPolicy(Qt::StrongFocus);
    d->showPrompt();
    d->followModel();
    connect(this, qOverload<int>(&QComboBox::currentIndexChanged), this, [this](int index) {
        d->showName();
        Q_EMIT valueChanged(index);
    });
    connect(this, qOverload<int>(&QComboBox::activated), this,
            [this](int index) { d->activate(index); });
}

PromptComboBox::~PromptComboBox() = default;

QString PromptComboBox::prompt() const {
    return d->prompt;
}

void PromptComboBox::setPrompt(const QString& prompt) {
    KXUI_INTERFACE_THREAD(this);
    if (std::exchange(d->prompt, prompt) == prompt)
        return;
    d->showPrompt();
    updateGeometry();
    Q_EMIT promptChanged(prompt);
}

PromptComboBox::Behaviour PromptComboBox::behaviour() const {
    return d->behaviour;
}

void PromptComboBox::setBehaviour(Behaviour behaviour) {
    KXUI_INTERFACE_THREAD(this);
    if (std::exchange(d->behaviour, behaviour) != behaviour)
        Q_EMIT handlingChanged();
}

WheelPolicy::Policy PromptComboBox::wheelPolicy() const {
    return d->wheelPolicy;
}

void PromptComboBox::setWheelPolicy(WheelPolicy::Policy policy) {
    KXUI_INTERFACE_THREAD(this);
    if (std::exchange(d->wheelPolicy, policy) != policy)
        Q_EMIT handlingChanged();
}

void PromptComboBox::showModel(QAbstractItemModel* model) {
    KXUI_INTERFACE_THREAD(this);
    QComboBox::setModel(model);
    d->followModel();
    setCurrentIndex(-1);
}

bool PromptComboBox::hasChoice() const {
    return currentIndex() >= 0;
}

bool PromptComboBox::isEditing() const {
    return d->bracket.isEditing();
}

void PromptComboBox::clearChoice() {
    KXUI_INTERFACE_THREAD(this);
    setCurrentIndex(-1);
}

void PromptComboBox::cancelEdit() {
    KXUI_INTERFACE_THREAD(this);
    d->bracket.cancel();
}

// Qt chooses the first item after a reset. Connected after Qt's own slot, so that this comes later.
void PromptComboBox::Private::followModel() {
    disconnect(reset);
    reset = connect(q->model(), &QAbstractItemModel::modelReset, q, [this] { q->clearChoice(); });
}

void PromptComboBox::Private::showPrompt() {
    // Qt chooses the first item that is added only where this is empty.
    q->setPlaceholderText(prompt.isEmpty() ? QStringLiteral(" ") : prompt);
    if (q->lineEdit())
        q->lineEdit()->setPlaceholderText(prompt);
    showName();
    q->update();
}

void PromptComboBox::Private::showName() {
    if (q->accessibleName() != givenName)
        return; // the host's
    givenName = q->hasChoice() ? QString() : prompt;
    q->setAccessibleName(givenName);
}

void PromptComboBox::Private::activate(int index) {
    const QPointer<PromptComboBox> alive(q);
    const int from = std::exchange(before, index);
    if (!isChoosing()) {
        Q_EMIT q->chosen(index);
        if (alive)
            q->setCurrentIndex(-1);
        return;
    }
    const bool isComplete = bracket.gesture() == EditGestures::NoGesture;
    if (index != from) {
        if (isComplete)
            bracket.hostSet(from);
        if (!bracket.note(index, [] {}) || (isComplete && !bracket.finish()))
            return;
    }
    Q_EMIT q->chosen(index);
}

void PromptComboBox::showPopup() {
    d->before = currentIndex();
    if (!d->bracket.finish())
        return;
    if (count() > MostWithoutSearch && !isEditable())
        d->openLong();
    else
        QComboBox::showPopup();
}

void PromptComboBox::hidePopup() {
    if (d->popup)
        d->popup->close();
    QComboBox::hidePopup();
}

void PromptComboBox::Private::openLong() {
    if (popup)
        return;
    popup = new PromptPopup(q->model(), q->rootModelIndex(), q->modelColumn(), q);
    connect(popup, &PromptPopup::chosen, q, [this](int row) {
        const QPointer<PromptComboBox> alive(q);
        q->setCurrentIndex(row);
        const QString text = q->currentText();
        if (alive)
            Q_EMIT q->activated(row);
        if (alive)
            Q_EMIT q->textActivated(text);
    });
    popup->open(q->currentIndex());
}

void PromptComboBox::Private::openByTyping(const QString& text) {
    const QPointer<PromptComboBox> alive(q);
    q->showPopup();
    if (!alive)
        return;
    if (popup)
        popup->field()->insert(text);
    else
        q->view()->keyboardSearch(text);
}

void PromptComboBox::Private::step(int rows) {
    int row = q->currentIndex();
    for (int left = std::abs(rows); left > 0; --left) {
        int next = row + (rows < 0 ? -1 : 1);
        while (next >= 0 && next < q->count() &&
               !q->model()
                    ->index(next, q->modelColumn(), q->rootModelIndex())
                    .flags()
                    .testFlag(Qt::ItemIsEnabled))
            next += rows < 0 ? -1 : 1;
        if (next < 0 || next >= q->count())
            break;
        row = next;
    }
    if (row == q->currentIndex())
        return;
    const QPointer<PromptComboBox> alive(q);
    q->setCurrentIndex(row);
    const QString text = q->currentText();
    if (alive)
        Q_EMIT q->activated(row);
    if (alive)
        Q_EMIT q->textActivated(text);
}

bool PromptComboBox::event(QEvent* event) {
    if (d->bracket.takes(event))
        return true;
    const QPointer<PromptComboBox> alive(this);
    const bool done = QComboBox::event(event);
    if (alive && event->type() == QEvent::ChildPolished &&
        static_cast<QChildEvent*>(event)->child() == lineEdit())
        lineEdit()->setPlaceholderText(d->prompt);
    return done;
}

void PromptComboBox::focusInEvent(QFocusEvent* event) {
    d->before = currentIndex();
    QComboBox::focusInEvent(event);
}

void PromptComboBox::keyPressEvent(QKeyEvent* event) {
    const bool isStep = isSteppingKey(event->key()) && event->modifiers() == Qt::NoModifier;
    if (isEditable() || (!isStep && !isTyped(*event))) {
        QComboBox::keyPressEvent(event);
    } else if (!isStep || !d->isChoosing()) {
        event->accept();
        d->openByTyping(isStep ? QString() : event->text());
    } else if (d->bracket.beginKey(*event)) {
        d->before = currentIndex();
        QComboBox::keyPressEvent(event);
    }
}

void PromptComboBox::wheelEvent(QWheelEvent* event) {
    if (!d->isChoosing() || event->angleDelta().y() == 0 ||
        !WheelPolicy::takes(d->wheelPolicy, this)) {
        event->ignore();
        return;
    }
    event->accept();
    const QPointer<PromptComboBox> alive(this);
    const int notches = d->bracket.turnWheel(*event);
    if (!alive || notches == 0)
        return;
    d->before = currentIndex();
    d->step(-notches);
}

void PromptComboBox::paintEvent(QPaintEvent* event) {
    if (hasChoice() || isEditable()) {
        QComboBox::paintEvent(event);
        return;
    }
    QStylePainter painter(this);
    QStyleOptionComboBox option;
    initStyleOption(&option);
    painter.drawComplexControl(QStyle::CC_ComboBox, option);
    option.currentText = d->prompt;
    option.currentIcon = QIcon();
    const QColor pale = palette().color(QPalette::PlaceholderText);
    for (const QPalette::ColorRole role :
         {QPalette::Text, QPalette::ButtonText, QPalette::WindowText})
        option.palette.setColor(role, pale);
    painter.setPen(pale);
    painter.drawControl(QStyle::CE_ComboBoxLabel, option);
}

QSize PromptComboBox::Private::withPrompt(const QSize& hint) const {
    QStyleOptionComboBox option;
    q->initStyleOption(&option);
    const QSize text(q->fontMetrics().horizontalAdvance(prompt), q->fontMetrics().height());
    const QSize needed = q->style()->sizeFromContents(QStyle::CT_ComboBox, &option, text, q);
    return hint.expandedTo(QSize(needed.width(), 0));
}

QSize PromptComboBox::sizeHint() const {
    return d->withPrompt(QComboBox::sizeHint());
}

QSize PromptComboBox::minimumSizeHint() const {
    return d->withPrompt(QComboBox::minimumSizeHint());
}

} // namespace Kestrel::UI
