#pragma once

#include "grade/Grade.h"
#include "media/Sequence.h"

#include <KxUI/base/FrameRange.h>
#include <KxUI/files/FileNames.h>

#include <optional>
#include <string>
#include <vector>

namespace Kestrel::Workbench {

/** What kind of files an export writes. */
enum class ExportFormat {
    Exr,   ///< OpenEXR, half floats of scene-linear light
    Png8,  ///< PNG, 8 bits a channel, as a screen shows it
    Png16, ///< the same in 16 bits
};

/** All that an export needs to know: a value, so that nothing which happens to the sequence that is
    open can reach an export that goes on. */
struct ExportPlan {
    Sequence sequence;
    Grade grade;
    ExportFormat format = ExportFormat::Exr;
    /** The frames asked for, both inclusive. */
    Base::Time first = 0;
    Base::Time last = 0;
    /** Where to, in the bytes of the file system. */
    std::string folder;
    /** The name, with a place for the frame; without one for a single frame. */
    std::string name;
    /** Files that the user has agreed to lose. */
    std::vector<Base::FrameRange> replaces;
    bool replacesFile = false;

    /** Those asked for that have a file, in order. */
    std::vector<Base::Time> frames() const;
    /** Those asked for that should have one and have none, in order. */
    std::vector<Base::Time> missing() const;
    /** The path that a frame is written to. */
    std::string path(Base::Time frame) const;
    /** Whether the user has agreed to lose what lies there. */
    bool mayReplace(Base::Time frame) const;
    /** Whether a frame would be written over the file that it is read from, as far as names tell. */
    bool overwritesItself() const;
};

/** The format of a file name, by its suffix; nothing for another one. */
std::optional<ExportFormat> exportFormatOf(const std::string& name, bool deep);

/** Frames for people: "1001-1003, 1007". At most some ranges, then an ellipsis. */
QString framesText(const std::vector<Base::Time>& frames);

} // namespace Kestrel::Workbench
