#pragma once

#include <KxUI/files/platform/Platform_p.h>

#include <vector>

namespace Kestrel::UI {

/** What a number decides when names are put in natural order. */
enum class NaturalOrder {
    Plain,   ///< the first difference decides, numbers by value: a9, a10, b1
    Grouping ///< names that differ in digits only stay together; their first number that differs
             ///< decides among them: a1b1, a2b1, a1c1
};

constexpr bool isDigit(char c) noexcept {
    return c >= '0' && c <= '9';
}

/** Sorts names: digits by the length of their run, then by value; letters by their lower-case form,
    then lower case first (x.exr, X.exr); other bytes as signed characters. */
void sortNaturally(std::vector<Platform::Entry>& entries, NaturalOrder order);

} // namespace Kestrel::UI
