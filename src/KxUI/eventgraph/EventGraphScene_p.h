#pragma once

#include <KxUI/eventgraph/TrackIndex_p.h>

#include <map>
#include <vector>

namespace Kestrel::UI {

/** A row of the view. */
struct SceneRow {
    TrackInfo track;
    int top = 0;
    int height = 0;
};

/** What the view shows: its rows as they were last looked at, and the indexes made of them. */
struct Scene {
    std::vector<SceneRow> rows;
    int startTime = 0;
    int endTime = 0;
    std::map<quint64, TrackIndex> indexes; // by content

    /** Lays out rows for these tracks, and forgets the indexes of others. */
    void setTracks(const std::vector<TrackInfo>& tracks, bool hideEmpty);

    qint64 height() const;

    /** The row at a y, or null. */
    const SceneRow* rowAt(int y) const;
};

} // namespace Kestrel::UI
