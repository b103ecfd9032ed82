#pragma once

#include <KxUI/base/FrameRange.h>
#include <KxUI/files/platform/Platform_p.h>

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

/** \file
    How a listing in natural grouping order becomes image sequences.

    Two listings fold: filename_list() by frame patterns (`img%04d.exr`), FileInfoList by frame
    names
    (`img.####.exr`). They walk the names alike, end runs alike and count steps and missing frames
    alike: foldSequences() and SequenceRun. They differ in what their rules say:

    |                        | PatternRules                   | FrameNameRules                     |
    |------------------------|--------------------------------|------------------------------------|
    | the frame's digits     | stand right before the last    | the last ones before the last dot, |
    |                        | dot, or end the name           | letters may follow; before the end |
    |                        |                                | of the name when there is no dot   |
    |                        |                                | or a digit follows it; never one   |
    |                        |                                | digit that begins the name         |
    | members agree in       | prefix, suffix and the padding | what is before the first and after |
    |                        | of the pattern                 | the last # of the frame name       |
    | a run with a directory | stays unfolded as a whole      | loses the directory; the walk goes |
    | as its first member    |                                | on with the second member          |

    The gaps and stretches that runs record serve FrameNameRules only. */
namespace Kestrel::UI {

/** How a frame stands in a name. */
struct WrittenFrame {
    std::int32_t number = 0;
    std::int32_t digits = 0; ///< 0 when it is not to be found again
    bool isPadded = false;   ///< begins with a 0 that the number does not need
};

/** Files of a sequence, one step apart, whose numbers one width writes. */
struct FrameStretch {
    Base::FrameRange frames;
    std::int32_t width = 0; ///< digits at least, with zeros in front
    bool isPadded = false;  ///< with fewer digits the names would differ
};

/** Neighbours in a listing that are frames of one sequence. */
struct SequenceRun {
    std::size_t begin = 0; ///< index of the first member
    std::size_t count = 0; ///< members
    std::int32_t firstFrame = 0;
    std::int32_t lastFrame = 0;
    std::int32_t step = 0;    ///< greatest common divisor of the distances; 0 for one member
    std::int64_t missing = 0; ///< frames missing at this step
    std::vector<Base::FrameRange> gaps;  ///< the stretches where frames were found missing
    std::vector<FrameStretch> stretches; ///< all members, in order

    /** Begins a run with its first member. */
    void start(std::size_t index, const WrittenFrame& frame);

    /** Counts the next member in. False when its frame is not above the one before: the run ends
        with this member. */
    bool add(const WrittenFrame& frame);

    /** The stretches between the gaps. A single frame after the last gap is left out; that is how
        listings have always been written. */
    std::vector<Base::FrameRange> presentRanges() const;
};

/** Adds a frame to stretches in order. One that is there already is left out. */
void addFrame(std::vector<FrameStretch>& stretches, const WrittenFrame& frame);

/** How many frames a range has. */
std::int64_t frameCount(const Base::FrameRange& range);

/** How many frames of a range are in none of the stretches. This is what items tell their users;
    SequenceRun::missing is what the texts of filename_list() have always said. */
std::int64_t missingFrames(const Base::FrameRange& whole, const FrameStretch* first,
                           const FrameStretch* end);

/** Frame patterns: `shot0999.exr` is frame 999 of `shot%04d.exr`. */
class PatternRules {
public:
    struct Frame {
        std::string_view prefix;
        std::string_view suffix;
        std::size_t padding = 0; ///< digits that the pattern writes; 0 for `%d`
        std::int32_t number = 0;
    };

    static constexpr bool keepsRunOfDirectory = true;

    /** The frame of a name, if it has one. Unpadded numbers of at least as many digits as the
        narrowest padded number so far (at first 4) count as padded, so names must be visited in
        the order of the listing. */
    std::optional<Frame> frameOf(std::string_view name);

    static WrittenFrame written(const Frame& frame) { return {frame.number}; }

