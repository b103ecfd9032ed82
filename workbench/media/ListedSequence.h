#pragma once

#include "media/Sequence.h"

#include <KxUI/files/FileInfo.h>

namespace Kestrel::Workbench {

/** The files of a listed sequence, or the one file of another item at the frame that its name
    carries; 1 without a number. The disk is not asked. */
Sequence sequenceOf(const UI::FileInfo& info);

/** The time of a file of a sequence; InvalidTime when it is none of its files. */
Base::Time timeOf(const Sequence& sequence, const std::string& name);

/** A path that stands for a sequence until it is listed again: with # for the frame, or of its one
    file. Empty for the empty sequence. */
std::string pathOf(const Sequence& sequence);

} // namespace Kestrel::Workbench
