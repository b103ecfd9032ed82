#pragma once

#include <QtGlobal>

QT_BEGIN_NAMESPACE
class QIODevice;
QT_END_NAMESPACE

namespace Kestrel::UI {

struct EventGraphSnapshot;

/** Writes a capture in the Trace Event Format of the Chrome tracing tools, as JSON: activities as
    complete events ("X"), instants ("i") and the samples of graphs as counters ("C"), each timeline
    as a thread of its own, texts of user data as the argument "text". Times are microseconds since
    the start of the capture. False when the device failed. No lock is held while a text is asked
    for or written. */
bool writeEventTrace(const EventGraphSnapshot& capture, QIODevice* device);

} // namespace Kestrel::UI
