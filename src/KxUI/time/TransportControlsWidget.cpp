#include <KxUI/time/TransportControlsWidget.h>

#include <KxUI/kit/IconFactory.h>
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

TransportControlsWidget::TransportControlsWidget(QWidget* parent)
    : CollapsibleToolbar(parent) {
    qRegisterMetaType<Kestrel::UI::PlaybackStatus>("Kestrel::UI::PlaybackStatus");

    // In a narrow row the play buttons stay longest, then the frame buttons.
    QToolButton* start =
        addButton("TCStart", tr("Go to start. (Home)"), tr("Jump To Beginning"), 1);
    m_jumpBackwards = addButton("TCIntervalBackward", QString(), tr("Jump Backwards"), 0);
    QToolButton* frameBackwards =
        addButton("TCFrameBackward", tr("Go to previous frame. (Left)"), tr("Frame Backwards"), 2);
    m_playBackwards =
        addButton("TCPlayBackward", tr("Play backwards/Stop. (J/K)"), tr("Play Backwards"), 3);

    m_timeField = new TimeField(false, false, this);
    m_timeField->setMinimumHeight(24);
    m_timeField->setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Expanding);
    m_timeField->setToolTip(tr("The current frame"));
    m_timeField->setAccessibleName(tr("The current frame"));
    addItem(m_timeField);

    m_playForwards =
        addButton("TCPlayForward", tr("Play forwards/Stop. (L/K)"), tr("Play Forwards"), 3);
    QToolButton* frameForwards =
        addButton("TCFrameForward", tr("Go to next frame. (Right)"), tr("Frame Forwards"), 2);
    m_jumpForwards = addButton("TCIntervalForward", QString(), tr("Jump Forwards"), 0);
    QToolButton* end = addButton("TCEnd", tr("Go to end. (End)"), tr("Jump To End"), 1);

    using Self = TransportControlsWidget;
    connect(start, &QToolButton::clicked, this, &Self::jumpToBeginningButtonClicked);
    connect(m_jumpBackwards, &QToolButton::clicked, this, &Self::jumpBackwardsButtonClicked);
    connect(frameBackwards, &QToolButton::clicked, this, &Self::frameBackwardsButtonClicked);
    connect(m_playBackwards, &QToolButton::clicked, this, &Self::handlePlayBackwardsButtonClicked);
    connect(m_playForwards, &QToolButton::clicked, this, &Self::handlePlayForwardsButtonClicked);
    connect(frameForwards, &QToolButton::clicked, this, &Self::frameForwardsButtonClicked);
    connect(m_jumpForwards, &QToolButton::clicked, this, &Self::jumpForwardButtonClicked);
    connect(end, &QToolButton::clicked, this, &Self::jumpToEndButtonClicked);
    connect(m_timeField, qOverload<Base::Time>(&TimeField::timeChanged), this, &Self::timeChanged);
    connect(m_timeField, &TimeField::rangeChanged, this, &Self::rangeSet);

    setMode(KeyframesOrEdits);
    playbackStateChanged(NoPlayback);
}

TransportControlsWidget::~TransportControlsWidget() = default;

QToolButton* TransportControlsWidget::addButton(const char* icon, const QString& toolTip,
                                                const QString& name, int priority) {
    auto* button = new QToolButton(this);
    button->setFixedSize(32, 24);
    button->setIconSize(QSize(19, 16));
    button->setFocusPolicy(Qt::NoFocus);
    button->setAutoRaise(true);
    button->setIcon(iconOf(icon));
    button->setToolTip(toolTip);
    button->setAccessibleName(name);
    addOverflowItem(button, name, priority);
    return button;
}

void TransportControlsWidget::setMode(TransportControlsMode mode) {
    switch (mode) {
    case KeyframesOrEdits:
        m_jumpBackwards->setToolTip(
            tr("Go to previous keyframe or edit, whichever is nearest. (Alt+Left)"));
        m_jumpBackwards->setIcon(iconOf("TCIntervalBackward"));
        m_jumpForwards->setToolTip(
            tr("Go to next keyframe or edit, whichever is nearest. (Alt+Right)"));
        m_jumpForwards->setIcon(iconOf("TCIntervalForward"));
        break;
    case KeyframesOnly:
        m_jumpBackwards->setToolTip(
            tr("Go to previous keyframe. (Alt+Left or Ctrl+left for 1/2 way)"));
        m_jumpBackwards->setIcon(iconOf("TCKeyBackward"));
        m_jumpForwards->setToolTip(
            tr("Go to next keyframe. (Alt+Right or Ctrl+Right for 1/2 way)"));
        m_jumpForwards->setIcon(iconOf("TCKeyForward"));
        break;
    }
}

void TransportControlsWidget::setCurrentTime(Base::Time time) {
    m_timeField->setTime(time, false);
}

void TransportControlsWidget::setBounceMode(bool bounce) {
    if (bounce == m_bounceMode)
        return;
    m_bounceMode = bounce;
    playbackStateChanged(m_playbackState);
}

void TransportControlsWidget::playbackStateChanged(PlaybackStatus state) {
    m_playbackState = state;
    setEnabled(state != NoPlayback);
    updateFieldColor();

    const bool bouncing = m_bounceMode && state != Stopped;
    m_playBackwards->setIcon(
        iconOf(bouncing || state == PlayingBackwards ? "TCStop" : "TCPlayBackward"));
    m_playForwards->setIcon(
        iconOf(bouncing || state == PlayingForwards ? "TCStop" : "TCPlayForward"));
}

void TransportControlsWidget::updateFieldColor() {
    QPalette colors = m_timeField->palette();
    colors.setColor(QPalette::Text, m_playbackState == Stopped ? TimeSlider::StandardPlayheadColor()
                                                               : palette().color(QPalette::Text));
    m_timeField->setPalette(colors);
}

void TransportControlsWidget::changeEvent(QEvent* event) {
    CollapsibleToolbar::changeEvent(event);
    if (m_timeField &&
        (event->type() == QEvent::PaletteChange || event->type() == QEvent::EnabledChange))
        updateFieldColor();
}

void TransportControlsWidget::connectTimecodeWidgetToFormatChooser(TimeFormatChooser* chooser) {
    if (chooser)
        chooser->addTimefield(m_timeField);
}

void TransportControlsWidget::setTimecodeWidgetEnabled(bool enabled) {
    m_timeField->setEnabled(enabled);
}

void TransportControlsWidget::setFocusToTimecodeWidget() {
    m_timeField->setFocus(Qt::OtherFocusReason);
    m_timeField->selectAll();
}

void TransportControlsWidget::handlePlayForwardsButtonClicked() {
    if (m_playbackState == PlayingForwards || (m_bounceMode && m_playbackState == PlayingBackwards))
        Q_EMIT stop();
    else
        Q_EMIT playForwardsButtonClicked();
}

void TransportControlsWidget::handlePlayBackwardsButtonClicked() {
    if (m_playbackState == PlayingBackwards || (m_bounceMode && m_playbackState == PlayingForwards))
        Q_EMIT stop();
    else
        Q_EMIT playBackwardsButtonClicked();
}

} // namespace Kestrel::UI
