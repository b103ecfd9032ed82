// Typed numbers: what is read is finite and comes back from what is written of it, what is refused
// has a reason and a place, digit steps make numbers, and muParser agrees where it reads the same
// text. The last bytes choose the locale, the units and the present value.

#include <KxUI/values/NumberEntry_p.h>
#include <KxUI/values/NumberSteps_p.h>

#include <support/NumberOracle.h>
#include <support/Require.h>

#include <fuzzer/FuzzedDataProvider.h>

#include <algorithm>
#include <cmath>
#include <vector>

using namespace Kestrel::UI;
using Kestrel::Fuzz::NumberOracle;
using Kestrel::Fuzz::require;

namespace {

const NumberNotation& notationFrom(unsigned choice) {
    static const std::vector<NumberNotation> all = [] {
        std::vector<NumberNotation> notations;
        for (const char* name : {"C", "en_US", "de_DE", "fr_FR", "ar_EG", "sv_SE"})
            notations.push_back(NumberNotation::of(QLocale(QString::fromLatin1(name))));
        return notations;
    }();
    return all[choice % all.size()];
}

const ValueUnits& unitsFrom(unsigned choice) {
    static const std::vector<ValueUnits> all = [] {
        ValueUnits warmth;
        warmth.add({QStringLiteral("K"), {}});
        warmth.add({QStringLiteral("\u00b0C"), {}, 1.0, 273.15});
        return std::vector<ValueUnits>{ValueUnits(),
                                       ValueUnits::percent(),
                                       ValueUnits::length(96.0),
                                       ValueUnits::angle(),
                                       ValueUnits::stops(),
                                       warmth,
                                       ValueUnits::suffix(QStringLiteral("fps"))};
    }();
    return all[choice % all.size()];
}

void checkWritten(double value, const NumberNotation& notation) {
    const ValueUnits none;
    const NumberContext context{notation, none, -1, 0.0};
    const NumberEntry exact = readNumber(exactNumberText(value, notation), context);
    require(exact.kind == NumberEntry::Set && exact.value == value, "an exact text comes back");
    for (const int decimals : {0, 4, 15}) {
        const NumberEntry shown = readNumber(numberText(value, decimals, 2, notation), context);
        const double error = std::max(powerOfTen(-decimals) * 0.51, std::fabs(value) * 1e-5);
        require(shown.kind == NumberEntry::Set && std::fabs(shown.value - value) <= error,
                "a shown text is near");
        require(value == 0.0 || decimals == 0 || shown.value != 0.0, "no number shows as nothing");
    }
}

void checkEntry(const QString& text, const NumberContext& context) {
    const NumberEntry entry = readNumber(text, context);
    require(entry.column >= 0 && entry.column <= text.size(), "the place is in the text");
    require((entry.kind == NumberEntry::Failed) == (entry.problem != NumberProblem::None),
            "a reason where there is no number");
    if (entry.kind == NumberEntry::Failed)
        return;
    require(std::isfinite(entry.value) && std::isfinite(entry.operand), "numbers are finite");
    checkWritten(entry.value, context.notation);
}

void checkDigits(const QString& text, const NumberNotation& notation, int caret, int steps) {
    const auto step = steppedDigit(text, caret, steps, notation);
    require(step.has_value() == digitAt(text, caret, notation).has_value(), "a digit is stepped");
    if (!step)
        return;
    require(step->position >= 0 && step->position < step->text.size(), "it is in the text");
    require(step->text.size() > int(LongestExpression) ||
                digitAt(step->text, step->position, notation).has_value(),
            "it still is a digit");
}

// What only one of the two knows.
bool isShared(const std::string& text) {
    if (text.find_first_not_of("0123456789.+-*/^(), abcdefghijklmnopqrstuvwxyz") !=
        std::string::npos)
        return false;
    char before = '(';
    bool blank = false;
    for (const char c : text) {
        if (c == '(' && blank && before >= 'a') // "sin (1)"
            return false;
        blank = c == ' ';
        const bool isSign = c == '+' || c == '-';
        if (isSign && std::string_view("+-*/^(,").find(before) != std::string_view::npos &&
            (c == '+' || before != '('))
            return false;
        if (c != ' ')
            before = c;
    }
    return true;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    FuzzedDataProvider input(data, size);
    const NumberNotation& notation = notationFrom(input.ConsumeIntegral<std::uint8_t>());
    const ValueUnits& units = unitsFrom(input.ConsumeIntegral<std::uint8_t>());
    const auto choice = input.ConsumeIntegral<std::uint8_t>();
    const int shown = units.isEmpty() ? -1 : choice % units.count();
    double value = input.ConsumeFloatingPoint<double>();
    if (!std::isfinite(value))
        value = 1.5;
    const std::string bytes = input.ConsumeRemainingBytesAsString();
    const QString text = QString::fromUtf8(bytes.data(), int(bytes.size()));

    checkEntry(text, {notation, units, shown, value});
    checkDigits(text, notation, choice, choice % 5 - 2);
    checkWritten(value + 0.0, notation);
    static NumberOracle oracle(1.5);
    if (isShared(bytes) && oracle.compare(bytes) == NumberOracle::Differ)
        require(false, ("muParser agrees on \"" + bytes + '"').c_str());
    return 0;
}
