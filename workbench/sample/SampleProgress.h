#pragma once

#include <QString>

namespace Kestrel::Workbench {

struct SampleResult {
    /** The finished sample; empty when there is none. */
    QString folder;
    /** What went wrong; empty after a success or when the user gave up. */
    QString message;
};

/** The folder of the sample, written first where it is not there yet, with a line to standard output.
    For programs without a window: returns when that is over; needs an application object. */
SampleResult provideSample();

} // namespace Kestrel::Workbench
