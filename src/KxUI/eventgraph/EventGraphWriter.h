#pragma once

#include <KxUI/Export.h>

#include <QFlags>

QT_BEGIN_NAMESPACE
class QIODevice;
QT_END_NAMESPACE

namespace Kestrel::UI {

class EventGraphView;
struct EventGraphSnapshot;

/** Writes the tracks and events of a view as XML.

    \code
    <EventGraph StartTime="1000" EndTime="3000">
        <Track Name="Decode" Color="#ff8000" Priority="10">
            <Event Type="1" Time="1200"/>
            <Event Type="2" Time="1233">
                <EventData>shot_0101.exr</EventData>
    \endcode

    Times are those of the capture's clock in milliseconds. The values of samples, the kinds of
    tracks and the settings of graphs are not kept. Characters that XML cannot carry are written as
    U+FFFD. */
class KXUI_EXPORT EventGraphWriter {
public:
    /** What is written beside times and names. */
    enum Flag {
        IncludeUserData = 1, ///< write the text of user data
        SkipDuplicates = 2   ///< but not when the event before has the same user data object
    };
    /** Any of them. */
    Q_DECLARE_FLAGS(Flags, Flag)

    /** Borrows the view. */
    EventGraphWriter(const EventGraphView& view, Flags flags);
    EventGraphWriter(const EventGraphView& view, int flags);

    /** Writes the capture as it is at this call. False when the device is not open for writing, or
        when writing to it failed. Null is no device: nothing is written then, and the result is
        true.

        Other threads may go on recording; no lock is held while a text is asked for or written. */
    bool write(QIODevice* device) const;

    /** The same of a capture that was taken before (EventGraphView::snapshot()), on any thread: for a
        host that saves in the background. The texts of user data are asked for on that thread.
        @param capture  what is written
        @param flags    what of it
        @param device   as write() */
    static bool write(const EventGraphSnapshot& capture, Flags flags, QIODevice* device);

    /** Writes a capture for trace viewers, as EventGraphView::exportTrace() does, on any thread.
        @param capture  what is written
        @param device   as write() */
    static bool writeTrace(const EventGraphSnapshot& capture, QIODevice* device);

private:
    const EventGraphView& m_view;
    Flags m_flags;
};

Q_DECLARE_OPERATORS_FOR_FLAGS(EventGraphWriter::Flags)

} // namespace Kestrel::UI
