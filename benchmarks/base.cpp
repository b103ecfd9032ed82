#include <KxUI/base/Timecode.h>
#include <KxUI/time/TimeFormatter.h>

#include <support/Bench.h>

#include <boost/regex.hpp>

#include <cstdio>
#include <string>
#include <vector>

extern "C" {
#include <libavutil/timecode.h>
#include <ltc.h>
}

namespace {

using namespace Kestrel;
using Base::Time;
using Base::TimeBase;

constexpr int FrameCount = 1000000;

struct Rate {
    const char* name;
    TimeBase base;
    Base::Timecode::DisplayType type;
    AVRational average;
    int avFlags;
    LTC_TV_STANDARD standard;
};

const Rate rates[] = {
    {"25", TimeBase(25, false), Base::Timecode::Timecode, {25, 1}, 0, LTC_TV_625_50},
    {"29.97 drop",
     TimeBase(30, true),
     Base::Timecode::DropFrameTimecode,
     {30000, 1001},
     AV_TIMECODE_FLAG_DROPFRAME,
     LTC_TV_525_60},
};

AVTimecode avTimecode(const Rate& rate) {
    AVTimecode timecode;
    av_timecode_init(&timecode, rate.average, rate.avFlags | AV_TIMECODE_FLAG_24HOURSMAX, 0,
                     nullptr);
    return timecode;
}

// libltc counts by incrementing its own frame; the count is made before the clock runs.
std::vector<LTCFrame> ltcFrames(const Rate& rate) {
    LTCFrame frame;
    ltc_frame_reset(&frame);
    frame.dfbit = rate.type == Base::Timecode::DropFrameTimecode;
    std::vector<LTCFrame> frames;
    frames.reserve(FrameCount);
    for (int i = 0; i < FrameCount; ++i) {
        frames.push_back(frame);
        ltc_frame_increment(&frame, rate.base.roundedFps(), rate.standard, LTC_NO_PARITY);
    }
    return frames;
}

template <class ToText>
void overFrames(benchmark::State& state, ToText toText) {
    for (auto _ : state)
        for (int frame = 0; frame < FrameCount; ++frame)
            benchmark::DoNotOptimize(toText(frame));
    state.SetItemsProcessed(state.iterations() * FrameCount);
}

template <class Read>
void overTexts(benchmark::State& state, const std::vector<std::string>& texts, Read read) {
    for (auto _ : state)
        for (const std::string& text : texts)
            benchmark::DoNotOptimize(read(text));
    state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(texts.size()));
}

void addToString(const Rate& rate) {
    const std::string work = std::string("Timecode::toString, 1,000,000 frames, ") + rate.name;
    Bench::target(work, 0.02);
    Bench::targetRatio(work, "libltc to text", 5);
    Bench::targetRatio(work, "libavutil", 5);
    Bench::add(work, "ours", [&rate](benchmark::State& state) {
        overFrames(state, [&rate](int frame) {
            return Base::Timecode::toString(frame, rate.base, rate.type);
        });
    });
    Bench::add(work, "ours, into a buffer", [&rate](benchmark::State& state) {
        char buffer[Base::Timecode::MaximumLength];
        overFrames(state, [&rate, &buffer](int frame) {
            benchmark::DoNotOptimize(buffer);
            return Base::Timecode::format(buffer, frame, rate.base, rate.type);
        });
    });
    Bench::add(work, "libltc to text", [&rate](benchmark::State& state) {
        std::vector<LTCFrame> frames = ltcFrames(rate);
        const char separator = rate.type == Base::Timecode::DropFrameTimecode ? ';' : ':';
        overFrames(state, [&frames, separator](int frame) {
            SMPTETimecode time;
            ltc_frame_to_time(&time, &frames[static_cast<std::size_t>(frame)], 0);
            char text[16];
            const int length =
                std::snprintf(text, sizeof text, "%02d%c%02d%c%02d%c%02d", time.hours, separator,
                              time.mins, separator, time.secs, separator, time.frame);
            return std::string(text, static_cast<std::size_t>(length));
        });
    });
    Bench::add(work, "libavutil", [&rate](benchmark::State& state) {
        const AVTimecode timecode = avTimecode(rate);
        overFrames(state, [&timecode](int frame) {
            char text[AV_TIMECODE_STR_SIZE];
            return std::string(av_timecode_make_string(&timecode, text, frame));
        });
    });
}

void addFormatTime(const Rate& rate) {
    const std::string work = std::string("TimeFormatter::formatTime, ") + rate.name;
    Bench::target(work, 0.04);
    Bench::add(work, "ours", [&rate](benchmark::State& state) {
        UI::TimeFormatter formatter;
        formatter.setTimeDisplay(rate.base, true, true, 0);
        overFrames(state, [&formatter](int frame) { return formatter.formatTime(frame); });
    });
    Bench::add(work, "libavutil to QString", [&rate](benchmark::State& state) {
        const AVTimecode timecode = avTimecode(rate);
        overFrames(state, [&timecode](int frame) {
            char text[AV_TIMECODE_STR_SIZE];
            return QString::fromLatin1(av_timecode_make_string(&timecode, text, frame));
        });
    });
}

void addFromString(const Rate& rate) {
    const std::string work = std::string("Timecode::fromString, canonical texts, ") + rate.name;
    std::vector<std::string> texts;
    std::vector<std::string> avTexts; // libavutil has ";" before the frames only
    const AVTimecode timecode = avTimecode(rate);
    for (int frame = 0; frame < FrameCount; frame += 100) {
        texts.push_back(Base::Timecode::toString(frame, rate.base, rate.type));
        char text[AV_TIMECODE_STR_SIZE];
        avTexts.emplace_back(av_timecode_make_string(&timecode, text, frame));
    }
    Bench::target(work, 0.04);
    Bench::add(work, "ours", [&rate, texts](benchmark::State& state) {
        overTexts(state, texts, [&rate](const std::string& text) {
            return Base::Timecode::fromString(text, rate.base, rate.type);
        });
    });
    Bench::add(work, "libavutil", [&rate, avTexts](benchmark::State& state) {
        overTexts(state, avTexts, [&rate](const std::string& text) {
            AVTimecode parsed;
            av_timecode_init_from_string(&parsed, rate.average, text.c_str(), nullptr);
            return parsed.start;
        });
    });
    Bench::add(work, "boost::regex, match only", [texts](benchmark::State& state) {
        const boost::regex pattern("-?\\d+|-?\\d*[:;.]\\d*|-?\\d*[:;.]\\d*[:;.]\\d*|"
                                   "-?\\d*[:;.]\\d*[:;.]\\d*[:;.]\\d*|-?\\d+[hms]|-?\\d+\\+-?\\d+");
        overTexts(state, texts, [&pattern](const std::string& text) {
            return boost::regex_match(text, pattern);
        });
    });
}

} // namespace

void registerBenchmarks() {
    for (const Rate& rate : rates) {
        addToString(rate);
        addFormatTime(rate);
        addFromString(rate);
    }
}
