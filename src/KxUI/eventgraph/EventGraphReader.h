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

/** Reads files that EventGraphWriter wrote into a view. The tracks of a file are added to those
    that the view has already; they are timeline tracks and belong to the view. An attribute that
    should be a number and is not one is read as 0.

    A document type declaration, elements nested more than 64 deep, more than 64 attributes on an
    element and a file beyond 4 GiB are errors. Interface thread. */
class KXUI_EXPORT EventGraphReader {
    Q_DECLARE_TR_FUNCTIONS(EventGraphReader)

public:
    /** Borrows the view. */
    explicit EventGraphReader(EventGraphView& view);

    /** Reads from a device, which must be open for reading. False when it is not, or when the
        document has an error; the tracks and events before the error are in the view then, too.
        Tracks of equal priority keep the order of the file. */
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
