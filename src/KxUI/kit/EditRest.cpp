#include <KxUI/kit/EditRest_p.h>

#include <algorithm>
#include <utility>
#include <vector>

namespace Kestrel::UI {
namespace {

bool clockStopped = false;

std::vector<EditRest*>& rests() {
    static std::vector<EditRest*> all;
    return all;
}

} // namespace

EditRest::EditRest(std::function<void()> over)
    : m_over(std::move(over)) {
    m_timer.setSingleShot(true);
    QObject::connect(&m_timer, &QTimer::timeout, &m_timer, [this] { end(); });
    rests().push_back(this);
}

EditRest::~EditRest() {
    auto& all = rests();
    all.erase(std::remove(all.begin(), all.end(), this), all.end());
}

void EditRest::start() {
    constexpr int Day = 24 * 60 * 60 * 1000;
    m_timer.start(clockStopped ? Day : Milliseconds);
}

void EditRest::stop() {
    m_timer.stop();
}

void EditRest::end() {
    m_timer.stop();
    const std::function<void()> over = m_over; // outlives the rest
    over();
}

void EditRest::stopTheClock() {
    clockStopped = true;
}

void EditRest::pass() {
    const std::vector<EditRest*> all = rests();
    for (EditRest* rest : all) {
        const auto& left = rests();
        if (std::find(left.begin(), left.end(), rest) != left.end() && rest->m_timer.isActive())
            rest->end();
    }
}

} // namespace Kestrel::UI
