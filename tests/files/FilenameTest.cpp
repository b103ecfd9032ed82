#include <KxUI/files/filename.h>
#include <KxUI/files/filename_p.h>
#include <KxUI/files/platform/Platform_p.h>

#include <support/Plain.h>
#include <support/TempFolder.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <limits>
#include <new>

namespace fs = std::filesystem;
using namespace Kestrel::UI;
using Kestrel::Test::TempFolder;

// Memory that runs out after so many more allocations; -1 while it does not.
static thread_local int allocationsLeft = -1;

void* operator new(std::size_t size) {
    void* const memory = allocationsLeft != 0 ? std::malloc(size) : nullptr;
    if (!memory)
        throw std::bad_alloc();
    allocationsLeft -= allocationsLeft > 0 ? 1 : 0;
    return memory;
}

void operator delete(void* memory) noexcept {
    std::free(memory);
}

void operator delete(void* memory, std::size_t) noexcept {
    std::free(memory);
}

namespace {

void setHome(const std::string& home) {
#if defined(_WIN32)
    ::_putenv_s("HOME", home.c_str());
#else
    ::setenv("HOME", home.c_str(), 1);
#endif
}

std::string times(int count, const std::string& text) {
    std::string all;
    while (count-- > 0)
        all += text;
    return all;
}

} // namespace

KXUI_PLAIN_TEST(FilenameTest, absolute) {
    const char* const rows[][4] = {{"./../x", "/a/b", "", "/a/x"},
                                   {"../x", "", "", "/../x"},
                                   {"../../../x", "/a/b", "", "/../x"},
                                   {".", "/a/b", "", "/a/b/."},
                                   {"..x/y", "/a/b", "", "/a/b/..x/y"},
                                   {"../x", "/a/b/", "", "/a/b/x"},
                                   {"", "/a", "", "/a/"},
                                   {"..\\x\\y", "C:\\a\\b", "", "C:/a/x/y"},
                                   {"\\x", "/a", "", "/x"},
                                   {"C:", "/a", "", "C:"},
                                   {"~/x", "/a", "/home/u", "/a/~/x"},
                                   {"~", nullptr, "/home/u", "/home/u/"},
                                   {"~/../x", nullptr, "/home/u", "/home/x"},
                                   {"~bob/x", nullptr, "/home/u", "/home/bob/x"},
                                   {"~/x", nullptr, "", "~/x"}};
    for (const auto& [from, cwd, home, expected] : rows) {
        setHome(home);
        const std::size_t length = std::strlen(expected);
        char to[64];
        COMPARE(filename_absolute(to, sizeof to, from, cwd), length);
        COMPARE(std::string(to), expected);
        // Never outside the buffer.
        for (int room = 0; room < int(length); ++room) {
            std::fill_n(to, sizeof to, '?');
            filename_absolute(to, room, from, cwd);
            CHECK(to[room] == '?' && (room == 0 || std::strlen(to) < unsigned(room)));
        }
    }
    char small[8];
    COMPARE(filename_absolute(small, sizeof small, "name", "/long/base"), 10U);
    COMPARE(std::string(small), "/long/n");
    COMPARE(filename_absolute(small, std::numeric_limits<int>::min(), "name", "/base"), 5U);
    COMPARE(filename_absolute(nullptr, 8, "name", "/base"), 10U);
    COMPARE(filename_absolute(small, sizeof small, nullptr, "/a"), 3U);
}

// What the system says of itself is in its own encoding.
KXUI_PLAIN_TEST(FilenameTest, absoluteFromHereAndHome) {
    const TempFolder root;
    const std::string folder = root.utf8() + "/grüß";
    fs::create_directory(fs::u8path(folder));
    fs::current_path(fs::u8path(folder));
    setHome(Platform::fromUtf8(folder));
    for (const char* from : {"./x", "~/x"}) {
        char path[4096];
        std::strcpy(path, from);
        const auto length = filename_absolute(path, sizeof path, path, nullptr);
        COMPARE(std::string(path), folder + "/x");
        COMPARE(length, folder.size() + 2);
    }
}

#if !defined(_WIN32) // which keeps the folder that a process is in
KXUI_PLAIN_TEST(FilenameTest, absoluteFromNowhere) {
    const TempFolder root;
    const fs::path folder = root.path() / "gone";
    fs::create_directory(folder);
    fs::current_path(folder);
    fs::remove(folder);
    char path[8] = "?";
    COMPARE(filename_absolute(path, sizeof path, "x", nullptr), 0U);
    COMPARE(std::string(path), "");
    COMPARE(filename_absolute(path, sizeof path, "/x", nullptr), 2U);
}
#endif

