#include <KxUI/eventgraph/EventGraphScene_p.h>

#include <algorithm>

namespace Kestrel::UI {

void Scene::update(const CaptureState& capture, bool hideEmpty) {
    const quint64 state = CaptureState::stateOfAllTracks();
    if (m_state == state && m_hidesEmpty == hideEmpty && m_startTime == capture.startTime)
        return;
    m_state = state;
    m_hidesEmpty = hideEmpty;
    m_startTime = capture.startTime;
    setTracks(capture.trackInfos(), hideEmpty);
}

void Scene::setTracks(const std::vector<TrackInfo>& tracks, bool hideEmpty) {
    m_rows.clear();
    qint64 top = 0;
    std::vector<quint64> contents;
    contents.reserve(tracks.size());
    for (const TrackInfo& track : tracks) {
        contents.push_back(track.content);
        if (hideEmpty && !track.hasSamples)
            continue;
        const bool timeline = track.type == EventTrack::TrackType::Timeline;
        const int height =
            timeline ? timelineRowHeight : std::clamp(track.graphHeight, 0, largestExtent);
        m_rows.push_back({track, static_cast<int>(std::min<qint64>(top, largestExtent)), height});
        top += height;
    }
    std::sort(contents.begin(), contents.end());
    for (auto index = m_indexes.begin(); index != m_indexes.end();) {
        const bool used = std::binary_search(contents.begin(), contents.end(), index->first);
        index = used ? std::next(index) : m_indexes.erase(index);
    }
}

qint64 Scene::height() const {
    return m_rows.empty() ? 0 : qint64(m_rows.back().top) + m_rows.back().height;
}

const SceneRow* Scene::rowAt(int y) const {
    const auto row = std::partition_point(m_rows.begin(), m_rows.end(), [y](const auto& each) {
        return each.top + each.height <= y;
    });
    return row != m_rows.end() && y >= row->top ? &*row : nullptr;
}

const SceneRow* Scene::rowOf(const EventTrack* track) const {
    const auto row = std::find_if(m_rows.begin(), m_rows.end(),
                                  [track](const auto& each) { return each.track.track == track; });
    return track && row != m_rows.end() ? &*row : nullptr;
}

const TrackIndex& Scene::index(const SceneRow& row) const {
    TrackIndex& index = m_indexes[row.track.content];
    if (!index.isFor(row.track, m_startTime)) {
        const auto content = CaptureState::contentOf(row.track);
        index = content ? makeIndex(*content, m_startTime) : makeIndex(row.track, m_startTime, {});
    }
    return index;
}

} // namespace Kestrel::UI
