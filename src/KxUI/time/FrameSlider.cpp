#include <KxUI/time/FrameSlider.h>

#include <KxUI/kit/IconFactory.h>
#include <KxUI/kit/InterfaceThread_p.h>
#include <KxUI/time/FrameSliderAccessible_p.h>
#include <KxUI/time/FrameSliderLink_p.h>
#include <KxUI/time/TimeField.h>
#include <KxUI/values/LinearSlider_p.h>

#include <QHBoxLayout>
#include <QKeyEvent>
#include <QPointer>
#include <QToolButton>
#include <QWheelEvent>

#include <algorithm>
#include <cmath>
#include <utility>

using namespace Kestrel;
using UI::LinearSlider;
using UI::LinearSliderPrivate;

struct FrameSlider::Private {
    explicit Private(FrameSlider* slider);

    FrameSlider* q;
    LinearSlider* bar;
    UI::TimeField* field;
    UI::FrameSliderLink link;
    int step = 1;

    LinearSliderPrivate& own() const { return *LinearSliderPrivate::of(bar); }
    void setUp();
    void follow();
    void followField();
    void addButton(const char* icon, const QString& tip, int direction, QHBoxLayout& row);
    void showFrame(int frame);
    /** Where Control and an arrow key go: to a key of the parameter. */
    std::optional<double> keyTarget(const QKeyEvent& event) const;
};

FrameSlider::Private::Private(FrameSlider* slider)
    : q(slider)
    , bar(new LinearSlider)
    , field(new UI::TimeField)
    , link(slider) {}

void FrameSlider::Private::setUp() {
    q->setLayoutDirection(Qt::LeftToRight);
    bar->setTickMode(LinearSlider::TicksAndLabels);
    bar->setGrid(1.0);
    bar->setSingleStep(1.0);
    bar->setRange(1.0, 100.0);
    bar->setDefaultValue(1.0);
    bar->setValue(1.0);
    bar->setAccessibleName(tr("Frame"));
    field->setTimeDisplayFormat(false, false);
    field->setAccessibleName(tr("Frame"));
    field->setTime(1);
    auto* row = new QHBoxLayout(q);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(2);
    row->addWidget(bar, 1);
    addButton("TCFrameBackward", tr("Step Back"), -1, *row);
    row->addWidget(field);
    addButton("TCFrameForward", tr("Step Forward"), 1, *row);
    q->setFocusProxy(bar);
    bar->installEventFilter(q);
    follow();
    followField();
}

// The slider's edits are the widget's: everything that edits does it through the slider.
void FrameSlider::Private::follow() {
    connect(bar, &LinearSlider::valueChanged, q, [this] { showFrame(q->frame()); });
    connect(bar, &LinearSlider::limitsChanged, q, &FrameSlider::limitsChanged);
    connect(bar, &LinearSlider::handlingChanged, q, &FrameSlider::handlingChanged);
    connect(bar, &LinearSlider::editStarted, q, [this] {
        const QPointer<FrameSlider> alive(q);
        link.begin();
        if (alive)
            Q_EMIT q->editStarted();
    });
    connect(bar, &LinearSlider::valueEdited, q, [this] {
        link.edited();
        Q_EMIT q->valueEdited(q->frame());
    });
    connect(bar, &LinearSlider::editFinished, q, [this](bool accepted) {
        const QPointer<FrameSlider> alive(q);
        link.finish(accepted);
        if (alive)
            Q_EMIT q->editFinished(accepted);
    });
}

// What goes on in the field is one edit of the slider, too.
void FrameSlider::Private::followField() {
    connect(field, &UI::TimeField::editStarted, q,
            [this] { own().bracket->beginDrag(Qt::NoButton); });
    connect(field, &UI::TimeField::valueEdited, q, [this](Base::Time time) {
        const QPointer<FrameSlider> alive(q);
        if (time != Base::InvalidTime)
            own().bracket->change(own().editable(static_cast<double>(time)));
        if (alive) // it may have been limited
            field->setTime(q->frame());
    });
    connect(field, &UI::TimeField::editFinished, q, [this](bool accepted) {
        if (accepted)
            own().bracket->finish();
        else
            own().bracket->cancel();
    });
}

void FrameSlider::Private::addButton(const char* icon, const QString& tip, int direction,
                                     QHBoxLayout& row) {
    auto* button = new QToolButton;
    button->setIcon(UI::IconFactory::icon(QLatin1String(icon)));
    button->setToolTip(tip);
    button->setAccessibleName(tip);
    button->setAutoRaise(true);
    button->setAutoRepeat(true);
    button->setFocusPolicy(Qt::NoFocus);
    row.addWidget(button);
    // A button that repeats tells presses and releases in turn; only in the last release it is up.
    connect(button, &QToolButton::pressed, q, [this, direction] {
        auto& bracket = *own().bracket;
        if (bracket.gesture() == UI::EditGestures::Drag || bracket.beginDrag(Qt::NoButton))
            own().changeTo(own().stepped(bar->singleStep(), direction));
    });
    connect(button, &QToolButton::released, q, [this, button] {
        if (!button->isDown())
            own().bracket->finish();
    });
}

void FrameSlider::Private::showFrame(int frame) {
    const QPointer<FrameSlider> alive(q);
    field->setTime(frame);
    UI::tellAccessibleValue(q, frame);
    if (alive)
        Q_EMIT q->frameChanged(frame);
}

