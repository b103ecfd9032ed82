#include "panels/TransportRow.h"

#include "play/Session.h"

#include <KxUI/kit/HorizontalLayout.h>
#include <KxUI/kit/IconFactory.h>
#include <KxUI/time/JogWheel.h>
#include <KxUI/time/TimeFormatChooser.h>
#include <KxUI/time/TransportControlsWidget.h>
#include <KxUI/values/DoubleSpinBox.h>

#include <QToolButton>

#include <algorithm>
#include <climits>
#include <cmath>

namespace Kestrel::Workbench {

using UI::TransportControlsWidget;

TransportRow::TransportRow(Session* session, QWidget* parent)
    : QWidget(parent)
    , m_session(session)
    , m_transport(new TransportControlsWidget)
    , m_jogWheel(new UI::JogWheel) {
    setObjectName(QStringLiteral("TransportRow"));
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
    setFocusPolicy(Qt::ClickFocus); // where the time field puts the focus at Escape

    auto* chooser = new UI::TimeFormatChooser(session->formatter());
    chooser->setMode(UI::TimeFormatChooser::TimelineMode);
    m_transport->connectTimecodeWidgetToFormatChooser(chooser);
    m_jogWheel->setToolTip(tr("Drag to go through the frames"));

    auto* layout = new UI::HorizontalLayout(0, 8, this);
    layout->addWidget(chooser);
    layout->addStretch(1);
    layout->addWidget(m_transport, 2);
    layout->addStretch(1);
    layout->addLayout(makeSkip());
    layout->addWidget(m_jogWheel);

    connectTransport();
    connect(m_jogWheel, &UI::JogWheel::valueChanged, this, [this](int value) {
        // What the wheel is told by showTime() is no wish of the user's.
        if (value != m_session->model()->currentTime())
            m_session->navigator()->goTo(value);
    });

    connect(session->model(), &UI::TimeSliderModel::timeChanged, this, &TransportRow::showTime);
    connect(session->player(), &Player::statusChanged, this, &TransportRow::showState);
    connect(session, &Session::sequenceChanged, this, &TransportRow::showState);
    showTime();
    showState();
}

/** The number field is one of those of the panels: it can be dragged, and told "x*2". */
QLayout* TransportRow::makeSkip() {
    Navigator* navigator = m_session->navigator();
    auto* length = new UI::DoubleSpinBox;
    length->setRange(1.0, 999.0);
    length->setDecimals(0);
    length->setSingleStep(1.0);
    length->setDefaultValue(12.0);
    length->setValue(navigator->skipLength());
    length->setButtonSymbols(QAbstractSpinBox::NoButtons);
    length->setAlignment(Qt::AlignCenter);
    length->setFixedWidth(length->fontMetrics().horizontalAdvance(QStringLiteral(" 0000 ")));
    length->setAccessibleName(tr("Frames to skip"));
    length->setToolTip(tr("How many frames are skipped"));
    connect(length, &UI::DoubleSpinBox::valueEdited, navigator,
            [navigator](double frames) { navigator->setSkipLength(int(std::lround(frames))); });
    // What is typed may be no whole number.
    connect(length, &UI::DoubleSpinBox::editFinished, navigator,
            [navigator, length] { length->setValue(navigator->skipLength()); });
    connect(navigator, &Navigator::skipLengthChanged, length,
            [length](int frames) { length->setValue(frames); });
    auto* row = new UI::HorizontalLayout(0, 1);
    row->addWidget(skipButton(QStringLiteral("FrameSkipBackwards"), -1));
    row->addWidget(length);
    row->addWidget(skipButton(QStringLiteral("FrameSkipForwards"), 1));
    return row;
}

QToolButton* TransportRow::skipButton(const QString& icon, int direction) {
    auto* button = new QToolButton;
    button->setFixedSize(22, 22);
    button->setFocusPolicy(Qt::NoFocus);
    button->setAutoRaise(true);
    button->setIcon(UI::IconFactory::icon(icon));
    button->setToolTip(direction < 0 ? tr("Skip backwards (Shift+Left)")
                                     : tr("Skip forwards (Shift+Right)"));
    button->setAccessibleName(direction < 0 ? tr("Skip backwards") : tr("Skip forwards"));
    Navigator* navigator = m_session->navigator();
    connect(button, &QToolButton::clicked, navigator,
            [navigator, direction] { navigator->skip(direction); });
    return button;
}

void TransportRow::connectTransport() {
    Player* player = m_session->player();
    Navigator* navigator = m_session->navigator();
    using Row = TransportControlsWidget;
    connect(m_transport, &Row::jumpToBeginningButtonClicked, navigator, &Navigator::goToStart);
    connect(m_transport, &Row::jumpToEndButtonClicked, navigator, &Navigator::goToEnd);
    connect(m_transport, &Row::jumpBackwardsButtonClicked, navigator,
            [navigator] { navigator->jump(-1); });
    connect(m_transport, &Row::jumpForwardButtonClicked, navigator,
            [navigator] { navigator->jump(1); });
    connect(m_transport, &Row::frameBackwardsButtonClicked, navigator,
            [navigator] { navigator->step(-1); });
    connect(m_transport, &Row::frameForwardsButtonClicked, navigator,
            [navigator] { navigator->step(1); });
    connect(m_transport, &Row::playBackwardsButtonClicked, player, [player] { player->play(-1); });
    connect(m_transport, &Row::playForwardsButtonClicked, player, [player] { player->play(1); });
    connect(m_transport, &Row::stop, player, &Player::stop);
    connect(m_transport, &Row::rangeSet, navigator, &Navigator::markRange);
    connect(m_transport, &Row::timeChanged, this, [this](Base::Time time) {
        if (time == m_session->model()->currentTime())
            return;
        m_session->navigator()->goTo(time);
        showTime(); // a time beyond the clip was brought back into it
    });
    m_transport->setMode(navigator->jumpMode());
    connect(navigator, &Navigator::jumpModeChanged, m_transport, &Row::setMode);
}

void TransportRow::showState() {
    const Player* player = m_session->player();
    m_transport->setBounceMode(player->repeat() == PlaybackClock::Repeat::Bounce);
    UI::PlaybackStatus status = UI::Stopped;
    if (m_session->sequence().isEmpty())
        status = UI::NoPlayback;
    else if (player->isPlaying())
        status = player->direction() > 0 ? UI::PlayingForwards : UI::PlayingBackwards;
    m_transport->playbackStateChanged(status);
    m_jogWheel->setEnabled(status != UI::NoPlayback);
}

void TransportRow::showTime() {
    const UI::TimeSliderModel& model = *m_session->model();
    const Base::Time current = model.currentTime();
    m_transport->setCurrentTime(current);
    if (current == Base::InvalidTime || model.duration() == Base::InvalidTime)
        return;
    const auto small = [](Base::Time time) {
        return int(std::clamp<Base::Time>(time, INT_MIN, INT_MAX));
    };
    // The old value may be outside of the new range: that it moves is not the user's doing.
    const QSignalBlocker blocker(m_jogWheel);
    m_jogWheel->setRange(small(model.startTime()), small(model.endTime()));
    m_jogWheel->setValue(small(current));
}

} // namespace Kestrel::Workbench
