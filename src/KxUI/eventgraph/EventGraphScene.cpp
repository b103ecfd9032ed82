#include <KxUI/eventgraph/EventGraphScene_p.h>

#include <algorithm>

namespace Kestrel::UI {

void Scene::setTracks(const std::vector<TrackInfo>& tracks, bool hideEmpty) {
    rows.clear();
    qint64 top = 0;
    for (const TrackInfo& track : tracks) {
        if (hideEmpty && !track.hasSamples)
            continue;
        const bool timeline = track.type == EventTrack::TrackType::Timeline;
        const int height =
            timeline ? timelineRowHeight : std::clamp(track.graphHeight, 0, largestExtent);
        rows.push_back({track, static_cast<int>(std::min<qint64>(top, largestExtent)), height});
        top += height;
    }
    std::vector<quint64> contents;
    contents.reserve(tracks.size());
    for (const TrackInfo& track : tracks)
        contents.push_back(track.content);
    std::sort(contents.begin(), contents.end());
    for (auto index = indexes.begin(); index != indexes.end();) {
        const bool used = std::binary_search(contents.begin(), contents.end(), index->first);
        index = used ? std::next(index) : indexes.erase(index);
    }
}

qint64 Scene::height() const {
    return rows.empty() ? 0 : qint64(rows.back().top) + rows.back().height;
}

const SceneRow* Scene::rowAt(int y) const {
    const auto row = std::partition_point(rows.begin(), rows.end(), [y](const SceneRow& each) {
        return each.top + each.height <= y;
    });
    return row != rows.end() && y >= row->top ? &*row : nullptr;
}

} // namespace Kestrel::UI
