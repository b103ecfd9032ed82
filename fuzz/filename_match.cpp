// filename_match() against the rules tried one after the other. The name ends at the first line
// break, the pattern at the first zero byte.

#include <KxUI/files/filename.h>

#include <support/PatternOracle.h>
#include <support/Require.h>

using namespace Kestrel::Fuzz;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    std::string_view rest = textOf(data, size);
    const std::string all = take(rest, '\0');
    rest = all;
    const std::string name = take(rest, '\n');
    const std::string pattern(rest);
    require(filename_match(name.c_str(), pattern.c_str()) == PatternOracle::matches(name, pattern),
            "names match by the rules");
    std::string literal;
    for (const char c : name)
        literal.append({'\\', c});
    require(filename_match(name.c_str(), literal.c_str()), "a name matches itself");
    return 0;
}
