#include <KxUI/files/filename.h>
#include <KxUI/files/filename_p.h>
#include <KxUI/files/platform/Platform_p.h>

#include <support/Plain.h>
#include <support/TempFolder.h>

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <windows.h>

namespace fs = std::filesystem;
using namespace Kestrel::UI;
using Kestrel::Test::TempFolder;

namespace {

std::string listed(const std::string& folder, bool sequences = false) {
    struct dirent** list = nullptr;
    const int count = filename_list(folder.c_str(), &list, sequences ? 1 : 0);
    std::string names;
    for (int i = 0; i < count; ++i) {
        names += reinterpret_cast<const char*>(list[i]) + std::string("\n");
        std::free(list[i]);
    }
    std::free(list);
    return names;
}

} // namespace

// Names are of the process's code page, paths of UTF-8. In Japanese, a byte of a name may look like
// a separator.
KXUI_PLAIN_TEST(WindowsTest, codePage) {
    const struct {
        UINT codePage;
        const char *folder, *name, *foreign;
        const char *listedFolder, *listedNames;
    } rows[] = {{1252, "\u20ac", "gr\u00fc\u00df.exr", "\u65e5.exr", "\x80\n.\n..\n",
                 ".\n..\n?.exr\ngr\xfc\xdf.exr\n"},
                {932, "\u8868", "\u30bd.exr", "\u0e01.exr", "\x95\\\n.\n..\n",
                 "\x83\\.exr\n.\n..\n?.exr\n"}};
    const auto row = std::find_if(std::begin(rows), std::end(rows),
                                  [](const auto& each) { return each.codePage == GetACP(); });
    CHECK_FOR(row != std::end(rows), GetACP());
    const TempFolder root;
    const std::string folder = root.utf8() + '/' + row->folder;
    const std::string file = folder + '/' + row->name;
    const std::string foreign = folder + '/' + row->foreign;
    fs::create_directory(fs::u8path(folder));
    std::ofstream(fs::u8path(file)) << "12345";
    std::ofstream(fs::u8path(foreign)) << "12345";
    COMPARE(listed(root.utf8()), row->listedFolder);
    COMPARE(listed(folder), row->listedNames);
    COMPARE(filename_size(file.c_str()), 5U);
    // What the code page cannot say is no file, whatever stands in for it.
    COMPARE(filename_size(foreign.c_str()), 0U);
    COMPARE(listed(foreign), "");
}

KXUI_PLAIN_TEST(WindowsTest, drives) {
    const TempFolder root;
    fs::current_path(root.path());
    for (const char* path : {"C:", "c:", "C:/", "C:\\", "C:\\windows", "c:/WINDOWS/", "/", "."})
        CHECK_FOR(filename_isdir(path), path);
    for (const char* path : {"Q:", "Q:/", "C", "C:/windows/win.ini/", "C:/no/such/folder"})
        CHECK_FOR(!filename_isdir(path), path);
    // The root, not the folder where the process is on that drive.
    COMPARE(listed("C:"), listed("C:/"));
    CHECK(listed("C:\\").find("windows\n") != std::string::npos);

    const char* const rows[][2] = {
        {"C:", "C:"}, {"C:x", "C:x"}, {"D:/x", "D:/x"}, {"/x", "/x"}, {"\\x", "\\x"}};
    for (const auto& [path, expected] : rows)
        COMPARE(Platform::absolutePath(path), expected);
    std::string here = Platform::absolutePath("x");
    std::replace(here.begin(), here.end(), '\\', '/');
    COMPARE(here, root.utf8() + "/x");
}

// A link does not say what it leads to; only its status does.
KXUI_PLAIN_TEST(WindowsTest, links) {
    COMPARE(listed(KXUI_LINKS, true), ".\n..\nd1/\nd2\nf%d 1-2\1\n");
}