    /** Whether a name belongs to the run that `head` began. */
    bool join(const Frame& head, const Frame& next) const;

    /** The printf pattern of the sequence. */
    static std::string pattern(const Frame& head);

private:
    std::size_t m_narrowestPadding = 4;
};

/** Frame names: `shot0999.exr` is frame 999 of `shot####.exr`. */
class FrameNameRules {
public:
    struct Frame {
        std::string_view name;
        std::uint32_t begin = 0;    ///< where the digits of the frame begin in the name
        std::uint32_t digits = 0;   ///< how many there are
        std::uint32_t before = 0;   ///< bytes before the first # of the frame name
        std::uint32_t after = 0;    ///< bytes after the last # of the frame name
        std::int32_t number = 0;    ///< the frame
        std::uint32_t shortest = 0; ///< the smallest count of digits among the members of the run
        bool mixed = false;         ///< the members' frame names differ

        std::string_view front() const { return name.substr(0, before); }
        std::string_view back() const { return name.substr(name.size() - after); }
    };

    static constexpr bool keepsRunOfDirectory = false;

    /** The frame of a name, if it has one. */
    std::optional<Frame> frameOf(std::string_view name) const;

    /** Without digits when the number is larger than 32 bits. */
    static WrittenFrame written(const Frame& frame);

    /** Whether a name belongs to the run that `head` began; takes it into account in `head`. */
    bool join(Frame& head, const Frame& next) const;

    /** The name with a # for each digit of the frame, or with a single # when the members' frame
        names differ. */
    static std::string frameName(const Frame& head);
};

/** The decimal value of a run of digits; 0 when it exceeds 32 bits. */
std::int32_t frameNumber(std::string_view digits) noexcept;

/** A number with at least `width` digits. */
std::string paddedNumber(std::int32_t number, std::int32_t width);

/** The name of one frame: the text before the first # of a frame name, the number with at least
    `width` digits, the text after the last #. */
std::string frameFileName(std::string_view frameName, std::int32_t frame, std::int32_t width);

/** Walks a listing in grouping order, in linear time, and hands everything to a sink:
    `addSequence(run, head)` for runs of two and more members,
    `addFile(entry)` for other entries, and
    `addHeadDirectory(entry)` for a directory whose name begins a run.
    `isDirectory(entry)` is asked about the first members of runs only. */
template <class Rules, class IsDirectory, class Sink>
void foldSequences(const std::vector<Platform::Entry>& entries, Rules& rules,
                   const IsDirectory& isDirectory, Sink& sink) {
    // Sorted names lie scattered in memory.
    constexpr std::size_t namesAhead = 16;
    SequenceRun run;
    for (std::size_t i = 0; i < entries.size(); i += run.count) {
        auto head = rules.frameOf(entries[i].view());
        run.start(i, head ? Rules::written(*head) : WrittenFrame{});
        bool headIsDirectory = false;
        for (std::size_t next = i + 1; head && next < entries.size(); ++next) {
            if (next + namesAhead < entries.size())
                Platform::prefetch(entries[next + namesAhead].name);
            const auto frame = rules.frameOf(entries[next].view());
            if (!frame || !rules.join(*head, *frame))
                break;
            if (run.count == 1)
                headIsDirectory = isDirectory(entries[i]);
            // Without a look at the members to come, else a folder of such directories would be
            // walked once for each of them.
            if (headIsDirectory && !Rules::keepsRunOfDirectory)
                break;
            if (!run.add(Rules::written(*frame)))
                break;
        }
        if (run.count > 1 && !headIsDirectory) {
            sink.addSequence(run, *head);
            continue;
        }
        if (headIsDirectory)
            sink.addHeadDirectory(entries[i]);
        else
            sink.addFile(entries[i]);
        for (std::size_t member = 1; member < run.count; ++member)
            sink.addFile(entries[i + member]);
    }
}

} // namespace Kestrel::UI