// Callers may be C: nothing is thrown, and nothing of the failure stays.
KXUI_PLAIN_TEST(FilenameTest, withoutMemory) {
    const TempFolder root;
    const std::string folder = root.utf8() + "/a folder with a name that needs memory";
    const std::string from(100, 'x');
    const std::string pattern = "*" + times(100, "{x,y}");
    fs::create_directory(folder);
    std::ofstream(folder + "/f1.exr") << "1";
    std::ofstream(folder + "/f2.exr") << "1";
    bool isWhole = false;
    for (int allocations = 0; !isWhole; ++allocations) {
        struct dirent** list = nullptr;
        char path[4096] = "?";
        filename_isdir("/");
        allocationsLeft = allocations;
        const auto length = filename_absolute(path, sizeof path, from.c_str(), folder.c_str());
        const bool matched = filename_match(from.c_str(), pattern.c_str());
        allocationsLeft = allocations;
        const bool isDirectory = filename_isdir(folder.c_str());
        allocationsLeft = allocations;
        const int count = filename_list(folder.c_str(), &list, 1);
        allocationsLeft = -1;
        CHECK(length == 0 ? path[0] == '\0' : length == folder.size() + 101);
        CHECK(filename_isdir(folder.c_str()));
        CHECK(count == 0 ? !list : count == 3);
        for (int i = 0; i < count; ++i)
            std::free(list[i]);
        std::free(list);
        isWhole = length != 0 && matched && isDirectory && count != 0;
    }
}

KXUI_PLAIN_TEST(FilenameTest, name) {
    const char* const rows[][2] = {{"/a/b.exr", "b.exr"}, {"a\\b/c\\d", "d"}, {"dir/", ""},
                                   {"C:foo", "foo"},      {"plain", "plain"}, {"", ""}};
    for (const auto& [path, expected] : rows)
        COMPARE(std::string(filename_name(path)), expected);
    CHECK(filename_name(nullptr) == nullptr);
}

KXUI_PLAIN_TEST(FilenameTest, match) {
    using Rows = std::vector<std::pair<const char*, const char*>>;
    const Rows matching{{"abc", "abc,def"},   {"a.dpx", "*.{exr,dpx}"},
                        {"dx", "[^a-c]x"},    {"]", "[]a]"},
                        {"-", "[a-]"},        {"\\", "[\\]"},
                        {"d", "[a-c-e]"},     {"\xff", "[\x80-\xff]"},
                        {"a", "[\x80-z]"},    {"a", "{a,[b"},
                        {"xbz", "x{a|b}z"},   {"xbcz", "x{a,b{c,d}}z"},
                        {"a*", "a\\*"},       {"a\\", "a\\"},
                        {"a,b", "{x,a\\,b}"}, {"ab", "a}b"},
                        {"abc", "{x,a?c}"},   {"", "*"}};
    const Rows different{{"def", "abc,def"}, {"a.DPX", "*.{exr,dpx}"},
                         {"bx", "[!a-c]x"},  {"b", "[c-a]"},
                         {"a", "[a"},        {"e", "{a{b,c}d,e}"},
                         {"ab", "a\\*"},     {"ac", "{x,a?c}"},
                         {"", "?"},          {"", "[!a]"}};
    for (const auto& [text, pattern] : matching)
        CHECK_FOR(filename_match(text, pattern), pattern);
    for (const auto& [text, pattern] : different)
        CHECK_FOR(!filename_match(text, pattern), pattern);
    CHECK(!filename_match(nullptr, "*") && !filename_match("", nullptr));
}

// Each of these would outlast any patience if alternatives were tried one by one.
KXUI_PLAIN_TEST(FilenameTest, hardPatternsEnd) {
    const std::string text(100, 'a');
    const auto matches = [&](const std::string& pattern) {
        return filename_match(text.c_str(), pattern.c_str());
    };
    CHECK(!matches(times(50, "*a") + 'b'));
    CHECK(!matches(times(40, "{a,a}")));
    CHECK(matches(times(40, "{a,aa,*}")));
    constexpr int many = 400000;
    CHECK(!matches(times(many, "{")));
    CHECK(!matches("{" + times(many, ",")));
    CHECK(!matches("{" + times(many, "[,") + "]}"));
    CHECK(!matches("{" + times(many, "[,")));
}

KXUI_PLAIN_TEST(FilenameTest, statusCache) {
    const TempFolder root;
    const std::string sub = root.utf8() + "/sub";
    const auto isDirectory = [](const std::string& path) { return filename_isdir(path.c_str()); };
    CHECK(fs::create_directory(sub) && isDirectory(sub));
    CHECK(fs::remove(sub) && isDirectory(sub));
    CHECK(!isDirectory("") && !filename_isdir(nullptr));
    CHECK(!isDirectory(sub));
    CHECK(fs::create_directory(sub) && !isDirectory(sub));

    const std::string path = root.utf8() + "/grüß";
    std::ofstream(fs::u8path(path)) << "12345";
    CHECK(!isDirectory(path) && fs::remove(fs::u8path(path)));
    COMPARE(filename_size(path.c_str()), 5U);
    CHECK(filename_time(path.c_str()) > 0);

    const std::string file = sub + "/file";
    std::ofstream(file) << "1";
    CHECK(isDirectory(sub + '/') && isDirectory(sub + "\\"));
    CHECK(!isDirectory(file + '/') && filename_size((file + '/').c_str()) == 0);
}

KXUI_PLAIN_TEST(FilenameTest, unreadable) {
    struct dirent** list = nullptr;
    for (const char* folder : {"/no/such/folder", "/dev/null", static_cast<const char*>(nullptr)})
        CHECK(filename_list(folder, &list, 1) == 0 && !list);
    COMPARE(filename_list("/", nullptr, 0), 0);
}
