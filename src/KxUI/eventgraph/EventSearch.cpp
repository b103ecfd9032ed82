#include <KxUI/eventgraph/EventSearch_p.h>

#include <algorithm>
#include <limits>

namespace Kestrel::UI {
namespace {

constexpr qint64 farthest = std::numeric_limits<qint64>::max();

// A start says nothing that its end does not.
bool holds(const EventTrack::Event& event, const QString& text) {
    return event.type != EventTrack::Type::Start && event.userData &&
           event.userData->text().contains(text, Qt::CaseInsensitive);
}

// The first entry of a row in [low, high], or the last one, that holds the text.
std::optional<qint64> matchIn(const TrackInfo& track, const QString& text, qint64 low, qint64 high,
                              bool backwards) {
    const bool nameMatches =
        low <= FoundPlace::name && track.name.contains(text, Qt::CaseInsensitive);
    if (!backwards && nameMatches && high >= FoundPlace::name)
        return FoundPlace::name;
    if (const auto content = CaptureState::contentOf(track)) {
        const auto& events = content->events;
        const qint64 begin = std::max<qint64>(low, 0);
        const qint64 end = std::min(high, static_cast<qint64>(events.size()) - 1);
        for (qint64 step = 0; step <= end - begin; ++step) {
            const qint64 at = backwards ? end - step : begin + step;
            if (holds(events[static_cast<std::size_t>(at)], text))
                return at;
        }
    }
    if (backwards && nameMatches && high >= FoundPlace::name)
        return FoundPlace::name;
    return {};
}

} // namespace

std::optional<FoundPlace> findText(const std::vector<SceneRow>& rows, const QString& text,
                                   const FoundPlace& from, bool backwards) {
    const int count = static_cast<int>(rows.size());
    if (text.isEmpty() || count == 0)
        return {};
    const bool known = from.row >= 0 && from.row < count;
    const int first = known ? from.row : backwards ? count - 1 : 0;
    // The rest of the row where it begins comes first, its other part last.
    for (int step = 0; step <= (known ? count : count - 1); ++step) {
        const int row = ((backwards ? first - step : first + step) % count + count) % count;
        qint64 low = FoundPlace::name;
        qint64 high = farthest;
        if (known && step == 0)
            (backwards ? high : low) = backwards ? from.entry - 1 : from.entry + 1;
        else if (known && step == count)
            (backwards ? low : high) = from.entry;
        if (const auto entry =
                matchIn(rows[static_cast<std::size_t>(row)].track, text, low, high, backwards))
            return FoundPlace{row, *entry};
    }
    return {};
}

} // namespace Kestrel::UI