std::optional<double> FrameSlider::Private::keyTarget(const QKeyEvent& event) const {
    const bool isBack = event.key() == Qt::Key_Left;
    if ((!isBack && event.key() != Qt::Key_Right) || !link.parameter() ||
        (event.modifiers() & ~Qt::KeypadModifier) != Qt::ControlModifier)
        return std::nullopt;
    const QVector<double> keys = link.parameter()->keys();
    std::optional<double> nearest;
    for (const double key : keys) {
        const double place = own().editable(std::round(key));
        const bool isThere = isBack ? place < bar->value() : place > bar->value();
        if (std::isfinite(key) && isThere &&
            (!nearest || std::fabs(place - bar->value()) < std::fabs(*nearest - bar->value())))
            nearest = place;
    }
    return keys.isEmpty() ? std::nullopt : std::optional(nearest.value_or(bar->value()));
}

FrameSlider::FrameSlider(QWidget* parent)
    : QWidget(parent)
    , m(std::make_unique<Private>(this)) {
    m->setUp();
    UI::installAccessible<UI::FrameSliderAccessible, FrameSlider>();
    qRegisterMetaType<UI::TimeFormatter*>();
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
}

FrameSlider::~FrameSlider() {
    m->bar->disconnect(this);
    m->field->disconnect(this);
}

int FrameSlider::frame() const {
    return static_cast<int>(std::lround(m->bar->value()));
}

int FrameSlider::minimum() const {
    return static_cast<int>(m->bar->minimum());
}

int FrameSlider::maximum() const {
    return static_cast<int>(m->bar->maximum());
}

void FrameSlider::setFrame(int frame) {
    KXUI_INTERFACE_THREAD(this);
    m->bar->setValue(frame);
}

void FrameSlider::setRange(int minimum, int maximum) {
    KXUI_INTERFACE_THREAD(this);
    m->bar->setRange(minimum, maximum);
}

void FrameSlider::setMinimum(int minimum) {
    KXUI_INTERFACE_THREAD(this);
    m->bar->setMinimum(minimum);
}

void FrameSlider::setMaximum(int maximum) {
    KXUI_INTERFACE_THREAD(this);
    m->bar->setMaximum(maximum);
}

int FrameSlider::step() const {
    return m->step;
}

void FrameSlider::setStep(int frames) {
    KXUI_INTERFACE_THREAD(this);
    const int kept = std::max(1, frames);
    if (std::exchange(m->step, kept) != kept)
        m->bar->setSingleStep(kept);
}

void FrameSlider::setParameter(UI::IParameter* parameter) {
    KXUI_INTERFACE_THREAD(this);
    const QPointer<FrameSlider> alive(this);
    m->own().bracket->finish();
    if (alive)
        m->link.setParameter(parameter);
}

UI::IParameter* FrameSlider::parameter() const {
    return m->link.parameter();
}

void FrameSlider::refresh() {
    KXUI_INTERFACE_THREAD(this);
    m->link.read();
}

void FrameSlider::setTracking(bool live) {
    KXUI_INTERFACE_THREAD(this);
    if (live == hasTracking())
        return;
    m->link.setLive(live);
    Q_EMIT handlingChanged();
}

bool FrameSlider::hasTracking() const {
    return m->link.isLive();
}

void FrameSlider::setFormatter(UI::TimeFormatter* formatter) {
    KXUI_INTERFACE_THREAD(this);
    if (formatter == m->field->formatter())
        return;
    m->field->setFormatter(formatter);
    if (!formatter)
        m->field->setTimeDisplayFormat(false, false);
    Q_EMIT formatterChanged();
}

UI::TimeFormatter* FrameSlider::formatter() const {
    return m->field->formatter();
}

UI::WheelPolicy::Policy FrameSlider::wheelPolicy() const {
    return m->bar->wheelPolicy();
}

void FrameSlider::setWheelPolicy(UI::WheelPolicy::Policy policy) {
    KXUI_INTERFACE_THREAD(this);
    m->bar->setWheelPolicy(policy);
}

bool FrameSlider::isEditing() const {
    return m->bar->isEditing();
}

void FrameSlider::cancelEdit() {
    KXUI_INTERFACE_THREAD(this);
    m->bar->cancelEdit();
}

bool FrameSlider::event(QEvent* event) {
    // The edit is that of the slider, wherever the event comes to.
    if (m->own().bracket->takes(event))
        return true;
    if (event->type() == QEvent::ShortcutOverride &&
        m->own().isOwnKey(*static_cast<QKeyEvent*>(event))) {
        event->accept();
        return true;
    }
    return QWidget::event(event);
}

bool FrameSlider::eventFilter(QObject*, QEvent* event) {
    const bool isPress = event->type() == QEvent::KeyPress;
    if (!isPress && event->type() != QEvent::ShortcutOverride)
        return false;
    auto* key = static_cast<QKeyEvent*>(event);
    const std::optional<double> target = m->keyTarget(*key);
    if (!target)
        return false;
    event->accept();
    auto& bracket = *m->own().bracket;
    if (isPress && bracket.beginKey(*key) && bracket.gesture() == UI::EditGestures::Keys)
        bracket.change(*target);
    return true;
}

void FrameSlider::keyPressEvent(QKeyEvent* event) {
    if (m->own().isOwnKey(*event))
        m->own().pressKey(*event);
    else
        QWidget::keyPressEvent(event);
}

void FrameSlider::wheelEvent(QWheelEvent* event) {
    event->setAccepted(UI::WheelPolicy::takes(wheelPolicy(), this) && m->own().turn(*event));
}
