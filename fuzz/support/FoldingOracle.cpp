#include "FoldingOracle.h"

#include <algorithm>
#include <cmath>
#include <functional>
#include <numeric>
#include <utility>

namespace Kestrel::Fuzz::FoldingOracle {

namespace {

bool digit(char c) {
    return c >= '0' && c <= '9';
}

int lower(char c) {
    return c >= 'A' && c <= 'Z' ? c + 32 : c;
}

int compare(const char* a, const char* b, bool grouping) {
    int recorded = 0;
    for (;; ++a, ++b) {
        if (digit(*a) && digit(*b)) {
            for (; digit(*a) && *a == *b; ++a)
                ++b;
            const int d = digit(*a) && digit(*b) ? *a - *b : 0;
            int left = 0;
            for (; digit(*a); ++a)
                ++left;
            for (; digit(*b); ++b)
                --left;
            if (recorded == 0)
                recorded = left != 0 ? left : d;
            if (!grouping && recorded != 0)
                return recorded;
        }
        if (lower(*a) != lower(*b))
            return lower(*a) - lower(*b);
        if (*a != *b)
            return *b - *a;
        if (*a == '\0')
            return recorded;
    }
}

bool has(const Names& names, const std::string& name) {
    return std::find(names.begin(), names.end(), name) != names.end();
}

// A name cut at its frame number.
struct Frame {
    std::string prefix, digits, suffix;

    Frame(const std::string& name, std::size_t begin, std::size_t end)
        : prefix(name.substr(0, begin))
        , digits(name.substr(begin, end - begin))
        , suffix(name.substr(end)) {}

    int number() const {
        const auto value = std::stold(digits.empty() ? "0" : digits);
        return value > 2147483647.0L ? 0 : int(value);
    }
};

struct Run {
    std::size_t count = 1;
    int first = 0, last = 0, step = 0;
    long long missing = 0;
    std::vector<std::pair<int, int>> gaps;

    bool add(int frame) {
        const auto k = static_cast<long long>(count++);
        const int previous = std::exchange(last, frame);
        const int d = frame - previous;
        if (d < 1)
            return false;
        if (k == 1) {
            step = d;
        } else if (d != step) {
            const int g = std::gcd(d, step);
            if (g < step)
                missing = (missing + k - 1) * (std::exchange(step, g) / g - 1);
            missing += d / step - 1;
            if (missing != 0)
                gaps.emplace_back(previous + 1, frame - 1);
        }
        return true;
    }

    std::string range() const { return std::to_string(first) + "-" + std::to_string(last); }
    std::string steps() const { return step > 1 ? "," + std::to_string(step) : ""; }
};

// Text: the frame pattern or frame name of a name, "" for none. Join: whether two texts belong to
// one run; may rewrite the first.
template <class Text, class Join>
Run runAt(const Names& names, std::size_t i, std::string& text, Text textOf, Join join) {
    Run run;
    text = textOf(names[i], run.first);
    run.last = run.first;
    int frame = 0;
    while (!text.empty() && i + run.count < names.size()) {
        const std::string next = textOf(names[i + run.count], frame);
        if (next.empty() || !join(text, next) || !run.add(frame))
            break;
    }
    return run;
}

std::string front(const std::string& name) {
    return name.substr(0, name.find('#'));
}

std::string back(const std::string& name) {
    return name.substr(name.rfind('#') + 1);
}

std::string frameName(const std::string& name, int& number) {
    const auto dot = name.rfind('.');
    const bool fromEnd =
        dot == std::string::npos || (dot + 1 < name.size() && digit(name[dot + 1]));
    auto position = fromEnd ? name.size() - 1 : dot;
    while (position > 0 && !digit(name[position]))
        --position;
    if (dot == 0 || position == 0)
        return {};
    auto begin = position;
    while (begin > 0 && digit(name[begin - 1]))
        --begin;
    const Frame frame(name, begin, position + 1);
    number = frame.number();
    return frame.prefix + std::string(frame.digits.size(), '#') + frame.suffix;
}

bool makeCommon(std::string& a, const std::string& b) {
    if (a == b)
        return true;
    if (front(a) != front(b) || back(a) != back(b))
        return false;
    a = front(a) + "#" + back(a);
    return true;
}

} // namespace

void sort(Names& names, bool grouping) {
    std::sort(names.begin(), names.end(), [&](const std::string& a, const std::string& b) {
        return compare(a.c_str(), b.c_str(), grouping) < 0;
    });
}

Names patternListing(Names names, const Names& directories) {
    sort(names, true);
    std::size_t width = 4;
    const auto pattern = [&](const std::string& name, int& number) -> std::string {
        const auto end = std::min(name.rfind('.'), name.size());
        auto begin = end;
        while (begin > 0 && digit(name[begin - 1]))
            --begin;
        if (begin == end)
            return {};
        const Frame frame(name, begin, end);
        number = frame.number();
        const auto length = frame.digits.size();
        const bool padded = length >= 2 && frame.digits[0] == '0';
        if (padded && length < width)
            width = length;
        return frame.prefix +
               (padded || length >= width ? "%0" + std::to_string(length) + "d" : "%d") +
               frame.suffix;
    };
    Names result;
    for (std::size_t i = 0; i < names.size();) {
        std::string text;
        const Run run = runAt(names, i, text, pattern, std::equal_to<>());
        const bool isDirectory = run.count > 1 && has(directories, names[i]);
        if (run.count > 1 && !isDirectory) {
            text += " " + run.range() + run.steps();
            if (run.missing != 0)
                text += "(" + std::to_string(run.missing) + " missing)";
            result.push_back(text + "\1");
        } else {
            result.push_back(names[i] + (isDirectory ? "/" : ""));
            for (std::size_t k = 1; k < run.count; ++k)
                result.push_back(names[i + k]);
        }
        i += run.count;
    }
    sort(result, false);
    return result;
}

Names frameNameListing(Names names, const Names& directories, bool split) {
    sort(names, true);
    Names result;
    for (std::size_t i = 0; i < names.size();) {
        std::string F;
        const Run run = runAt(names, i, F, frameName, makeCommon);
        if (run.count == 1 || has(directories, names[i])) {
            result.push_back(names[i++]);
            continue;
        }
        i += run.count;
        std::vector<std::pair<int, int>> ranges;
        int start = run.first;
        for (const auto& [first, last] : run.gaps) {
            ranges.emplace_back(start, first - 1);
            start = last + 1;
        }
        if (start < run.last)
            ranges.emplace_back(start, run.last);
        std::string text = "\1" + F + " " + run.range() + run.steps();
        if (run.missing != 0)
            text += " (";
        for (const auto& [a, b] : ranges) {
            const std::string stretch = " " + std::to_string(a) + "-" + std::to_string(b);
            if (run.missing != 0)
                text += stretch + " ";
            if (!split || run.missing == 0)
                continue;
            const int h = int(F.rfind('#') - F.find('#')) + 1;
            const int zeros = h - (a == 0 ? 1 : int(std::floor(std::log10(a))) + 1);
            result.push_back(a != b ? "\1" + F + stretch
                                    : front(F) + std::string(std::size_t(std::max(zeros, 0)), '0') +
                                          std::to_string(a) + back(F));
        }
        if (run.missing == 0 || !split)
            result.push_back(run.missing != 0 ? text + ")" : text);
    }
    return result;
}

} // namespace Kestrel::Fuzz::FoldingOracle
