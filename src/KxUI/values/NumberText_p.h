#pragma once

#include <QLocale>
#include <QString>

#include <optional>

namespace Kestrel::UI {

/** How a locale writes numbers. QLocale looks it up anew at every question. */
struct NumberNotation {
    QString minus = QStringLiteral("-");
    char16_t point = u'.';
    char16_t group = u',';
    /** The digit 0; of the few alphabets that need two units for it the western one. */
    char16_t zero = u'0';

    static NumberNotation of(const QLocale& locale);
};

/** A number with at most `decimals` places (0 to 15), rounded, and zeros cut down to
    `fewestDecimals`. What would show as nothing, and what has more than 15 digits before the point,
    is written with six digits and a power of ten. No digit groups. */
QString numberText(double number, int decimals, int fewestDecimals, const NumberNotation& notation);

/** The fewest digits that read back to the same double, with a power of ten only where zeros would
    hide them. */
QString exactNumberText(double number, const NumberNotation& notation);

/** Exactly so many places, as a digit step writes what it changed. */
QString fixedNumberText(double number, int decimals, const NumberNotation& notation);

/** How many places after the point the shortest text of a number has; 0 for whole ones. */
int decimalsOf(double number);

/** The power of ten of the first digit: 2 of 123.4. 0 for 0. */
int decimalExponentOf(double number);

} // namespace Kestrel::UI
