#include <KxUI/scopes/ScopeModel.h>

#include <KxUI/kit/InterfaceThread_p.h>
#include <KxUI/scopes/ScopeModel_p.h>

#include <QEvent>
#include <QPointer>

#include <algorithm>
#include <utility>

namespace Kestrel::UI {
namespace {

constexpr double SlowestRate = 0.1;
constexpr double FastestRate = 1000;
constexpr int MostRowStep = 64;

} // namespace

ScopeModel::ScopeModel(QObject* parent)
    : QObject(parent)
    , m(std::make_unique<Private>(*this)) {
    qRegisterMetaType<ScopeModel::Changes>();
    qRegisterMetaType<ScopeModel::Changes>("Kestrel::UI::ScopeModel::Changes");
}

ScopeModel::~ScopeModel() {
    m->close();
}

const ScopeImage& ScopeModel::image() const {
    return m->image;
}

void ScopeModel::setImage(const ScopeImage& image) {
    KXUI_INTERFACE_THREAD(this);
    // The host's memory may be freed by this, which is nobody's business while it is replaced.
    const ScopeImage replaced = std::exchange(m->image, image);
    const QPointer<ScopeModel> guard(this);
    m->invalidate();
    if (guard)
        m->tell(Image);
}

QRect ScopeModel::region() const {
    return m->region;
}

void ScopeModel::setRegion(const QRect& fullFramePixels) {
    KXUI_INTERFACE_THREAD(this);
    if (m->region == fullFramePixels)
        return;
    m->region = fullFramePixels;
    m->invalidate();
    m->tell(Region);
}

int ScopeModel::row() const {
    return m->row;
}

void ScopeModel::setRow(int row) {
    KXUI_INTERFACE_THREAD(this);
    const int wanted = std::max(row, -1);
    if (m->row == wanted)
        return;
    m->row = wanted;
    m->invalidate();
    m->tell(Region);
}

const ScopeEncoding& ScopeModel::encoding() const {
    return m->encoding;
}

void ScopeModel::setEncoding(const ScopeEncoding& encoding) {
    KXUI_INTERFACE_THREAD(this);
    // A transform cannot be compared, so this is taken for a change.
    const ScopeEncoding replaced = std::exchange(m->encoding, encoding);
    m->invalidate();
    m->tell(Encoding);
}

std::optional<ScopeSample> ScopeModel::sample() const {
    return m->sample;
}

void ScopeModel::setSample(const QPoint& fullFramePixel, int radius) {
    KXUI_INTERFACE_THREAD(this);
    ScopeSample place;
    place.x = fullFramePixel.x();
    place.y = fullFramePixel.y();
    place.radius = radius;
    m->samplePlace = place;
    m->readSample();
}

void ScopeModel::clearSample() {
    KXUI_INTERFACE_THREAD(this);
    m->samplePlace.reset();
    m->readSample();
}

std::shared_ptr<const ScopeResult> ScopeModel::reference() const {
    return m->reference;
}

void ScopeModel::hold() {
    KXUI_INTERFACE_THREAD(this);
    if (m->result->parts == 0 || m->reference == m->result)
        return;
    m->reference = m->result;
    m->tell(Reference);
}

void ScopeModel::clearReference() {
    KXUI_INTERFACE_THREAD(this);
    if (!m->reference)
        return;
    m->reference.reset();
    m->tell(Reference);
}

const ScopeSelection& ScopeModel::selection() const {
    return m->selection;
}

void ScopeModel::setSelection(const ScopeSelection& selection) {
    KXUI_INTERFACE_THREAD(this);
    if (m->selection == selection)
        return;
    m->selection = selection;
    m->tell(Selection);
}

ValueRange ScopeModel::solidRange() const {
    return m->solid;
}

void ScopeModel::setSolidRange(const ValueRange& range) {
    KXUI_INTERFACE_THREAD(this);
    if (m->solid == range)
        return;
    m->solid = range;
    if (requiredParts() & Solid)
        m->invalidate();
}

bool ScopeModel::isInteractive() const {
    return m->interactive;
}

void ScopeModel::setInteractive(bool interactive) {
    KXUI_INTERFACE_THREAD(this);
    if (m->interactive == interactive)
        return;
    m->interactive = interactive;
    if (!interactive && m->result->rowStep > 1)
        m->invalidate();
    m->tell(Pace);
}

int ScopeModel::interactiveRowStep() const {
    return m->rowStep;
}

void ScopeModel::setInteractiveRowStep(int rows) {
    KXUI_INTERFACE_THREAD(this);
    m->rowStep = std::clamp(rows, 1, MostRowStep);
}

double ScopeModel::maximumRate() const {
    return m->rate;
}

void ScopeModel::setMaximumRate(double perSecond) {
    KXUI_INTERFACE_THREAD(this);
    const double rate = perSecond >= SlowestRate ? std::min(perSecond, FastestRate) : SlowestRate;
    if (qFuzzyCompare(m->rate, rate))
        return;
    m->rate = rate;
    m->pace.stop();
    m->schedule();
    m->tell(Pace);
}

std::shared_ptr<const ScopeResult> ScopeModel::result() const {
    return m->result;
}

bool ScopeModel::isCurrent() const {
    return !m->isStale && m->inFlight == 0;
}

void ScopeModel::require(const QObject* who, Parts parts, const WaveformRange& waveform,
                         const VectorRange& vectors) {
    KXUI_INTERFACE_THREAD(this);
    m->setNeed(who, {parts, waveform, vectors, 0});
}

ScopeModel::Parts ScopeModel::requiredParts() const {
    return m->need().parts;
}

void ScopeModel::find(const QObject* who, const ScopeSelection& wanted,
                      const QRect& fullFramePixels) {
    KXUI_INTERFACE_THREAD(this);
    m->find(who, wanted, fullFramePixels);
}

quint64 ScopeModel::passCount() const {
    return m->passes;
}

bool ScopeModel::event(QEvent* event) {
    if (event->type() != MailboxBase::eventType())
        return QObject::event(event);
    const QPointer<ScopeModel> guard(this);
    m->takeSample();
    if (guard)
        m->takeFound();
    if (guard)
        m->takeResult();
    return true;
}

} // namespace Kestrel::UI
