#include <KxUI/browse/AskedFrames_p.h>

#include <algorithm>
#include <numeric>
#include <string>
#include <utility>

namespace Kestrel::UI {
namespace {

using Base::FrameRange;

constexpr std::size_t MostGaps = 8; // as many as fit on a line

std::int64_t stepOf(const FrameRange& range) {
    return std::max(range.step, 1);
}

// The remainder that is never negative.
std::int64_t remainder(std::int64_t a, std::int64_t b) {
    const std::int64_t rest = a % b;
    return rest < 0 ? rest + b : rest;
}

// x with a * x = 1 (mod m), for numbers without a common divisor.
std::int64_t inverse(std::int64_t a, std::int64_t m) {
    std::int64_t previous = m;
    std::int64_t present = remainder(a, m);
    std::int64_t previousFactor = 0;
    std::int64_t factor = 1;
    while (present > 1) {
        const std::int64_t quotient = previous / present;
        previous = std::exchange(present, previous - quotient * present);
        previousFactor = std::exchange(factor, previousFactor - quotient * factor);
    }
    return remainder(factor, m);
}

std::int64_t lastOf(const FrameRange& range) {
    return range.first + (countOf(range) - 1) * stepOf(range);
}

FrameRange rangeOf(std::int64_t first, std::int64_t last, std::int64_t step) {
    return {static_cast<std::int32_t>(first), static_cast<std::int32_t>(last),
            static_cast<std::int32_t>(step)};
}

std::string withoutBlanks(std::string_view text) {
    std::string bare(text);
    bare.erase(
        std::remove_if(bare.begin(), bare.end(), [](char c) { return c == ' ' || c == '\t'; }),
        bare.end());
    return bare;
}

// On the numbers of the sequence; nothing where none lies in it.
std::optional<FrameRange> aligned(const FrameRange& range, const FrameRange& whole) {
    const std::int64_t step = stepOf(whole);
    const std::int64_t first =
        range.first + remainder(std::int64_t(whole.first) - range.first, step);
    const std::int64_t last = range.last - remainder(std::int64_t(range.last) - whole.first, step);
    if (first > last)
        return std::nullopt;
    return rangeOf(first, last, step);
}

/** Collects what is missing between the frames that are there. */
class Gaps {
public:
    explicit Gaps(AskedFrames& asked)
        : m_asked(asked)
        , m_step(stepOf(asked.frames))
        , m_next(asked.frames.first) {}

    bool isFull() const { return m_asked.hasMoreGaps; }

    void there(const CommonFrames& frames) {
        if (frames.step == m_step) {
            upTo(frames.first);
            m_next = frames.last + m_step;
            return;
        }
        // Every so many of the frames: a gap after each.
        for (std::int64_t frame = frames.first; frame <= frames.last && !isFull();
             frame += frames.step)
            there({frame, frame, m_step});
    }

    void end() { upTo(lastOf(m_asked.frames) + m_step); }

private:
    void upTo(std::int64_t frame) {
        if (frame <= m_next)
            return;
        if (m_asked.gaps.size() == MostGaps)
            m_asked.hasMoreGaps = true;
        else
            m_asked.gaps.push_back(rangeOf(m_next, frame - m_step, m_step));
    }

    AskedFrames& m_asked;
    std::int64_t m_step;
    std::int64_t m_next;
};

void findMissing(AskedFrames& asked, const std::vector<FrameRange>& present) {
    std::int64_t found = 0;
    Gaps gaps(asked);
    for (const FrameRange& range : present) {
        if (const auto both = commonFrames(asked.frames, range)) {
            found += both->count();
            if (!gaps.isFull())
                gaps.there(*both);
        }
    }
    asked.missing = countOf(asked.frames) - found;
    if (found == 0)
        asked.problem = AskedFrames::Problem::NoneThere;
    else if (!gaps.isFull())
        gaps.end();
}

} // namespace

std::int64_t countOf(const FrameRange& range) {
    if (range.last < range.first)
        return 0;
    return (std::int64_t(range.last) - range.first) / stepOf(range) + 1;
}

std::optional<CommonFrames> commonFrames(const FrameRange& a, const FrameRange& b) {
    const std::int64_t stepA = stepOf(a);
    const std::int64_t stepB = stepOf(b);
    const std::int64_t divisor = std::gcd(stepA, stepB);
    const std::int64_t apart = std::int64_t(b.first) - a.first;
    if (apart % divisor != 0)
        return std::nullopt;
    // The Chinese remainder theorem: the first common number, counted from that of `a`.
    const std::int64_t modulus = stepB / divisor;
    const std::int64_t steps =
        remainder(remainder(apart / divisor, modulus) * inverse(stepA / divisor, modulus), modulus);
    const std::int64_t step = stepA / divisor * stepB;
    std::int64_t first = a.first + steps * stepA;
    const std::int64_t begin = std::max(a.first, b.first);
    const std::int64_t end = std::min(a.last, b.last);
    first = begin + remainder(first - begin, step);
    if (first > end)
        return std::nullopt;
    return CommonFrames{first, first + (end - first) / step * step, step};
}

AskedFrames askedFrames(std::string_view text, const FrameRange& whole,
                        const std::vector<FrameRange>& present) {
    AskedFrames asked;
    asked.frames = whole;
    const std::string bare = withoutBlanks(text);
    if (!bare.empty()) {
        const auto read = Base::parseFrameRange(bare);
        if (!read) {
            asked.problem = AskedFrames::Problem::Unreadable;
            return asked;
        }
        asked.frames = *read;
        const bool hasStep = bare.find_first_of("x,") != std::string::npos;
        if (!hasStep && read->first != read->last) {
            if (const auto range = aligned(*read, whole))
                asked.frames = *range;
        }
    }
    findMissing(asked, present);
    return asked;
}

} // namespace Kestrel::UI
