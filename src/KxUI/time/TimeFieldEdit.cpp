#include <KxUI/time/TimeFieldEdit_p.h>

#include <limits>

namespace Kestrel::UI {

using Base::InvalidTime;
using Base::Time;
namespace Timecode = Base::Timecode;

namespace {

constexpr Time MaximumTime = std::numeric_limits<Time>::max();

Time parse(std::string_view text, const TimeFieldNotation& notation, Time offset) {
    return Timecode::fromString(text, notation.timeBase, notation.type, offset);
}

// a * b for values of 0 or more; 0 where the product does not fit.
Time productOrZero(Time a, Time b) {
    return b != 0 && a > MaximumTime / b ? 0 : a * b;
}

TimeFieldEdit timeOrFailure(Time time) {
    if (time == InvalidTime)
        return {TimeFieldEdit::Failed, InvalidTime, InvalidTime};
    return {TimeFieldEdit::SetTime, time, InvalidTime};
}

} // namespace

Time addTimes(Time a, Time b) {
    if (b >= 0 ? a > MaximumTime - b : a < std::numeric_limits<Time>::min() - b)
        return InvalidTime;
    return a + b;
}

TimeFieldEdit readTimeFieldEdit(std::string_view text, const TimeFieldNotation& notation,
                                Time current) {
    if (text.empty())
        return {};

    if (text.front() == '+' || text.front() == '-') {
        Time step = parse(text.substr(1), notation, 0);
        if (step == InvalidTime)
            return timeOrFailure(InvalidTime);
        if (text.front() == '-')
            step = -step;
        return timeOrFailure(addTimes(current == InvalidTime ? 0 : current, step));
    }

    const auto dash = text.find('-');
    if (dash == std::string_view::npos)
        return timeOrFailure(parse(text, notation, notation.offset));

    if (text.find('-', dash + 1) != std::string_view::npos)
        return timeOrFailure(InvalidTime);
    const Time lower = parse(text.substr(0, dash), notation, 0);
    if (lower == InvalidTime)
        return timeOrFailure(InvalidTime);
    return {TimeFieldEdit::SetRange, lower, parse(text.substr(dash + 1), notation, 0)};
}

Time timeFieldDigitStep(std::string_view text, int caret, const TimeFieldNotation& notation) {
    const int length = static_cast<int>(text.size());
    int fieldEnd = length;
    Time unit = 1;
    if (notation.type != Timecode::Frames) {
        int separators = 0;
        for (int i = length - 1; i >= caret && i >= 0; --i) {
            const char character = text[static_cast<std::size_t>(i)];
            if (character == '.' || character == ';' || character == ':') {
                ++separators;
                fieldEnd = i;
            }
        }
        for (int field = 0; field < separators; ++field)
            unit = productOrZero(unit, field == 0 ? notation.timeBase.roundedFps() : 60);
    }
    const int digitsRight = fieldEnd - caret - 1;
    if (digitsRight < 0)
        return 0;
    for (int digit = 0; digit < digitsRight && unit != 0; ++digit)
        unit = productOrZero(unit, 10);
    return unit;
}

} // namespace Kestrel::UI
