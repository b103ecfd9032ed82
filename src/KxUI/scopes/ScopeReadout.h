#pragma once

#include <KxUI/Export.h>

#include <QColor>
#include <QMetaType>
#include <QString>

namespace Kestrel::UI {

/** What a scope shows at a place. A plain value. */
struct KXUI_EXPORT ScopeReadout {
    QString channel;      ///< as users know it: "Red"; empty where it is none by itself
    double value = 0;     ///< of the signal; Cb in a plane of chroma, red in a solid
    double second = 0;    ///< Cr in a plane of chroma, green in a solid, else 0
    double third = 0;     ///< blue in a solid, else 0
    QString valueText;    ///< in the scope's unit
    int firstColumn = -1; ///< pixels across the full frame; -1: of the whole region
    int lastColumn = -1;  ///< likewise
    quint64 count = 0;    ///< pixels there
    double share = 0;     ///< of all that were counted, 0-1
    QString text;         ///< all of it, to be shown or spoken

    bool isNull() const { return text.isEmpty(); } ///< nothing is there
};

/** A line of the user's own across a scope. A plain value. */
struct KXUI_EXPORT ScopeLine {
    double value = 0; ///< of the signal
    QColor color;     ///< an invalid one: that of the scope's other lines

    /** Whether they are the same. */
    friend bool operator==(const ScopeLine& a, const ScopeLine& b) {
        return a.value == b.value && a.color == b.color;
    }
};

} // namespace Kestrel::UI

Q_DECLARE_METATYPE(Kestrel::UI::ScopeReadout)
