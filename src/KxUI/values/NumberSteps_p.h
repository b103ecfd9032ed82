#pragma once

#include <KxUI/values/NumberText_p.h>

#include <QString>

#include <optional>

namespace Kestrel::UI {

/** `number + steps * step` without the dust of binary fractions, as far as a double can hold all of
    its decimal places: ten steps of -0.1 from 1 end at 0. */
double steppedNumber(double number, double step, double steps);

/** A step that fits the size of a number: a tenth of its first digit's place. From a whole power of
    ten towards zero that of the decade below, so that the way back has the same steps.
    `atZero` for 0. */
double adaptiveStep(double number, double direction, double atZero);

/** The number that its first 15 digits write, which a user may have meant. */
double withoutDust(double number);

/** 10^exponent, the double that its text reads to. */
double powerOfTen(int exponent);

/** A digit of a text that holds one number, and what may stand behind it. */
struct DigitPlace {
    int position = 0; ///< in the text
    int exponent = 0; ///< the digit counts 10^exponent
};

/** The digit right of the caret; the nearest one where that is none. Null for texts that are no
    plain number. */
std::optional<DigitPlace> digitAt(const QString& text, int caret, const NumberNotation& notation);

/** Where the digit stands that counts 10^exponent, or the one nearest to it. -1 as above. */
int digitPosition(const QString& text, int exponent, const NumberNotation& notation);

/** What a digit step makes of a text. */
struct DigitStep {
    QString text;
    int position = 0; ///< of the digit, which counts as much as before
};

/** Adds `steps` to the digit right of the caret. The text keeps its number of places, its power of
    ten and what stands behind; it gains leading zeros where the digit would be lost. */
std::optional<DigitStep> steppedDigit(const QString& text, int caret, int steps,
                                      const NumberNotation& notation);

} // namespace Kestrel::UI
