#pragma once

#include <QSize>
#include <QString>

#include <vector>

namespace Kestrel::Workbench {

/** How a sample shot looks. */
struct SampleLook {
    QSize size{960, 540};
    /** Light at the bottom of the background, scene-linear red, green and blue. */
    float tint[3] = {0.10F, 0.13F, 0.18F};
    QString label;
};

/** Frame `frame` of a sample shot, `index` frames after its first: a turning leader wipe, a light
    brighter than white on its orbit, a grey wedge and the frame number. Scene-linear RGB, row by
    row from the top. May run on any thread. */
std::vector<float> paintSampleFrame(const SampleLook& look, int frame, int index);

} // namespace Kestrel::Workbench
