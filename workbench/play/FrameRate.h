#pragma once

#include <KxUI/base/TimeBase.h>

#include <QString>

#include <optional>

namespace Kestrel::Workbench {

/** Reads a frame rate as a user writes it: "24", "23.976" or "30000/1001". Nothing for text that is
    none, or for a rate outside 0.1 .. 1000 frames per second. */
std::optional<Base::TimeBase> parseFrameRate(const QString& text);

/** A rate for a label: "24", "29.97". */
QString formatFrameRate(double rate);

} // namespace Kestrel::Workbench
