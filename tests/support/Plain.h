#pragma once

#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

/** \file
    Tests that know no Qt, so that they run wherever the code under test does. A check that fails
    ends its test. */

namespace Kestrel::Test {

/** A function of a case. */
struct PlainTest {
    const char* caseName;
    const char* name;
    void (*run)();
};

/** Every test of this executable, in the order of registration. */
std::vector<PlainTest>& plainTests();

struct PlainRegistration {
    explicit PlainRegistration(const PlainTest& test) { plainTests().push_back(test); }
};

template <class Text>
[[noreturn]] void fail(const char* file, int line, const Text& text) {
    std::ostringstream message;
    message << file << ':' << line << ": " << text;
    throw std::runtime_error(message.str());
}

template <class Actual, class Expected>
void compare(const char* file, int line, const Actual& actual, const Expected& expected) {
    if (actual == expected)
        return;
    std::ostringstream text;
    text << "\n  actual:   " << actual << "\n  expected: " << expected;
    fail(file, line, text.str());
}

} // namespace Kestrel::Test

/** Begins a test: `KXUI_PLAIN_TEST(FilenameTest, match) { ... }`. */
#define KXUI_PLAIN_TEST(Case, name)                                                                \
    static void name();                                                                            \
    static const Kestrel::Test::PlainRegistration registration_##name({#Case, #name, name});       \
    static void name()

#define FAIL(text) Kestrel::Test::fail(__FILE__, __LINE__, text)
#define CHECK(condition) CHECK_FOR(condition, #condition)
#define CHECK_FOR(condition, row)                                                                  \
    do {                                                                                           \
        if (!(condition))                                                                          \
            FAIL(row);                                                                             \
    } while (false)
#define COMPARE(actual, expected) Kestrel::Test::compare(__FILE__, __LINE__, actual, expected)
