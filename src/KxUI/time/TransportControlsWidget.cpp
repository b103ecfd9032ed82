#include <KxUI/time/TransportControlsWidget.h>

#include <KxUI/kit/IconFactory.h>
#include <KxUI/kit/InterfaceThread_p.h>
#include <KxUI/time/TimeField.h>
#include <KxUI/time/TimeFormatChooser.h>
#include <KxUI/time/TimeSlider.h>

#include <QEvent>
#include <QToolButton>

namespace Kestrel::UI {
namespace {

QIcon iconOf(const char* name) {
    return IconFactory::icon(QLatin1String(name));
}

} // namespace

struct TransportControlsWidget::Private {
    TransportControlsWidget* q = nullptr;
    QToolButton* jumpBackwards = nullptr;
    QToolButton* playBackwards = nullptr;
    TimeField* timeField = nullptr;
    QToolButton* playForwards = nullptr;
    QToolButton* jumpForwards = nullptr;
    TransportControlsMode mode = KeyframesOrEdits;
    PlaybackStatus playbackState = NoPlayback;
    bool bounceMode = false;

    QToolButton* addButton(const char* icon, const QString& toolTip, const QString& name,
                           int priority);
    void addBackwardsButtons();
    void addField();
    void addForwardsButtons();
    void showMode();
    void showState();
    void updateFieldColor();
};

TransportControlsWidget::TransportControlsWidget(QWidget* parent)
    : CollapsibleToolbar(parent)
    , m(std::make_unique<Private>()) {
    qRegisterMetaType<Kestrel::UI::PlaybackStatus>("Kestrel::UI::PlaybackStatus");
    qRegisterMetaType<Kestrel::UI::TransportControlsMode>("Kestrel::UI::TransportControlsMode");
    m->q = this;
    m->addBackwardsButtons();
    m->addField();
    m->addForwardsButtons();
    m->showMode();
    m->showState();
}

TransportControlsWidget::~TransportControlsWidget() = default;

QToolButton* TransportControlsWidget::Private::addButton(const char* icon, const QString& toolTip,
                                                         const QString& name, int priority) {
    auto* button = new QToolButton(q);
    button->setFixedSize(32, 24);
    button->setIconSize(QSize(19, 16));
    button->setFocusPolicy(Qt::NoFocus);
    button->setAutoRaise(true);
    button->setIcon(iconOf(icon));
    button->setToolTip(toolTip);
    button->setAccessibleName(name);
    q->addOverflowItem(button, name, priority);
    return button;
}

// In a narrow row the play buttons stay longest, then the frame buttons.
void TransportControlsWidget::Private::addBackwardsButtons() {
    using Self = TransportControlsWidget;
    QToolButton* start =
        addButton("TCStart", tr("Go to start. (Home)"), tr("Jump To Beginning"), 1);
    jumpBackwards = addButton("TCIntervalBackward", QString(), tr("Jump Backwards"), 0);
    QToolButton* frame =
        addButton("TCFrameBackward", tr("Go to previous frame. (Left)"), tr("Frame Backwards"), 2);
    playBackwards =
        addButton("TCPlayBackward", tr("Play backwards/Stop. (J/K)"), tr("Play Backwards"), 3);
    connect(start, &QToolButton::clicked, q, &Self::jumpToBeginningButtonClicked);
    connect(jumpBackwards, &QToolButton::clicked, q, &Self::jumpBackwardsButtonClicked);
    connect(frame, &QToolButton::clicked, q, &Self::frameBackwardsButtonClicked);
    connect(playBackwards, &QToolButton::clicked, q, &Self::handlePlayBackwardsButtonClicked);
}

void TransportControlsWidget::Private::addField() {
    using Self = TransportControlsWidget;
    timeField = new TimeField(false, false, q);
    timeField->setMinimumHeight(24);
    timeField->setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Expanding);
    timeField->setToolTip(tr("The current frame"));
    timeField->setAccessibleName(tr("The current frame"));
    q->addItem(timeField);
    connect(timeField, qOverload<Base::Time>(&TimeField::timeChanged), q, &Self::timeChanged);
    connect(timeField, &TimeField::rangeChanged, q, &Self::rangeSet);
    connect(timeField, &TimeField::formatterChanged, q, &Self::formatterChanged);
}

void TransportControlsWidget::Private::addForwardsButtons() {
    using Self = TransportControlsWidget;
    playForwards =
        addButton("TCPlayForward", tr("Play forwards/Stop. (L/K)"), tr("Play Forwards"), 3);
    QToolButton* frame =
        addButton("TCFrameForward", tr("Go to next frame. (Right)"), tr("Frame Forwards"), 2);
    jumpForwards = addButton("TCIntervalForward", QString(), tr("Jump Forwards"), 0);
    QToolButton* end = addButton("TCEnd", tr("Go to end. (End)"), tr("Jump To End"), 1);
    connect(playForwards, &QToolButton::clicked, q, &Self::handlePlayForwardsButtonClicked);
    connect(frame, &QToolButton::clicked, q, &Self::frameForwardsButtonClicked);
    connect(jumpForwards, &QToolButton::clicked, q, &Self::jumpForwardButtonClicked);
    connect(end, &QToolButton::clicked, q, &Self::jumpToEndButtonClicked);
}

