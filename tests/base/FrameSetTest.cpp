#include <KxUI/base/FrameSet.h>

#include <support/Plain.h>

#include <limits>

using namespace Kestrel::Base;

KXUI_PLAIN_TEST(FrameSetTest, ofRanges) {
    constexpr auto latest = std::numeric_limits<std::int32_t>::max();
    const struct {
        std::vector<FrameRange> ranges;
        const char* frames;
    } rows[] = {{{}, "{}"},
                {{{3, 5}}, "{[3,6)}"},
                {{{7, 7}, {1, 2}, {3, 5}, {4, 4}}, "{[1,6)[7,8)}"},
                {{{-1, 6, 3}, {7, 7, 5}}, "{[-1,0)[2,3)[5,6)[7,8)}"},
                {{{5, 4}, {1, 9, 0}, {1, 9, -1}}, "{}"},
                {{{latest, latest}, {latest - 1, latest, 3}}, "{[2147483646,2147483648)}"}};
    for (const auto& row : rows) {
        std::ostringstream text;
        text << frameSetOf(row.ranges);
        COMPARE(text.str(), row.frames);
    }
}
