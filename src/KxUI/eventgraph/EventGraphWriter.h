#pragma once

#include <KxUI/Export.h>

#include <QtGlobal>

QT_BEGIN_NAMESPACE
class QIODevice;
QT_END_NAMESPACE

namespace Kestrel::UI {

class EventGraphView;

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
        SkipDuplicates = 2   ///< leave it out where it is the object of the event written before
    };

    /** Borrows the view; `flags` is made of Flag. */
    EventGraphWriter(const EventGraphView& view, int flags);

    /** Writes the document to an open device; nothing to null. False when the device failed.

        Other threads may go on recording; no lock is held while a text is asked for or written. */
    bool write(QIODevice* device) const;

private:
    const EventGraphView& m_view;
    int m_flags;
};

} // namespace Kestrel::UI
