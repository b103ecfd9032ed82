#pragma once

#include <KxUI/eventgraph/EventGraphScene_p.h>

#include <optional>

namespace Kestrel::UI {

/** What a search found: the name of a row, or an event of it. */
struct FoundPlace {
    static constexpr qint64 name = -1;

    int row = -1;        ///< negative for nowhere
    qint64 entry = name; ///< `name`, or the number of an event from the oldest of the row on
};

/** The next place in the rows, or the one before, whose name or user data holds a text in any case.
    Starts beside `from`, or at the top (or the end) from nowhere, and goes around once. */
std::optional<FoundPlace> findText(const std::vector<SceneRow>& rows, const QString& text,
                                   const FoundPlace& from, bool backwards);

} // namespace Kestrel::UI
