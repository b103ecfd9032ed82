#include "panels/StatusLine.h"

#include "panels/RateMenu.h"
#include "play/FrameRate.h"
#include "play/Session.h"

#include <KxUI/values/DoubleSpinBox.h>

#include <QFontDatabase>
#include <QHBoxLayout>
#include <QLabel>
#include <QLocale>
#include <QToolButton>

#include <cmath>

namespace Kestrel::Workbench {

namespace {

constexpr double mebibyte = 1024.0 * 1024.0;
constexpr double mostMebibytes = 1024.0 * 1024.0;

UI::ValueUnits memoryUnits() {
    UI::ValueUnits units;
    units.add({QStringLiteral("MiB"), {QStringLiteral("MB"), QStringLiteral("M")}});
    units.add({QStringLiteral("GiB"), {QStringLiteral("GB"), QStringLiteral("G")}, 1024.0});
    return units;
}

} // namespace

StatusLine::StatusLine(Session* session, QWidget* parent)
    : QWidget(parent)
    , m_session(session)
    , m_time(new QLabel)
    , m_rate(new QToolButton)
    , m_dropped(new QLabel)
    , m_cache(new QLabel)
    , m_cacheSize(makeCacheSize())
    , m_cached(new QLabel) {
    setObjectName(QStringLiteral("StatusLine"));
    m_time->setAccessibleName(tr("Current time"));
    m_time->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(8, 2, 8, 4);
    layout->setSpacing(24);
    m_rate->setAutoRaise(true);
    m_rate->setPopupMode(QToolButton::InstantPopup);
    m_rate->setMenu(new RateMenu(session, m_rate));
    m_rate->setToolTip(tr("The rate of playback; press to choose another one"));
    for (QWidget* part : {static_cast<QWidget*>(m_time), static_cast<QWidget*>(m_rate),
                          static_cast<QWidget*>(m_dropped)})
        layout->addWidget(part);
    layout->addStretch(1);
    m_middle = layout;
    auto* cache = new QHBoxLayout;
    cache->setSpacing(6);
    for (QWidget* part : {static_cast<QWidget*>(m_cache), static_cast<QWidget*>(m_cacheSize),
                          static_cast<QWidget*>(m_cached)})
        cache->addWidget(part);
    layout->addLayout(cache);

    connect(session->model(), &UI::TimeSliderModel::timeChanged, this, &StatusLine::showTime);
    connect(session->formatter(), &UI::TimeFormatter::timeFormatChanged, this,
            &StatusLine::showTime);
    connect(session, &Session::sequenceChanged, this, &StatusLine::showFacts);
    connect(session->player(), &Player::playingChanged, this, &StatusLine::showFacts);
    connect(session->player(), &Player::statusChanged, this, &StatusLine::showFacts);
    connect(session, &Session::timeBaseChanged, this, &StatusLine::showFacts);
    connect(session, &Session::cacheSizeChanged, this, &StatusLine::showCacheSize);
    // Facts change with every frame; a few looks a second are enough to read them.
    m_refresh.setInterval(250);
    connect(&m_refresh, &QTimer::timeout, this, &StatusLine::showFacts);
    m_refresh.start();
    showCacheSize();
    showTime();
    showFacts();
}

UI::DoubleSpinBox* StatusLine::makeCacheSize() {
    auto* size = new UI::DoubleSpinBox;
    size->setUnits(memoryUnits());
    size->setRange(1.0, mostMebibytes);
    size->setSoftRange(64.0, 16384.0);
    size->setDecimals(0);
    size->setSingleStep(64.0);
    size->setDefaultValue(1024.0);
    size->setButtonSymbols(QAbstractSpinBox::NoButtons);
    size->setAlignment(Qt::AlignRight);
    size->setFixedWidth(size->fontMetrics().horizontalAdvance(QStringLiteral(" 1048576 MiB ")) + 8);
    size->setAccessibleName(tr("Cache size"));
    size->setToolTip(tr("The memory that decoded frames may take"));
    // Not at every movement of a drag, which would throw away what it passes.
    connect(size, &UI::DoubleSpinBox::editFinished, this, [this](bool accepted) {
        if (accepted)
            chooseCacheSize();
    });
    return size;
}

void StatusLine::setMiddle(QWidget* widget) {
    m_middle->insertWidget(4, widget, 4);
}

void StatusLine::chooseCacheSize() {
    const auto mebibytes = int(std::lround(m_cacheSize->value()));
    m_session->setCacheBytes(std::size_t(mebibytes) << 20);
    showCacheSize();
    emit cacheSizeChosen(mebibytes);
}

void StatusLine::showCacheSize() {
    m_cacheSize->setValue(std::round(double(m_session->cache().capacity()) / mebibyte));
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
    QString rate =
        player.isPlaying()
            ? tr("%1 of %2 fps").arg(QString::number(player.achievedRate(), 'f', 1), wanted)
            : tr("%1 fps").arg(wanted);
    if (player.isPlaying() && player.speed() > 1)
        rate += tr(", %1 times as fast").arg(player.speed());
    m_rate->setText(rate);
    m_dropped->setText(player.dropped() == 0 ? QString() : tr("%1 dropped").arg(player.dropped()));
    const FrameCache& cache = m_session->cache();
    const QLocale locale;
    m_cache->setText(tr("Cache %1 of").arg(locale.formattedDataSize(qint64(cache.bytes()), 0)));
    m_cached->setText(tr("%1 frames").arg(cache.count()));
}

} // namespace Kestrel::Workbench