void TransportControlsWidget::setMode(TransportControlsMode mode) {
    KXUI_INTERFACE_THREAD(this);
    if (mode == m->mode || (mode != KeyframesOrEdits && mode != KeyframesOnly))
        return;
    m->mode = mode;
    m->showMode();
    Q_EMIT modeChanged();
}

void TransportControlsWidget::Private::showMode() {
    switch (mode) {
    case KeyframesOrEdits:
        jumpBackwards->setToolTip(
            tr("Go to previous keyframe or edit, whichever is nearest. (Alt+Left)"));
        jumpBackwards->setIcon(iconOf("TCIntervalBackward"));
        jumpForwards->setToolTip(
            tr("Go to next keyframe or edit, whichever is nearest. (Alt+Right)"));
        jumpForwards->setIcon(iconOf("TCIntervalForward"));
        break;
    case KeyframesOnly:
        jumpBackwards->setToolTip(
            tr("Go to previous keyframe. (Alt+Left or Ctrl+left for 1/2 way)"));
        jumpBackwards->setIcon(iconOf("TCKeyBackward"));
        jumpForwards->setToolTip(tr("Go to next keyframe. (Alt+Right or Ctrl+Right for 1/2 way)"));
        jumpForwards->setIcon(iconOf("TCKeyForward"));
        break;
    }
}

TransportControlsMode TransportControlsWidget::mode() const {
    return m->mode;
}

void TransportControlsWidget::setCurrentTime(Base::Time time) {
    KXUI_INTERFACE_THREAD(this);
    m->timeField->setTime(time, false);
}

Base::Time TransportControlsWidget::currentTime() const {
    return m->timeField->time();
}

void TransportControlsWidget::setBounceMode(bool bounce) {
    KXUI_INTERFACE_THREAD(this);
    if (bounce == m->bounceMode)
        return;
    m->bounceMode = bounce;
    m->showState();
    Q_EMIT stateChanged();
}

bool TransportControlsWidget::bounceMode() const {
    return m->bounceMode;
}

void TransportControlsWidget::playbackStateChanged(PlaybackStatus state) {
    const bool changed = state != m->playbackState;
    m->playbackState = state;
    m->showState();
    if (changed)
        Q_EMIT stateChanged();
}

PlaybackStatus TransportControlsWidget::playbackState() const {
    return m->playbackState;
}

void TransportControlsWidget::Private::showState() {
    q->setEnabled(playbackState != NoPlayback);
    updateFieldColor();

    const bool bouncing = bounceMode && playbackState != Stopped;
    playBackwards->setIcon(
        iconOf(bouncing || playbackState == PlayingBackwards ? "TCStop" : "TCPlayBackward"));
    playForwards->setIcon(
        iconOf(bouncing || playbackState == PlayingForwards ? "TCStop" : "TCPlayForward"));
}

void TransportControlsWidget::Private::updateFieldColor() {
    QPalette colors = timeField->palette();
    colors.setColor(QPalette::Text, playbackState == Stopped ? TimeSlider::StandardPlayheadColor()
                                                             : q->palette().color(QPalette::Text));
    timeField->setPalette(colors);
}

void TransportControlsWidget::changeEvent(QEvent* event) {
    CollapsibleToolbar::changeEvent(event);
    if (m->timeField &&
        (event->type() == QEvent::PaletteChange || event->type() == QEvent::EnabledChange))
        m->updateFieldColor();
}

void TransportControlsWidget::setFormatter(TimeFormatter* formatter) {
    KXUI_INTERFACE_THREAD(this);
    m->timeField->setFormatter(formatter);
}

TimeFormatter* TransportControlsWidget::formatter() const {
    return m->timeField->formatter();
}

void TransportControlsWidget::connectTimecodeWidgetToFormatChooser(TimeFormatChooser* chooser) {
    if (chooser)
        chooser->addTimefield(m->timeField);
}

void TransportControlsWidget::setTimecodeWidgetEnabled(bool enabled) {
    KXUI_INTERFACE_THREAD(this);
    if (enabled == isTimecodeWidgetEnabled())
        return;
    m->timeField->setEnabled(enabled);
    Q_EMIT stateChanged();
}

bool TransportControlsWidget::isTimecodeWidgetEnabled() const {
    return !m->timeField->testAttribute(Qt::WA_ForceDisabled);
}

void TransportControlsWidget::setFocusToTimecodeWidget() {
    KXUI_INTERFACE_THREAD(this);
    m->timeField->setFocus(Qt::OtherFocusReason);
    m->timeField->selectAll();
}

void TransportControlsWidget::handlePlayForwardsButtonClicked() {
    const PlaybackStatus state = m->playbackState;
    if (state == PlayingForwards || (m->bounceMode && state == PlayingBackwards))
        Q_EMIT stop();
    else
        Q_EMIT playForwardsButtonClicked();
}

void TransportControlsWidget::handlePlayBackwardsButtonClicked() {
    const PlaybackStatus state = m->playbackState;
    if (state == PlayingBackwards || (m->bounceMode && state == PlayingForwards))
        Q_EMIT stop();
    else
        Q_EMIT playBackwardsButtonClicked();
}

} // namespace Kestrel::UI
