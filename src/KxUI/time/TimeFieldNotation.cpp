#include <KxUI/time/TimeFieldNotation.h>

#include <KxUI/base/TimeArithmetic.h>

#include <string>
#include <string_view>

namespace Kestrel::UI {

using Base::InvalidTime;
using Base::Time;
namespace Timecode = Base::Timecode;
using Edit = TimeFieldNotation::Edit;

namespace {

Edit timeOrFailure(Time time) {
    if (time == InvalidTime)
        return {Edit::Failed, InvalidTime, InvalidTime};
    return {Edit::SetTime, time, InvalidTime};
}

} // namespace

QString TimeFieldNotation::text(Time time) const {
    if (time == InvalidTime)
        return QString();
    char text[Timecode::MaximumLength];
    const std::size_t length = Timecode::format(text, time, timeBase, type, false, offset);
    return QString::fromLatin1(text, static_cast<int>(length));
}

Edit TimeFieldNotation::read(const QString& text, Time current) const {
    const std::string typed = text.trimmed().toStdString();
    const std::string_view all = typed;
    const auto parse = [this](std::string_view part, Time partOffset) {
        return Timecode::fromString(part, timeBase, type, partOffset);
    };
    if (all.empty())
        return {};

    if (all.front() == '+' || all.front() == '-') {
        const Time step = parse(all.substr(1), 0);
        if (step == InvalidTime)
            return timeOrFailure(InvalidTime);
        return timeOrFailure(
            Base::exactSum(current == InvalidTime ? 0 : current, all.front() == '-' ? -step : step)
                .value_or(InvalidTime));
    }

    const auto dash = all.find('-');
    if (dash == std::string_view::npos)
        return timeOrFailure(parse(all, offset));

    if (all.find('-', dash + 1) != std::string_view::npos)
        return timeOrFailure(InvalidTime);
    const Time lower = parse(all.substr(0, dash), 0);
    if (lower == InvalidTime)
        return timeOrFailure(InvalidTime);
    return {Edit::SetRange, lower, parse(all.substr(dash + 1), 0)};
}

Time TimeFieldNotation::digitStep(const QString& text, int caret) const {
    const auto times = [](Time unit, Time factor) {
        return Base::exactProduct(unit, factor).value_or(0);
    };
    int fieldEnd = int(text.size());
    Time unit = 1;
    if (type != Timecode::Frames) {
        int separators = 0;
        for (int i = fieldEnd - 1; i >= caret && i >= 0; --i) {
            if (QStringView(u".;:").contains(text.at(i))) {
                ++separators;
                fieldEnd = i;
            }
        }
        for (int field = 0; field < separators; ++field)
            unit = times(unit, field == 0 ? timeBase.roundedFps() : 60);
    }
    const int digitsRight = fieldEnd - caret - 1;
    if (digitsRight < 0)
        return 0;
    for (int digit = 0; digit < digitsRight && unit != 0; ++digit)
        unit = times(unit, 10);
    return unit;
}

} // namespace Kestrel::UI
