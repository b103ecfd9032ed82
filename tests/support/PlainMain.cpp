#include <support/Plain.h>

#include <cstdio>
#include <string_view>

namespace Kestrel::Test {

std::vector<PlainTest>& plainTests() {
    static std::vector<PlainTest> all;
    return all;
}

} // namespace Kestrel::Test

// test_ROOM_plain [CASE [FUNCTION]]: runs one function, one case, or all of them.
int main(int argc, char** argv) {
    const auto wants = [&](int argument, std::string_view name) {
        return argc <= argument || name == argv[argument];
    };
    int passed = 0;
    int failed = 0;
    for (const auto& test : Kestrel::Test::plainTests()) {
        if (!wants(1, test.caseName) || !wants(2, test.name))
            continue;
        try {
            test.run();
            ++passed;
            std::printf("PASS   : %s::%s\n", test.caseName, test.name);
        } catch (const std::exception& failure) {
            ++failed;
            std::printf("FAIL!  : %s::%s %s\n", test.caseName, test.name, failure.what());
        }
        std::fflush(stdout);
    }
    std::printf("%d passed, %d failed\n", passed, failed);
    return passed > 0 && failed == 0 ? 0 : 1;
}
