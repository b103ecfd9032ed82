#include "export/ExportPlan.h"

#include "media/Paths.h"

#include <QStringList>

#include <algorithm>
#include <cctype>

namespace Kestrel::Workbench {

namespace {

/** More than these nobody reads. */
constexpr int mostRanges = 12;

bool endsWith(const std::string& name, const std::string& suffix) {
    return name.size() > suffix.size() &&
           std::equal(suffix.rbegin(), suffix.rend(), name.rbegin(),
                      [](char a, char b) { return a == std::tolower(std::uint8_t(b)); });
}

} // namespace

std::vector<Base::Time> ExportPlan::frames() const {
    std::vector<Base::Time> times;
    for (const Sequence::Member& member : sequence.members()) {
        if (member.first >= first && member.first <= last)
            times.push_back(member.first);
    }
    return times;
}

std::vector<Base::Time> ExportPlan::missing() const {
    std::vector<Base::Time> times;
    if (sequence.isEmpty())
        return times;
    // The first of them that lies on the step of the shot.
    const Base::Time step = sequence.step();
    const Base::Time begin = std::max(first, sequence.firstTime());
    const Base::Time rest = (begin - sequence.firstTime()) % step;
    const Base::Time end = std::min(last, sequence.lastTime());
    for (Base::Time time = begin + (rest == 0 ? 0 : step - rest); time <= end; time += step) {
        if (!sequence.heldTime(time))
            times.push_back(time);
    }
    return times;
}

std::string ExportPlan::path(Base::Time frame) const {
    const auto pattern = UI::FileNames::patternOf(name);
    return joinPath(folder,
                    pattern ? UI::FileNames::frameFile(*pattern, std::int32_t(frame)) : name);
}

bool ExportPlan::mayReplace(Base::Time frame) const {
    if (!UI::FileNames::patternOf(name))
        return replacesFile;
    return std::any_of(replaces.begin(), replaces.end(), [frame](const Base::FrameRange& range) {
        return frame >= range.first && frame <= range.last &&
               (frame - range.first) % std::max(range.step, 1) == 0;
    });
}

bool ExportPlan::overwritesItself() const {
    const auto times = frames();
    return std::any_of(times.begin(), times.end(),
                       [this](Base::Time time) { return path(time) == sequence.path(time); });
}

std::optional<ExportFormat> exportFormatOf(const std::string& name, bool deep) {
    if (endsWith(name, ".exr"))
        return ExportFormat::Exr;
    if (endsWith(name, ".png"))
        return deep ? ExportFormat::Png16 : ExportFormat::Png8;
    return std::nullopt;
}

QString framesText(const std::vector<Base::Time>& frames) {
    QStringList ranges;
    for (std::size_t i = 0; i < frames.size();) {
        std::size_t end = i + 1;
        while (end < frames.size() && frames[end] == frames[end - 1] + 1)
            ++end;
        if (ranges.size() == mostRanges) {
            ranges << QStringLiteral("\u2026");
            break;
        }
        ranges << (end - i == 1 ? QString::number(frames[i])
                                : QStringLiteral("%1-%2").arg(frames[i]).arg(frames[end - 1]));
        i = end;
    }
    return ranges.join(QStringLiteral(", "));
}

} // namespace Kestrel::Workbench
