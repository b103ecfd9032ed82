#include "play/ScopeFeed.h"

#include "play/Session.h"

#include <QStringList>

#include <algorithm>
#include <cmath>

namespace Kestrel::Workbench {

namespace {

/** A second. */
constexpr double mostPasses = 25.0;
constexpr double fewestPasses = 3.0;
/** Without a dropped frame, before scopes are counted more often again. */
constexpr int recoveryMs = 1500;

const QString sourceKey = QStringLiteral("source");
const QString matrixKey = QStringLiteral("matrix");
const QString fullRangeKey = QStringLiteral("fullRange");
const char* const sourceWords[] = {"file", "screen"};
const char* const matrixWords[] = {"rec709", "rec601", "rec2020"};

/** The number of a word in a list; `otherwise` where it is none of them. */
template <std::size_t Count>
int indexOf(const char* const (&words)[Count], const QString& word, int otherwise) {
    const auto* found = std::find_if(std::begin(words), std::end(words), [&word](const char* each) {
        return word == QLatin1String(each);
    });
    return found == std::end(words) ? otherwise : int(found - words);
}

/** Film scans, whose codes stand for density, as the screen's signal. */
void filmToSignal(float* rgb, int pixels) {
    static const std::vector<float> signal = [] {
        std::vector<float> table(65536);
        const SampleFormat film{SampleFormat::Type::Integer16, Encoding::FilmLog};
        for (std::size_t i = 0; i < table.size(); ++i)
            table[i] = float(srgbSignal(lightOf(film, std::uint16_t(i))));
        return table;
    }();
    for (int i = 0; i < 3 * pixels; ++i)
        rgb[i] = signal[std::size_t(std::lround(std::clamp(rgb[i], 0.0F, 1.0F) * 65535.0F))];
}

int proxyOf(const Frame& frame) {
    const int width = std::max(frame.image.width(), 1);
    return std::max(1, int(std::lround(double(frame.fullSize.width()) / width)));
}

UI::ScopeImage imageOf(const FramePtr& frame, bool samples) {
    UI::ScopeImage image;
    image.owner = frame;
    image.width = frame->image.width();
    image.height = frame->image.height();
    image.proxy = proxyOf(*frame);
    if (samples) {
        const bool isHalf = frame->samples->format.type == SampleFormat::Type::Half;
        image.layout = isHalf ? UI::PixelLayout::RGBHalf : UI::PixelLayout::RGB16;
        image.pixels = frame->samples->rgb.data();
        image.stride = std::ptrdiff_t(image.width) * 6;
    } else {
        // What the picture's fourth byte has is not alpha, but it is never below opaque.
        image.layout = UI::PixelLayout::BGRA8;
        image.pixels = frame->image.constBits();
        image.stride = frame->image.bytesPerLine();
    }
    return image;
}

} // namespace

ScopeFeed::ScopeFeed(Session* session)
    : m_session(session) {
    connect(session, &Session::frameChanged, this, [this] {
        forgetMark();
        feed();
    });
    connect(session, &Session::pointedPixelChanged, this, &ScopeFeed::followPointer);
    connect(session->player(), &Player::playingChanged, this, &ScopeFeed::followPlayer);
    connect(session->player(), &Player::framesDropped, this, &ScopeFeed::giveWay);
    m_recovery.setInterval(recoveryMs);
    connect(&m_recovery, &QTimer::timeout, this, &ScopeFeed::recover);
}

void ScopeFeed::followPlayer(bool playing) {
    m_model.setInteractive(playing);
    m_model.setMaximumRate(mostPasses);
    if (playing)
        m_recovery.start();
    else
        m_recovery.stop();
}

/** Half as many passes; the time until there may be more begins anew. */
void ScopeFeed::giveWay() {
    m_model.setMaximumRate(std::max(m_model.maximumRate() / 2, fewestPasses));
    m_recovery.start();
}

void ScopeFeed::recover() {
    m_model.setMaximumRate(std::min(m_model.maximumRate() * 1.25, mostPasses));
}

void ScopeFeed::setSource(Source source) {
    if (source == m_source)
        return;
    m_source = source;
    askSession();
    feed();
    emit settingsChanged();
}

void ScopeFeed::setMatrix(Matrix matrix) {
    if (matrix == m_matrix)
        return;
    m_matrix = matrix;
    m_model.setEncoding(encoding());
    emit settingsChanged();
}

QString ScopeFeed::matrixName(Matrix matrix) {
    constexpr const char* names[] = {"Rec 709", "Rec 601", "Rec 2020"};
    return QLatin1String(names[matrix]);
}

void ScopeFeed::setFullRange(bool full) {
    if (full == m_fullRange)
        return;
    m_fullRange = full;
    m_model.setEncoding(encoding());
    emit settingsChanged();
}

void ScopeFeed::watch(const QObject* pane, bool looks) {
    if (looks == m_watchers.contains(pane))
        return;
    if (looks) {
        m_watchers.insert(pane);
        connect(pane, &QObject::destroyed, this, [this, pane] { watch(pane, false); });
    } else {
        m_watchers.remove(pane);
        disconnect(pane, &QObject::destroyed, this, nullptr);
    }
    if (m_watchers.size() > (looks ? 1 : 0))
        return;
    askSession();
    if (looks)
        feed();
    else
        takeNothing();
    emit watchedChanged(looks);
}

void ScopeFeed::askSession() {
    m_session->keepForScopes(isWatched(), isWatched() && m_source == Screen);
}

/** Nothing while what the file holds is on its way. */
std::optional<ScopeFeed::Reading> ScopeFeed::readingOf(const Frame& shown,
                                                       const Frame& source) const {
    Reading reading;
    const Frame& counted = m_source == File ? source : shown;
    if (m_source == File && !source.isComplete)
        return std::nullopt;
    reading.samples = counted.samples != nullptr;
    reading.format = reading.samples ? counted.samples->format : SampleFormat();
    reading.toSignal = m_source == Screen && reading.format.encoding != Encoding::Display;
    return reading;
}

UI::ScopeEncoding ScopeFeed::encoding() const {
    UI::ScopeEncoding encoding;
    if (m_reading.toSignal && m_reading.format.encoding == Encoding::SceneLinear)
        encoding.transfer = UI::ScopeEncoding::Transfer::Srgb;
    else if (m_reading.toSignal)
        encoding.transform = filmToSignal;
    if (m_matrix == Rec601)
        encoding.matrix = UI::colorSpaceRgbToYCbCr(UI::ColorSpace::Rec601);
    else if (m_matrix == Rec2020)
        encoding.matrix = UI::rgbToYCbCrMatrix(0.2627, 0.0593);
    encoding.bits = m_reading.samples ? 10 : 8;
    encoding.fullRange = m_fullRange;
    return encoding;
}

void ScopeFeed::feed() {
    if (!isWatched())
        return;
    const FramePtr shown = m_session->shownFrame();
    const FramePtr source = m_session->sourceFrame();
    if (!shown || !source || shown->state != Frame::State::Ready)
        return takeNothing();
    // What stands in for another frame is not what somebody wants counted.
    if (m_session->isLoading())
        return;
    if (const auto reading = readingOf(*shown, *source))
        take(m_source == File ? source : shown, *reading);
}

void ScopeFeed::take(const FramePtr& frame, const Reading& reading) {
    const bool readsAnew = !(reading == m_reading) || !m_frame;
    if (frame == m_frame && !readsAnew)
        return;
    const bool sizeChanged = !m_frame || m_frame->fullSize != frame->fullSize;
    m_frame = frame;
    if (readsAnew) {
        // Or else the picture before would be counted by the encoding of this one.
        m_model.setImage({});
        m_reading = reading;
        m_model.setEncoding(encoding());
    }
    const QRect whole(QPoint(), frameSize());
    if (sizeChanged && !m_model.region().isNull() && !whole.intersects(m_model.region()))
        m_model.setRegion({});
    m_model.setImage(imageOf(frame, reading.samples));
    if (readsAnew)
        emit settingsChanged();
}

void ScopeFeed::takeNothing() {
    if (!m_frame)
        return;
    m_frame = nullptr;
    m_model.setImage({});
    emit settingsChanged();
}

void ScopeFeed::followPointer() {
    const QPoint at = m_session->pointedAt();
    if (at == QPoint(-1, -1) || !isWatched() || !m_frame)
        m_model.clearSample();
    else
        m_model.setSample(at * proxyOf(*m_frame));
}

QString ScopeFeed::description() const {
    if (!m_frame)
        return tr("No picture");
    QStringList parts{m_source == File ? tr("File") : tr("Screen")};
    const bool isReduced = proxyOf(*m_frame) > 1;
    if (m_source == File && isReduced)
        parts[0] = tr("Screen, as the file is too large");
    if (!m_reading.samples)
        parts << tr("8 bit");
    else if (m_reading.format.type == SampleFormat::Type::Half)
        parts << tr("half float");
    else
        parts << tr("16 bit");
    if (m_source == File && m_reading.format.encoding == Encoding::SceneLinear)
        parts << tr("scene-linear");
    else if (m_source == File && m_reading.format.encoding == Encoding::FilmLog)
        parts << tr("film log");
    parts << matrixName(m_matrix);
    return parts.join(QStringLiteral(", "));
}

QSize ScopeFeed::frameSize() const {
    return m_frame ? m_frame->image.size() * proxyOf(*m_frame) : QSize();
}

void ScopeFeed::markPixel(const QPoint& fullFramePixel) {
    if (m_frame)
        m_markTime = m_frame->time;
    m_mark = fullFramePixel;
    emit markChanged();
}

void ScopeFeed::clearMark() {
    if (!m_mark)
        return;
    m_mark.reset();
    emit markChanged();
}

/** Where another frame has its brightest pixel says nothing about this one. */
void ScopeFeed::forgetMark() {
    const FramePtr shown = m_session->shownFrame();
    if (!shown || shown->time != m_markTime)
        clearMark();
}

QJsonObject ScopeFeed::saveState() const {
    return {{sourceKey, QLatin1String(sourceWords[m_source])},
            {matrixKey, QLatin1String(matrixWords[m_matrix])},
            {fullRangeKey, m_fullRange}};
}

void ScopeFeed::restoreState(const QJsonObject& state) {
    setSource(Source(indexOf(sourceWords, state.value(sourceKey).toString(), m_source)));
    setMatrix(Matrix(indexOf(matrixWords, state.value(matrixKey).toString(), m_matrix)));
    setFullRange(state.value(fullRangeKey).toBool(m_fullRange));
}

} // namespace Kestrel::Workbench
