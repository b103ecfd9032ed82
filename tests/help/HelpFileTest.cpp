#include <KxUI/help/platform/HelpPlatform_p.h>

#include <support/Plain.h>
#include <support/TempFolder.h>

#include <fstream>

using namespace Kestrel::UI::Help;
using Kestrel::Test::TempFolder;

KXUI_PLAIN_TEST(HelpFileTest, bytesAsTheyAre) {
    const TempFolder root;
    const std::string bytes("a\r\nb\n\x1a\0c", 8);
    // A root that no single code page of Windows can say.
    const std::string folder = root.utf8() + "/gr\u00fc\u00df\u65e5\u0e01";
    std::filesystem::create_directory(std::filesystem::u8path(folder));
    const std::string path = folder + "/page.html";
    std::ofstream(std::filesystem::u8path(path), std::ios::binary) << bytes;
    RegularFile file = RegularFile::open(path);
    CHECK(file.state() == RegularFile::State::Open);
    COMPARE(file.size(), bytes.size());
    std::string read(20, '-');
    COMPARE(file.read(read.data(), 3), 3U);
    RegularFile moved(std::move(file));
    CHECK(file.state() == RegularFile::State::Missing);
    COMPARE(moved.read(read.data() + 3, 17), 5U);
    COMPARE(read.substr(0, 8), bytes);
}

KXUI_PLAIN_TEST(HelpFileTest, whatIsNoFile) {
    const TempFolder root;
#if defined(_WIN32)
    const std::string device = root.utf8() + "/nul.html";
#else
    const std::string device = "/dev/null";
#endif
    for (const auto& path :
         {root.utf8(), root.utf8() + "/", root.utf8() + "/missing", root.utf8() + "\xff", device})
        CHECK_FOR(RegularFile::open(path).state() == RegularFile::State::Missing, path);
}
