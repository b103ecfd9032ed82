#pragma once

#include <KxUI/values/NumberExpression_p.h>
#include <KxUI/values/NumberText_p.h>
#include <KxUI/values/ValueUnits.h>

#include <QChar>
#include <QString>

namespace Kestrel::UI {

/** What a typed text is read with. */
struct NumberContext {
    const NumberNotation& notation;
    const ValueUnits& units;
    int shownUnit = -1; ///< -1 where there are no units
    double value = 0.0; ///< the present one
};

/** What was typed into a number field. */
struct NumberEntry {
    enum Kind {
        Nothing,  ///< a blank text
        Failed,   ///< `problem` at `column`
        Set,      ///< `value`
        Relative, ///< the present value changed by `operation` and `operand`: `value`
    };
    Kind kind = Nothing;
    double value = 0.0; ///< in the base of the units
    /** '+', '-', '*' or '/', for values in the base of the units. */
    QChar operation;
    double operand = 0.0;
    NumberProblem problem = NumberProblem::None;
    int column = 0; ///< in the text as it was typed, from 0
};

/** Reads a number in the notation of a locale or the classic one, an expression of evaluate(), or
    one behind "+=", "-=", "*=" or "/=". A number without a unit is in the one that is shown. */
NumberEntry readNumber(const QString& text, const NumberContext& context);

} // namespace Kestrel::UI
