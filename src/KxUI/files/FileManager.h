#pragma once

#include <KxUI/Export.h>

namespace Kestrel::UI {

/** Process-wide settings of the file listing. To be made while no other thread lists files. */
class KXUI_EXPORT FileManager {
public:
    FileManager() = delete;

    /** Registers the extensions of the usual image formats as marks of sequences, for
        FileInfo::isAutoSequence(); folding does not ask for them. Works once per process; further
        calls do nothing. */
    static void setInitialSequenceExtensions();

    /** Makes one more extension mark sequences; see FileInfo::addSequenceFileExtension(). Null does
        nothing. */
    static void addSequenceFileExtension(const char* extension);
};

} // namespace Kestrel::UI
