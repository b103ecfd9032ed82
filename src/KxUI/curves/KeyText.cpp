#include <KxUI/curves/KeyText_p.h>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <iterator>
#include <utility>

namespace Kestrel::UI {
namespace {

using Key = KeyCurve::Key;
using Shape = KeyCurve::Shape;
using Beyond = KeyCurve::Beyond;

// By the numbers of the enumerations.
constexpr const char* ShapeNames[] = {"constant", "linear",  "smooth",
                                      "monotone", "natural", "free"};
constexpr const char* BeyondNames[] = {"hold", "line", "repeat", "mirror"};

template <std::size_t Count>
int indexOf(const char* const (&names)[Count], std::string_view name) {
    const auto found = std::find(std::begin(names), std::end(names), name);
    return found == std::end(names) ? -1 : int(found - names);
}

bool isSpace(char c) {
    return c == ' ' || c == '\t' || c == '\n' || c == '\r';
}

// Takes a text apart from its front.
class Scanner {
public:
    explicit Scanner(std::string_view text)
        : m_rest(text) {}

    bool isAtEnd() {
        skipSpaces();
        return m_rest.empty();
    }
    bool take(char c) {
        if (isAtEnd() || m_rest.front() != c)
            return false;
        m_rest.remove_prefix(1);
        return true;
    }
    bool take(double& number) {
        skipSpaces();
        std::string_view digits = m_rest;
        if (digits.size() > 1 && digits[0] == '+' && digits[1] != '-')
            digits.remove_prefix(1);
        const auto [end, error] =
            std::from_chars(digits.data(), digits.data() + digits.size(), number);
        m_rest.remove_prefix(std::size_t(end - m_rest.data()));
        return error == std::errc() && std::abs(number) < KeyCurve::Largest;
    }
    std::string_view takeWord() {
        skipSpaces();
        const auto isLetter = [](char c) { return c >= 'a' && c <= 'z'; };
        const auto end = std::find_if_not(m_rest.begin(), m_rest.end(), isLetter);
        const std::string_view word = m_rest.substr(0, std::size_t(end - m_rest.begin()));
        m_rest.remove_prefix(word.size());
        return word;
    }

private:
    void skipSpaces() {
        const auto end = std::find_if_not(m_rest.begin(), m_rest.end(), isSpace);
        m_rest.remove_prefix(std::size_t(end - m_rest.begin()));
    }

    std::string_view m_rest;
};

bool readWord(Scanner& scanner, Key& key) {
    const std::string_view word = scanner.takeWord();
    const int shape = indexOf(ShapeNames, word);
    if (shape >= 0)
        key.shape = Shape(shape);
    else if (word == "broken")
        key.broken = true;
    else if (word == "selected")
        key.selected = true;
    else
        return (word == "in" && scanner.take(key.slopeIn)) ||
               (word == "out" && scanner.take(key.slopeOut));
    return true;
}

// After its opening parenthesis.
bool readKey(Scanner& scanner, Key& key) {
    key.shape = Shape::Natural;
    if (!scanner.take(key.x) || !scanner.take(',') || !scanner.take(key.y))
        return false;
    while (!scanner.take(')')) {
        if (!scanner.take(',') || !readWord(scanner, key))
            return false;
    }
    return true;
}

} // namespace

bool KeyText::read(std::string_view text) {
    Scanner scanner(text);
    if (!scanner.take('('))
        return false;
    if (!scanner.take(')')) {
        do {
            keys.emplace_back();
            if (!readKey(scanner, keys.back()))
                return false;
        } while (scanner.take(',') ? scanner.take('(') : false);
    }
    while (!scanner.isAtEnd()) {
        const std::string_view side = scanner.takeWord();
        const int beyond = indexOf(BeyondNames, scanner.takeWord());
        if (beyond < 0 || (side != "before" && side != "after"))
            return false;
        (side == "before" ? before : after) = Beyond(beyond);
    }
    return true;
}

void KeyTextWriter::open() {
    m_text += m_text.empty() ? "(" : ", (";
}

template <class Number>
void KeyTextWriter::number(Number value) {
    constexpr std::size_t Room = 64;
    char digits[Room];
    m_text.append(digits, std::to_chars(digits, digits + Room, value).ptr);
}

void KeyTextWriter::word(const char* name) {
    m_text += ", ";
    m_text += name;
}

void KeyTextWriter::add(const Key& key) {
    open();
    number(key.x);
    m_text += ", ";
    number(key.y);
    if (key.shape != Shape::Natural)
        word(ShapeNames[std::size_t(key.shape)]);
    const auto slope = [this](const char* name, double value) {
        if (value == 0 && !std::signbit(value))
            return;
        word(name);
        m_text += ' ';
        number(value);
    };
    slope("in", key.slopeIn);
    slope("out", key.slopeOut);
    if (key.broken)
        word("broken");
    if (key.selected)
        word("selected");
    m_text += ')';
}

void KeyTextWriter::add(float x, float y, bool selected) {
    // What is read goes through a double, which may round to the float beside this one.
    const auto write = [this](float value) {
        constexpr std::size_t Room = 64;
        char digits[Room];
        const char* const end = std::to_chars(digits, digits + Room, value).ptr;
        double again = 0;
        std::from_chars(digits, end, again);
        if (float(again) == value)
            m_text.append(digits, std::size_t(end - digits));
        else
            number(double(value));
    };
    open();
    write(x);
    m_text += ", ";
    write(y);
    if (selected)
        word("selected");
    m_text += ')';
}

void KeyTextWriter::addBeyond(Beyond before, Beyond after) {
    if (m_text.empty())
        m_text = "()";
    const auto add = [this](const char* side, Beyond beyond) {
        if (beyond != Beyond::Hold)
            m_text.append(side).append(BeyondNames[std::size_t(beyond)]);
    };
    add(" before ", before);
    add(" after ", after);
}

std::string KeyTextWriter::take() {
    if (m_text.empty())
        m_text = "()";
    return std::exchange(m_text, {});
}

std::string KeyCurve::text() const {
    KeyTextWriter writer;
    for (const Key& key : keys())
        writer.add(key);
    writer.addBeyond(before(), after());
    return writer.take();
}

bool KeyCurve::setText(std::string_view text) {
    KeyText parts;
    if (!parts.read(text))
        return false;
    setKeys(std::move(parts.keys));
    setBeyond(parts.before, parts.after);
    return true;
}

} // namespace Kestrel::UI
