#include <KxUI/files/platform/FileCalls_p.h>
#include <KxUI/files/platform/Mounts_p.h>
#include <KxUI/files/platform/Watch_p.h>

#include <support/Plain.h>
#include <support/TempFolder.h>

#include <array>
#include <atomic>
#include <chrono>
#include <fstream>
#include <set>
#include <thread>

using namespace Kestrel::UI::Platform;
using Kestrel::Test::TempFolder;

namespace {

class Blocks : public ReadProgress {
public:
    explicit Blocks(int wanted)
        : m_wanted(wanted) {}

    bool block(const Listing&) override { return ++m_seen < m_wanted; }

private:
    int m_wanted;
    int m_seen = 0;
};

#if !defined(_WIN32)
std::string firstOf(const Mount& mount) {
    return mount.point + (mount.remote ? " remote" : "");
}
#endif

} // namespace

KXUI_PLAIN_TEST(DirectoryTest, readsAndStops) {
    const TempFolder folder;
    std::set<std::string> made{".", ".."};
    for (int i = 0; i < 5000; ++i) {
        const std::string name = "frame." + std::to_string(i) + ".exr";
        std::ofstream(folder.path() / name);
        made.insert(name);
    }
    DirectoryHandle directory;
    Listing all;
    Blocks every(1 << 20);
    COMPARE(directory.open(folder.utf8()), 0);
    COMPARE(readDirectory(directory, all, every), 0);
    std::set<std::string> found;
    for (const Entry& entry : all.entries)
        found.emplace(entry.view());
    CHECK(found == made && all.entries.size() == made.size());
    // Some systems tell sizes and times with the names.
    CHECK(all.statuses.empty() || all.statuses.size() == made.size());
    for (const ListedStatus& each : all.statuses)
        CHECK(each.size == 0 && each.modified > 0);

    Listing some;
    Blocks one(1);
    COMPARE(directory.open(folder.utf8()), 0);
    COMPARE(readDirectory(directory, some, one), 0);
    CHECK(!some.entries.empty() && some.entries.size() < made.size());
}

KXUI_PLAIN_TEST(DirectoryTest, statuses) {
    const TempFolder folder;
    std::ofstream(folder.path() / "file") << "12345";
    std::filesystem::create_directory(folder.path() / "sub");
    DirectoryHandle directory;
    CHECK(failureOf(directory.open(folder.utf8() + "/none")) == Failure::NotFound);
    const int onFile = directory.open(folder.utf8() + "/file");
    CHECK(failureOf(onFile) == Failure::NotADirectory || failureOf(onFile) == Failure::NotFound);
    COMPARE(directory.open(folder.utf8()), 0);
    EntryStatus own;
    CHECK(directory.status(own) == 0 && own.isDirectory());
    for (const bool cached : {true, false}) {
        EntryStatus status;
        COMPARE(queryStatusAt(directory, "file", cached, status), 0);
        CHECK(status.size == 5 && status.time() > 0 && !status.isDirectory() && !status.isLink);
        COMPARE(queryStatusAt(directory, "sub", cached, status), 0);
        CHECK(status.isDirectory() && status.device == own.device);
        CHECK(failureOf(queryStatusAt(directory, "gone", cached, status)) == Failure::NotFound);
    }
#if !defined(_WIN32)
    std::filesystem::create_symlink("sub", folder.path() / "toSub");
    std::filesystem::create_symlink("nowhere", folder.path() / "broken");
    std::filesystem::create_symlink("loop", folder.path() / "loop");
    const struct {
        const char* name;
        bool isDirectory, isBroken;
    } links[] = {{"toSub", true, false}, {"broken", false, true}, {"loop", false, true}};
    for (const auto& row : links) {
        EntryStatus status;
        CHECK_FOR(queryStatusAt(directory, row.name, true, status) == 0, row.name);
        CHECK_FOR(status.isLink && status.isDirectory() == row.isDirectory &&
                      status.isBrokenLink == row.isBroken,
                  row.name);
    }
    CHECK(failureOf(directory.open(folder.utf8() + "/loop")) == Failure::LinkLoop);
#endif
}

