// A file system that misbehaves as it is told by its standard input, a word or two a line:
//   hang            nothing is answered any more
//   go              everything is answered at once, what waits included
//   stall 5000 1000 nothing for 5 s, then everything for 1 s, over and over
//   types off       names come without saying what is a folder
//   error 5         every question is answered by this error; 0 for none
//   grow 200        so many frames a second come to those of `frames`
// It is gone with the end of its input. Started with the folder to be and the number of frames.

#define FUSE_USE_VERSION 312
#include <fuse3/fuse.h>

#include <cerrno>
#include <chrono>
#include <condition_variable>
#include <cstdio>
#include <cstring>
#include <iostream>
#include <mutex>
#include <sstream>
#include <string>
#include <sys/mount.h>
#include <thread>
#include <unistd.h>

namespace {

using Clock = std::chrono::system_clock;
using std::chrono::milliseconds;

class Behaviour {
public:
    static Behaviour& instance() {
        static auto* const one = new Behaviour;
        return *one;
    }

    void obey(const std::string& line) {
        std::istringstream words(line);
        std::string word;
        std::string second;
        words >> word >> second;
        const int number = std::atoi(second.c_str());
        const std::lock_guard<std::mutex> lock(m_mutex);
        if (word == "hang")
            m_hangs = true;
        else if (word == "types")
            m_tellsTypes = second == "on";
        else if (word == "error")
            m_error = number;
        else if (word == "grow") {
            m_count = countNow();
            m_growth = number;
            m_grown = Clock::now();
        } else if (word == "stall") {
            m_stall = milliseconds(number);
            int answering = 0;
            words >> answering;
            m_answering = milliseconds(answering);
            m_begun = Clock::now();
        } else if (word == "go") {
            m_hangs = false;
            m_stall = milliseconds(0);
        }
        m_changed.notify_all();
    }

    // Returns the error that it is to be answered by.
    int wait() {
        std::unique_lock<std::mutex> lock(m_mutex);
        for (;;) {
            if (m_hangs) {
                m_changed.wait(lock);
                continue;
            }
            const milliseconds left = stallLeft();
            if (left.count() == 0)
                return m_error;
            m_changed.wait_for(lock, left);
        }
    }

    long frames() {
        const std::lock_guard<std::mutex> lock(m_mutex);
        return countNow();
    }

    void setFrames(long count) { m_count = count; }

    timespec changed() {
        const std::lock_guard<std::mutex> lock(m_mutex);
        timespec time{1000000000, 0};
        time.tv_nsec = countNow(); // another one with each frame
        return time;
    }

    bool tellsTypes() {
        const std::lock_guard<std::mutex> lock(m_mutex);
        return m_tellsTypes;
    }

private:
    long countNow() const {
        return m_count +
               long(m_growth * std::chrono::duration<double>(Clock::now() - m_grown).count());
    }

    milliseconds stallLeft() const {
        if (m_stall.count() == 0)
            return milliseconds(0);
        const auto passed = std::chrono::duration_cast<milliseconds>(Clock::now() - m_begun);
        const auto phase = passed % (m_stall + m_answering);
        return phase < m_stall ? m_stall - phase : milliseconds(0);
    }

    std::mutex m_mutex;
    std::condition_variable m_changed;
    bool m_hangs = false;
    bool m_tellsTypes = true;
    int m_error = 0;
    milliseconds m_stall{0};
    milliseconds m_answering{0};
    Clock::time_point m_begun = Clock::now();
    long m_count = 0;
    double m_growth = 0;
    Clock::time_point m_grown = Clock::now();
};

bool isFolder(const std::string& path) {
    return path == "/" || path == "/frames" || path == "/mixed" ||
           path.find("/sub.") != std::string::npos;
}

// Empty behind the last one.
std::string nameIn(const std::string& folder, long index) {
    static const std::string all[] = {"frames", "mixed"};
    static const std::string mixed[] = {"sub.1", "sub.2", "a.1", "a.2"};
    if (index < 2)
        return std::string(std::size_t(index) + 1, '.');
    index -= 2;
    if (folder == "/")
        return index < 2 ? all[index] : std::string();
    if (folder == "/mixed")
        return index < 4 ? mixed[index] : std::string();
    if (folder != "/frames" || index >= Behaviour::instance().frames())
        return {};
    char name[64];
    std::snprintf(name, sizeof name, "shot.%07ld.exr", index);
    return name;
}

int getStatus(const char* path, struct stat* status, fuse_file_info*) {
    Behaviour& behaviour = Behaviour::instance();
    if (const int error = behaviour.wait())
        return -error;
    std::memset(status, 0, sizeof *status);
    status->st_mode = isFolder(path) ? S_IFDIR | 0755 : S_IFREG | 0644;
    status->st_nlink = 1;
    status->st_size = 1000;
    status->st_mtim = behaviour.changed();
    return std::strstr(path, "none") ? -ENOENT : 0;
}

int readFolder(const char* path, void* buffer, fuse_fill_dir_t fill, off_t offset, fuse_file_info*,
               fuse_readdir_flags) {
    Behaviour& behaviour = Behaviour::instance();
    if (const int error = behaviour.wait())
        return -error;
    for (long at = offset;; ++at) {
        const std::string name = nameIn(path, at);
        if (name.empty())
            return 0;
        struct stat status {};
        if (behaviour.tellsTypes())
            status.st_mode = at < 2 || isFolder(std::string(path) + '/' + name) ? S_IFDIR : S_IFREG;
        if (fill(buffer, name.c_str(), &status, at + 1, fuse_fill_dir_flags(0)) != 0)
            return 0;
    }
}

int openFolder(const char*, fuse_file_info*) {
    return -Behaviour::instance().wait();
}

void* begin(fuse_conn_info*, fuse_config* config) {
    // What the kernel remembers would answer for us.
    config->attr_timeout = config->entry_timeout = config->negative_timeout = 0;
    std::puts("mounted");
    std::fflush(stdout);
    return nullptr;
}

} // namespace

int main(int argc, char** argv) {
    if (argc < 3)
        return 2;
    const std::string folder = argv[1];
    Behaviour::instance().setFrames(std::atol(argv[2]));
    std::thread([folder] {
        std::string line;
        while (std::getline(std::cin, line)) {
            Behaviour::instance().obey(line);
            std::puts("done");
            std::fflush(stdout);
        }
        ::umount2(folder.c_str(), MNT_DETACH);
        ::_exit(0);
    }).detach();
    fuse_operations calls{};
    calls.init = begin;
    calls.getattr = getStatus;
    calls.opendir = openFolder;
    calls.readdir = readFolder;
    std::string arguments[] = {argv[0], "-f", "-o", "max_threads=64,fsname=slow,subtype=slow",
                               folder};
    char* pointers[] = {arguments[0].data(), arguments[1].data(), arguments[2].data(),
                        arguments[3].data(), arguments[4].data(), nullptr};
    return fuse_main(5, pointers, &calls, nullptr);
}
