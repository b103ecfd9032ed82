#pragma once

#include <KxUI/Export.h>

#include <QCoreApplication>
#include <QString>

QT_BEGIN_NAMESPACE
class QIODevice;
class QXmlStreamReader;
QT_END_NAMESPACE

namespace Kestrel::UI {

class EventGraphView;

/** Adds the tracks and events of a file that EventGraphWriter wrote to a view, beside the tracks it
    has. All become timeline tracks, which the view owns; a number that is none reads as 0.

    A document type declaration, elements nested more than 64 deep, more than 64 attributes on an
    element and a file beyond 4 GiB are errors. interface thread. */
class KXUI_EXPORT EventGraphReader {
    Q_DECLARE_TR_FUNCTIONS(EventGraphReader)

public:
    /** Borrows the view. */
    explicit EventGraphReader(EventGraphView& view);

    /** Reads from a device that is open for reading, else it fails; false when the document has an
        error. What stands before the error stays in the view. Tracks of equal priority keep the
        order of the file. */
    bool read(QIODevice* device);

    /** The error of the last read() with its line and column; empty without one. */
    QString errorString() const { return m_error; }

private:
    class Tracks;

    bool readInto(Tracks& tracks, QIODevice* device);
    static void readDocument(QXmlStreamReader& xml, Tracks& tracks);
    static void readTrack(QXmlStreamReader& xml, Tracks& tracks);
    static void readEvent(QXmlStreamReader& xml, Tracks& tracks);

    EventGraphView& m_view;
    QString m_error;
};

} // namespace Kestrel::UI
