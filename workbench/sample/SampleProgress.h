#pragma once

#include <QString>

namespace Kestrel::Workbench {

struct SampleResult {
    /** The finished sample; empty when there is none. */
    QString folder;
    /** What went wrong; empty after a success or when the user gave up. */
    QString message;
};

/** The folder of the sample, written first where it is not there yet, under a progress bar or,
    without `window`, with a line to standard output. Returns when that is over; needs an
    application object. */
SampleResult provideSample(bool window);

} // namespace Kestrel::Workbench