KXUI_PLAIN_TEST(DirectoryTest, changes) {
    const TempFolder folder;
    const std::string root = folder.utf8() + '/';
    COMPARE(makeDirectory(root + "sub"), 0);
    CHECK(failureOf(makeDirectory(root + "sub")) == Failure::Exists);
    CHECK(failureOf(makeDirectory(root + "none/sub")) == Failure::NotFound);
    for (const char* name : {"a", "b"})
        std::ofstream(folder.path() / name) << name;
    CHECK(failureOf(renameToNew(root + "a", root + "b")) == Failure::Exists);
    CHECK(failureOf(renameToNew(root + "none", root + "c")) == Failure::NotFound);
    COMPARE(renameToNew(root + "a", root + "sub/a"), 0);
    COMPARE(renameToNew(root + "sub", root + "other"), 0);
    EntryStatus status;
    COMPARE(queryPath(root + "other/a", status), 0);
    CHECK(status.size == 1 && !status.isDirectory());
    CHECK(queryPath(root + "other", status) == 0 && status.isDirectory());
    CHECK(failureOf(queryPath(root + "sub", status)) == Failure::NotFound);
    const Access access = queryAccess(root + "b");
    CHECK(access.read && access.write && !queryAccess(root + "none").write);
}

KXUI_PLAIN_TEST(DirectoryTest, watches) {
    const TempFolder folder;
    const TempFolder elsewhere;
    // Stays: a call may be on its way when the watch has ended.
    static auto* const told = new std::array<std::atomic<int>, 2>{};
    std::int64_t numbers[2] = {};
    for (const std::size_t i : {0U, 1U})
        COMPARE(
            watchDirectory((i == 0 ? folder : elsewhere).utf8(), [i] { ++(*told)[i]; }, numbers[i]),
            0);
    const auto isTold = [](int before) {
        for (int i = 0; i < 4000 && (*told)[0] <= before; ++i)
            std::this_thread::sleep_for(std::chrono::milliseconds(5));
        return (*told)[0] > before;
    };
    for (const char* name : {"a", "b"}) {
        const int before = (*told)[0];
        std::ofstream(folder.path() / name) << name;
        CHECK(isTold(before));
    }
    unwatchDirectory(numbers[0]);
    COMPARE((*told)[1], 0);
    std::ofstream(elsewhere.path() / "c");
    for (int i = 0; i < 4000 && (*told)[1] == 0; ++i)
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
    CHECK((*told)[1] > 0);
    unwatchDirectory(numbers[1]);
    std::int64_t none = 0;
    CHECK(watchDirectory(
              folder.utf8() + "/none", [] {}, none) != 0);
}

KXUI_PLAIN_TEST(DirectoryTest, failuresHaveNumbers) {
    for (int i = 0; i <= static_cast<int>(Failure::Other); ++i) {
        const auto failure = static_cast<Failure>(i);
#if defined(_WIN32)
        if (failure == Failure::Stale || failure == Failure::NameTooLong)
            continue;
#endif
        CHECK_FOR(failureOf(errorOf(failure)) == failure, std::to_string(i));
    }
}

#if !defined(_WIN32)
KXUI_PLAIN_TEST(DirectoryTest, mountTable) {
    const auto table =
        parseMounts("22 1 0:21 / / rw,relatime shared:1 - ext4 /dev/sda1 rw\n"
                    "30 22 0:30 / /mnt/a\\040b rw - nfs4 server:/x rw,hard\n"
                    "31 22 0:31 / /mnt/show rw shared:7 master:2 - fuse.sshfs u@h rw\n"
                    "32 22 0:32 / /data rw - fuseblk /dev/sdb1 rw\n"
                    "33 22 0:33 / /data rw - cifs //s/d rw\n"
                    "34 broken line\n"
                    "35 22 0:35 / /no rw shared:7");
    const struct {
        const char* path;
        const char* mount;
    } rows[] = {{"/", "/"},
                {"/home/u", "/"},
                {"/mnt/a b", "/mnt/a b remote"},
                {"/mnt/a b/c", "/mnt/a b remote"},
                {"/mnt/a bc", "/"},
                {"/mnt/show/010", "/mnt/show remote"},
                {"/mnt/show2", "/"},
                {"/data/x", "/data remote"}};
    for (const auto& row : rows)
        COMPARE(firstOf(mountOf(table, row.path)), row.mount);
    CHECK(!mounts().empty());
}
#endif
