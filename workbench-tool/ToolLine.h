#pragma once

#include "app/CommandLine.h"

#include <utility>

namespace Kestrel::Workbench {

/** What the tool was asked to do with the workbench. */
struct ToolLine : CommandLine {
    explicit ToolLine(CommandLine common)
        : CommandLine(std::move(common)) {}

    /** Where the tour saves its pictures; empty without a tour. */
    QString tourFolder;
    /** The screen scale whose pictures this process saves; 0 for all, each in its own process. */
    int tourScale = 0;
    /** For how long a robot uses the window, and what it does; 0 without one. */
    int robotMinutes = 0;
    unsigned robotSeed = 0;
    /** For how long the first sequence is played and measured; 0 for not at all. */
    int playSeconds = 0;
};

/** Reads the arguments, program name first. One of tour, robot and play must be among
    them. Needs an
    application object. */
ToolLine parseToolLine(const QStringList& arguments);

} // namespace Kestrel::Workbench
