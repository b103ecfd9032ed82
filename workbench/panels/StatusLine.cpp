#include "panels/StatusLine.h"

#include "play/FrameRate.h"
#include "play/Session.h"

#include <QFontDatabase>
#include <QHBoxLayout>
#include <QLabel>
#include <QLocale>

namespace Kestrel::Workbench {

StatusLine::StatusLine(Session* session, QWidget* parent)
    : QWidget(parent)
    , m_session(session)
    , m_time(new QLabel)
    , m_rate(new QLabel)
    , m_dropped(new QLabel)
    , m_cache(new QLabel) {
    setObjectName(QStringLiteral("StatusLine"));
    m_time->setAccessibleName(tr("Current time"));
    m_time->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(8, 2, 8, 4);
    layout->setSpacing(24);
    for (QLabel* label : {m_time, m_rate, m_dropped})
        layout->addWidget(label);
    layout->addStretch(1);
    layout->addWidget(m_cache);

    connect(session->model(), &UI::TimeSliderModel::timeChanged, this, &StatusLine::showTime);
    connect(session->formatter(), &UI::TimeFormatter::timeFormatChanged, this,
            &StatusLine::showTime);
    connect(session, &Session::sequenceChanged, this, &StatusLine::showFacts);
    connect(session->player(), &Player::playingChanged, this, &StatusLine::showFacts);
    // Facts change with every frame; a few looks a second are enough to read them.
    m_refresh.setInterval(250);
    connect(&m_refresh, &QTimer::timeout, this, &StatusLine::showFacts);
    m_refresh.start();
    showTime();
    showFacts();
}

void StatusLine::showTime() {
    UI::TimeSliderModel& model = *m_session->model();
    const Base::Time range = model.inOutDuration();
    QString text = m_session->formatter()->formatTime(model.currentTime());
    if (range != Base::InvalidTime)
        text += tr("   %1 frames").arg(range);
    m_time->setText(text);
}

void StatusLine::showFacts() {
    Player& player = *m_session->player();
    const QString wanted = formatFrameRate(double(m_session->formatter()->timeBase().rate()));
    m_rate->setText(
        player.isPlaying()
            ? tr("%1 of %2 fps").arg(QString::number(player.achievedRate(), 'f', 1), wanted)
            : tr("%1 fps").arg(wanted));
    m_dropped->setText(player.dropped() == 0 ? QString() : tr("%1 dropped").arg(player.dropped()));
    const FrameCache& cache = m_session->cache();
    const QLocale locale;
    m_cache->setText(tr("Cache %1 of %2, %3 frames")
                         .arg(locale.formattedDataSize(qint64(cache.bytes()), 0),
                              locale.formattedDataSize(qint64(cache.capacity()), 0))
                         .arg(cache.count()));
}

} // namespace Kestrel::Workbench
