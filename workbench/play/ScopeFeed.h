#pragma once

#include "media/Frame.h"

#include <KxUI/scopes/ScopeModel.h>

#include <QJsonObject>
#include <QObject>
#include <QPoint>
#include <QSet>
#include <QSize>
#include <QTimer>

#include <optional>

namespace Kestrel::Workbench {

class Session;

/** What all scopes of a session look at: one model, given the frame that the viewer shows for as long
    as a pane with scopes is seen. Frames that come quicker than they can be counted are left out, and
    more of them where playback drops frames: it comes first.

    Places are pixels of the full frame, also where the viewer has a smaller picture of it. */
class ScopeFeed : public QObject {
    Q_OBJECT

public:
    /** Which values are counted. */
    enum Source {
        File,  ///< those of the file, before the grade
        Screen ///< the graded ones, as the signal of an sRGB screen
    };
    /** What luma and chroma are made by. */
    enum Matrix { Rec709, Rec601, Rec2020, MatrixCount };

    /** @param session  borrowed; outlives the feed */
    explicit ScopeFeed(Session* session);

    UI::ScopeModel* model() { return &m_model; }
    const UI::ScopeModel* model() const { return &m_model; }

    /** Screen at first. */
    Source source() const { return m_source; }
    void setSource(Source source);

    /** Rec709 at first. */
    Matrix matrix() const { return m_matrix; }
    void setMatrix(Matrix matrix);
    /** As users know it. */
    static QString matrixName(Matrix matrix);

    /** Whether codes reach from the first to the last one, as those of a screen do, and as at first. */
    bool hasFullRange() const { return m_fullRange; }
    void setFullRange(bool full);

    /** A pane that is seen looks at frames, until it does not, or is destroyed. */
    void watch(const QObject* pane, bool looks);
    bool isWatched() const { return !m_watchers.isEmpty(); }

    /** What is counted, in a line: "Screen, half float, Rec 709". */
    QString description() const;

    /** The size of the frame that is counted, in pixels of the full frame; empty without one. */
    QSize frameSize() const;

    /** The pixel that somebody asked to see in the viewer; it is forgotten with the frame. */
    std::optional<QPoint> mark() const { return m_mark; }
    void markPixel(const QPoint& fullFramePixel);
    void clearMark();

    /** Asks the viewer to take the keys for the region. */
    void editRegion() { emit regionEditAsked(); }

    /** What a workspace remembers: source, matrix and range. */
    QJsonObject saveState() const;
    void restoreState(const QJsonObject& state);

signals:
    /** The source, the matrix or the range is another one, or what description() says. */
    void settingsChanged();
    void watchedChanged(bool watched);
    void markChanged();
    void regionEditAsked();

private:
    /** How the values of a frame become what is counted. */
    struct Reading {
        bool samples = false; ///< not the picture of 8 bits
        SampleFormat format;
        bool toSignal = false; ///< light is counted as the screen's signal

        bool operator==(const Reading& other) const {
            return samples == other.samples && format == other.format && toSignal == other.toSignal;
        }
    };

    std::optional<Reading> readingOf(const Frame& shown, const Frame& source) const;
    UI::ScopeEncoding encoding() const;
    void feed();
    void take(const FramePtr& frame, const Reading& reading);
    void takeNothing();
    void askSession();
    void followPointer();
    void forgetMark();
    void followPlayer(bool playing);
    void giveWay();
    void recover();

    Session* m_session;
    UI::ScopeModel m_model;
    Source m_source = Screen;
    Matrix m_matrix = Rec709;
    bool m_fullRange = true;
    QSet<const QObject*> m_watchers;
    /** What the model has. */
    FramePtr m_frame;
    Reading m_reading;
    /** Runs while playing. */
    QTimer m_recovery;
    std::optional<QPoint> m_mark;
    Base::Time m_markTime = Base::InvalidTime;
};

} // namespace Kestrel::Workbench
