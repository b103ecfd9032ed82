#include <KxUI/scopes/ScopeUnit.h>

#include <KxUI/scopes/Transfer_p.h>

#include <algorithm>
#include <array>
#include <cctype>
#include <cmath>
#include <iomanip>
#include <limits>
#include <locale>
#include <sstream>

namespace Kestrel::UI {
namespace {

struct Unit {
    const char* name;
    const char* suffix;
};

// In the order of ScopeUnit.
constexpr std::array<Unit, ScopeUnitCount> Units{{{"Percent", " %"},
                                                  {"IRE", " IRE"},
                                                  {"8-bit", ""},
                                                  {"10-bit", ""},
                                                  {"12-bit", ""},
                                                  {"Millivolt", " mV"},
                                                  {"Nits, SDR", " nits"},
                                                  {"Nits, PQ", " nits"},
                                                  {"Nits, HLG", " nits"},
                                                  {"Stops", " stops"},
                                                  {"Value", ""}}};

const Unit& unitAt(ScopeUnit unit) noexcept {
    const int index = int(unit);
    return Units[std::size_t(index >= 0 && index < ScopeUnitCount ? index : int(ScopeUnit::Value))];
}

// A unit whose numbers are `factor` times the value, and `offset` more.
struct Linear {
    double factor;
    double offset;
};

Linear codes(int bits, bool fullRange, bool chroma) noexcept {
    const double unit = double(1 << (bits - 8));
    if (fullRange)
        return {double((1 << bits) - 1), chroma ? 128 * unit : 0};
    return chroma ? Linear{224 * unit, 128 * unit} : Linear{219 * unit, 16 * unit};
}

constexpr double Grey = 0.18;

// The unit where it is linear, else a factor of 0.
Linear linear(ScopeUnit unit, const ScopeEncoding& encoding, bool chroma) noexcept {
    switch (unit) {
    case ScopeUnit::Percent:
    case ScopeUnit::Ire:
        return {100, 0};
    case ScopeUnit::Code8:
        return codes(8, encoding.fullRange, chroma);
    case ScopeUnit::Code10:
        return codes(10, encoding.fullRange, chroma);
    case ScopeUnit::Code12:
        return codes(12, encoding.fullRange, chroma);
    case ScopeUnit::Millivolt:
        return {700, chroma ? 350.0 : 0.0};
    case ScopeUnit::NitsSdr:
    case ScopeUnit::NitsPq:
    case ScopeUnit::NitsHlg:
    case ScopeUnit::Stops:
        return {chroma ? 100.0 : 0.0, 0};
    case ScopeUnit::Value:
        break;
    }
    return {1, 0};
}

bool sameWord(const std::string& a, const char* b) noexcept {
    std::size_t i = 0;
    for (; i < a.size() && b[i] != '\0'; ++i) {
        if (std::tolower(static_cast<unsigned char>(a[i])) !=
            std::tolower(static_cast<unsigned char>(b[i])))
            return false;
    }
    return i == a.size() && b[i] == '\0';
}

std::string trimmed(const std::string& text) {
    const auto isSpace = [](char c) { return std::isspace(static_cast<unsigned char>(c)) != 0; };
    const auto first = std::find_if_not(text.begin(), text.end(), isSpace);
    const auto last = std::find_if_not(text.rbegin(), std::make_reverse_iterator(first), isSpace);
    return std::string(first, last.base());
}

} // namespace

double toScopeUnit(ScopeUnit unit, double value, const ScopeEncoding& encoding) noexcept {
    const Linear rule = linear(unit, encoding, false);
    if (rule.factor != 0)
        return rule.factor * value + rule.offset;
    switch (unit) {
    case ScopeUnit::NitsPq:
        return pqNits(value);
    case ScopeUnit::NitsHlg:
        return hlgNits(value, double(encoding.peakNits));
    case ScopeUnit::Stops:
        return std::log2(lightOfSignal(encoding, value) / Grey);
    default:
        return displayNits(value);
    }
}

double fromScopeUnit(ScopeUnit unit, double number, const ScopeEncoding& encoding) noexcept {
    const Linear rule = linear(unit, encoding, false);
    if (rule.factor != 0)
        return (number - rule.offset) / rule.factor;
    switch (unit) {
    case ScopeUnit::NitsPq:
        return pqSignal(number);
    case ScopeUnit::NitsHlg:
        return hlgSignalOfNits(number, double(encoding.peakNits));
    case ScopeUnit::Stops: {
        ScopeEncoding applied = encoding;
        applied.transfer = encoding.signal();
        return signalOfLight(applied, Grey * std::exp2(number));
    }
    default:
        return displaySignal(number);
    }
}

double chromaToScopeUnit(ScopeUnit unit, double chroma, const ScopeEncoding& encoding) noexcept {
    const Linear rule = linear(unit, encoding, true);
    return rule.factor * chroma + rule.offset;
}

double chromaFromScopeUnit(ScopeUnit unit, double number, const ScopeEncoding& encoding) noexcept {
    const Linear rule = linear(unit, encoding, true);
    return (number - rule.offset) / rule.factor;
}

const char* scopeUnitName(ScopeUnit unit) noexcept {
    return unitAt(unit).name;
}

const char* scopeUnitSuffix(ScopeUnit unit) noexcept {
    return unitAt(unit).suffix;
}

int scopeUnitDecimals(ScopeUnit unit, double number) noexcept {
    const double size = std::fabs(number);
    switch (unit) {
    case ScopeUnit::Percent:
    case ScopeUnit::Ire:
    case ScopeUnit::Code12:
        return 1;
    case ScopeUnit::Code8:
    case ScopeUnit::Code10:
        return 1;
    case ScopeUnit::Millivolt:
        return 0;
    case ScopeUnit::Stops:
        return 2;
    case ScopeUnit::Value:
        return size < 10 ? 4 : size < 1000 ? 2 : 0;
    default:
        break;
    }
    return size < 0.1 ? 4 : size < 1 ? 3 : size < 10 ? 2 : size < 100 ? 1 : 0;
}

std::string scopeUnitText(ScopeUnit unit, double value, const ScopeEncoding& encoding) {
    const double number = toScopeUnit(unit, value, encoding);
    if (std::isnan(number))
        return "nan";
    if (std::isinf(number))
        return number < 0 ? "-inf" : "inf";
    std::ostringstream text;
    text.imbue(std::locale::classic());
    text << std::fixed << std::setprecision(scopeUnitDecimals(unit, number)) << number;
    std::string written = text.str();
    // No minus before what is rounded to nothing.
    if (written[0] == '-' && written.find_first_not_of("-0.") == std::string::npos)
        written.erase(0, 1);
    return written + scopeUnitSuffix(unit);
}

std::optional<double> scopeUnitValue(ScopeUnit unit, const std::string& text,
                                     const ScopeEncoding& encoding) {
    constexpr double Infinity = std::numeric_limits<double>::infinity();
    const std::string word = trimmed(text);
    if (sameWord(word, "nan"))
        return std::numeric_limits<double>::quiet_NaN();
    if (sameWord(word, "inf") || sameWord(word, "-inf"))
        return word[0] == '-' ? -Infinity : Infinity;
    std::istringstream stream(word);
    stream.imbue(std::locale::classic());
    double number = 0;
    if (!(stream >> number))
        return {};
    std::string rest;
    std::getline(stream, rest);
    rest = trimmed(rest);
    if (!rest.empty() && !sameWord(rest, trimmed(scopeUnitSuffix(unit)).c_str()))
        return {};
    return fromScopeUnit(unit, number, encoding);
}

} // namespace Kestrel::UI
