#pragma once

#include <KxUI/Export.h>

#include <QLocale>
#include <QString>
#include <QStringList>

#include <functional>
#include <vector>

namespace Kestrel::UI {

/** Where the marks of an axis stand, and what they say. A value; any thread. */
struct KXUI_EXPORT Ticks {
    /** What the numbers of an axis are. */
    enum Unit {
        Plain,   ///< numbers; one of the prefixes n, u, m, k, M, G, T for a whole axis
        Percent, ///< 1 is 100 %
        Seconds, ///< as us, ms, s, m:ss or h:mm:ss
        Bytes,   ///< with binary prefixes; steps are powers of two
        Frames   ///< whole numbers
    };

    /** What ticks are planned for. */
    struct Rules {
        Unit unit = Plain;        ///< what the numbers are
        bool logarithmic = false; ///< the axis shows powers of ten in equal steps
        double length = 0;        ///< of the axis, in logical pixels
        /** How long a label is along the axis, in logical pixels; without it, labels have no length. */
        std::function<double(const QString&)> labelLength;
        /** The text of a value, in place of those of the unit; null for these. */
        std::function<QString(double)> formatter;
        QLocale locale; ///< of the texts; the user's at first
    };

    std::vector<double> values; ///< ascending; within the range
    QStringList texts;          ///< one for each value
    std::vector<double> minor;  ///< unlabelled marks between, ascending
    double step = 0;            ///< from value to value; 0 where they are powers of ten

    /** The smallest step of the unit that is at least as large: 1, 2 or 5 times a power of ten; powers
        of two for bytes; 1, 2, 5, 10, 15 or 30 seconds and minutes, 1, 2, 3, 6 or 12 hours, and days.
        0 for what is not above 0 or not finite. */
    static double niceStep(double atLeast, Unit unit = Plain);

    /** The ticks of a range with as many labels as leave half a label between each two, at most 1000.
        Each value is a whole number times the step, rounded once. None where the range is empty or next to it (1e-290), is
        not finite or spans more than a double holds, or where a logarithmic axis reaches down to 0. */
    static Ticks plan(double lower, double upper, const Rules& rules);

    /** A value to be read: as a tick of an axis with this step and this largest absolute value, or with
        three more digits than that for `step` 0. Says "nan" and "inf" where it is. */
    static QString text(double value, double step, double largest, Unit unit,
                        const QLocale& locale = QLocale());
};

} // namespace Kestrel::UI
