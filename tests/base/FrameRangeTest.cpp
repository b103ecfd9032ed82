#include <KxUI/base/FrameRange.h>

#include <support/Plain.h>

using Kestrel::Base::FrameRange;
using Kestrel::Base::parseFrameRange;

KXUI_PLAIN_TEST(FrameRangeTest, reads) {
    CHECK(parseFrameRange("7") == FrameRange(7, 7));
    CHECK(parseFrameRange("1-10") == FrameRange(1, 10));
    CHECK(parseFrameRange("-5--1") == FrameRange(-5, -1));
    CHECK(parseFrameRange("1-10x3") == FrameRange(1, 10, 3));
    CHECK(parseFrameRange("10-40,10") == FrameRange(10, 40, 10));
}

KXUI_PLAIN_TEST(FrameRangeTest, refuses) {
    for (const char* text : {"", "a", "1-", "-", "10-1", "1-10x", "1-10x0", "1-10x-1", "1-10 ",
                             " 1", "1-10x2x", "5x2", "99999999999", "1-99999999999"}) {
        std::string error;
        CHECK_FOR(!parseFrameRange(text, &error), text);
        COMPARE(error, "Frame range failed to parser: \"" + std::string(text) + "\"");
    }
}
