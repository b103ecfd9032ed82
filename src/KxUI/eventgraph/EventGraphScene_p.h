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

/** What the view shows: its rows, and the indexes made of them when they were looked at. */
class Scene {
public:
    /** Lays out rows for the tracks of a capture, unless nothing has changed since: what any track
        holds, which have rows, the times. Takes the mutex. */
    void update(const CaptureState& capture, bool hideEmpty);

    /** Lays out rows for these tracks, and forgets the indexes of others. */
    void setTracks(const std::vector<TrackInfo>& tracks, bool hideEmpty);

    /** From top to bottom. */
    const std::vector<SceneRow>& rows() const { return m_rows; }
    qint64 height() const;

    /** The row at a y, or null. */
    const SceneRow* rowAt(int y) const;

    /** The row of a track, or null. */
    const SceneRow* rowOf(const EventTrack* track) const;

    /** The index of a row's events. Takes the mutex. */
    const TrackIndex& index(const SceneRow& row) const;

private:
    quint64 m_state = 0; // of all tracks, when the rows were laid out
    bool m_hidesEmpty = false;
    int m_startTime = 0;
    std::vector<SceneRow> m_rows;
    mutable std::map<quint64, TrackIndex> m_indexes; // by content
};

} // namespace Kestrel::UI
