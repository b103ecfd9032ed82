// Times as timecode and back, and a frame range as users type it.

#include <KxUI/base/FrameRange.h>
#include <KxUI/base/Timecode.h>

#include <cstdio>

using namespace Kestrel::Base;

int main() {
    const TimeBase ntsc = TimeBase::standard(TimeBase::Rate2997);
    const Time frame = 17982; // ten minutes

    std::printf("%s\n", Timecode::toString(frame, ntsc, Timecode::DropFrameTimecode).c_str());
    std::printf("%s\n", Timecode::toString(frame, ntsc, Timecode::FeetFrames16).c_str());

    // Without an allocation, for tables of many rows. No terminating zero is written.
    char text[Timecode::MaximumLength];
    const std::size_t length = Timecode::format(text, frame, ntsc, Timecode::Timecode);
    std::printf("%.*s\n", int(length), text);

    const Time typed = Timecode::fromString("1:02:03", ntsc, Timecode::Timecode);
    if (typed == InvalidTime)
        return 1;
    std::printf("%lld\n", static_cast<long long>(typed));

    std::string error;
    if (const auto range = parseFrameRange("1001-1240x2", &error))
        std::printf("%d to %d by %d\n", range->first, range->last, range->step);
    else
        std::fprintf(stderr, "%s\n", error.c_str());
}
