#include <KxUI/base/FrameSet.h>

namespace Kestrel::Base {

FrameSet frameSetOf(const std::vector<FrameRange>& ranges) {
    FrameSet frames;
    const auto add = [&frames](Time first, Time last) {
        // Ranges come in order as a rule: then each is put where the last one is.
        frames.add(frames.end(), FrameSet::interval_type::right_open(first, last + 1));
    };
    for (const auto& [first, last, step] : ranges) {
        if (step == 1 && first <= last)
            add(first, last);
        for (Time frame = first; step > 1 && frame <= last; frame += step)
            add(frame, frame);
    }
    return frames;
}

} // namespace Kestrel::Base
