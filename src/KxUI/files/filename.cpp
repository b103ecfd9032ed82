#include <KxUI/files/filename.h>

#include <KxUI/files/NaturalOrder_p.h>
#include <KxUI/files/SequenceFold_p.h>
#include <KxUI/files/filename_p.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <exception>
#include <mutex>

namespace Kestrel::UI {
namespace {

bool isSeparator(char c) {
    return c == '/' || c == '\\';
}

bool hasDrive(const char* path) {
    return path[0] != '\0' && path[1] == ':';
}

// The text without its last separator and what follows; empty when there is none.
std::string_view beforeLastSeparator(std::string_view path) {
    std::size_t end = path.size();
    while (end > 0 && !isSeparator(path[end - 1]))
        --end;
    return path.substr(0, end == 0 ? 0 : end - 1);
}

// The status of the path asked for last, so that the questions a listing asks about one entry in a
// row cost one status call.
class StatusCache {
public:
    // All zero when there is no such file.
    Platform::Status query(const char* path) {
        const std::lock_guard<std::mutex> lock(m_mutex);
        if (!m_asked || m_path != path) {
            m_asked = false; // until all of it is known: memory may run out
            m_path = path;
            // A drive alone is its current directory to the system; its root is meant.
            const bool isDrive =
                m_path.size() == 2 && m_path[1] == ':' &&
                ((m_path[0] >= 'a' && m_path[0] <= 'z') || (m_path[0] >= 'A' && m_path[0] <= 'Z'));
            m_status = {};
            Platform::queryStatus(isDrive ? m_path + '/' : m_path, m_status);
            m_asked = true;
        }
        return m_status;
    }

private:
    std::mutex m_mutex;
    std::string m_path;
    bool m_asked = false;
    Platform::Status m_status;
};

Platform::Status cachedStatus(const char* path) {
    if (!path)
        return {};
    try {
        static StatusCache cache;
        return cache.query(path);
    } catch (const std::exception&) {
        return {}; // no memory; the caller may be C
    }
}

// Collects a folded listing; new texts live in the listing's arena.
class FoldedNames {
public:
    explicit FoldedNames(NameArena& names)
        : m_names(names) {}

    void addFile(const Platform::Entry& entry) { entries.push_back(entry); }

    void addHeadDirectory(const Platform::Entry& entry) { add(std::string(entry.view()) + '/'); }

    void addSequence(const SequenceRun& run, const PatternRules::Frame& head) {
        std::string text = PatternRules::pattern(head);
        text += ' ' + std::to_string(run.firstFrame) + '-' + std::to_string(run.lastFrame);
        if (run.step > 1)
            text += ',' + std::to_string(run.step);
        if (run.missing != 0)
            text += '(' + std::to_string(run.missing) + " missing)";
        text += '\1';
        add(text);
    }

    std::vector<Platform::Entry> entries;

private:
    void add(const std::string& text) {
        entries.emplace_back(m_names.add(text), Platform::EntryType::Other);
    }

    NameArena& m_names;
};

// Names that a C caller frees one by one, then the array; null when memory runs out.
char** copiedForCaller(const std::vector<Platform::Entry>& entries) {
    auto** const array = static_cast<char**>(std::calloc(entries.size() + 1, sizeof(char*)));
    if (!array)
        return nullptr;
    for (std::size_t i = 0; i < entries.size(); ++i) {
        const std::size_t size = entries[i].length + std::size_t{1};
        array[i] = static_cast<char*>(std::malloc(size));
        if (!array[i]) {
            while (i > 0)
                std::free(array[--i]);
            std::free(array);
            return nullptr;
        }
        std::memcpy(array[i], entries[i].name, size);
    }
    return array;
}

int listDirectory(const char* dir, char**& array, bool fold) {
    Platform::Listing listing;
    if (Platform::readDirectory(dir, listing) != 0 || listing.entries.empty())
        return 0;
    if (fold) {
        sortNaturally(listing.entries, NaturalOrder::Grouping);
        PatternRules rules;
        FoldedNames folded(listing.names);
        foldSequences(
            listing.entries, rules,
            [&](const auto& entry) { return Platform::isDirectory(dir, entry); }, folded);
        listing.entries = std::move(folded.entries);
    }
    sortNaturally(listing.entries, NaturalOrder::Plain);
    array = copiedForCaller(listing.entries);
    return array ? static_cast<int>(listing.entries.size()) : 0;
}

// Empty when there is no current directory to start from. `room` is the size of the caller's
// buffer.
std::string absolutePath(const char* from, const char* cwd, std::size_t room) {
    std::string base;
    bool hasBase = false;
    const char* rest = from;
    if (!cwd && from[0] == '~') {
        base = Platform::homeDirectory();
        if (!base.empty()) {
            hasBase = true;
            if (from[1] == '\0') {
                rest = from + 1;
            } else if (isSeparator(from[1])) {
                rest = from + 2;
            } else {
                // The user's name takes the place of the last component of HOME.
                rest = from + 1;
                base.resize(beforeLastSeparator(base).size());
            }
        }
    } else if (!isSeparator(from[0]) && !hasDrive(from)) {
        hasBase = true;
        base = cwd ? std::string(cwd) : Platform::currentDirectory();
        if (!cwd && base.empty())
            return {};
    }

    while (rest[0] == '.') {
        if (isSeparator(rest[1])) {
            rest += 2;
        } else if (rest[1] == '.' && isSeparator(rest[2]) && !base.empty()) {
            rest += 3;
            base.resize(beforeLastSeparator(base).size());
        } else {
            break;
        }
    }

    std::string path;
    if (hasBase) {
        path = base.substr(0, std::max<std::size_t>(room, 2) - 2);
        if (path.empty() || !isSeparator(path.back()))
            path += '/';
    }
    path += rest;
    std::replace(path.begin(), path.end(), '\\', '/');
    return path;
}

} // namespace

std::uint64_t filename_size(const char* path) {
    return cachedStatus(path).size;
}

std::int64_t filename_time(const char* path) {
    return cachedStatus(path).time();
}

} // namespace Kestrel::UI

using namespace Kestrel::UI;

std::uint64_t filename_absolute(char* to, int tolen, const char* from, const char* cwd) {
    const auto room = static_cast<std::size_t>(std::max(tolen, 0));
    try {
        // Built aside: the caller's buffer may hold `from` or `cwd`.
        const std::string path = absolutePath(from ? from : "", cwd, room);
        if (to && room > 0)
            to[path.copy(to, room - 1)] = '\0';
        return path.size();
    } catch (const std::exception&) {
        if (to && room > 0)
            to[0] = '\0';
        return 0; // no memory; the caller may be C
    }
}

const char* filename_name(const char* path) {
    if (!path)
        return nullptr;
    const char* name = hasDrive(path) ? path + 2 : path;
    for (const char* c = name; *c != '\0'; ++c) {
        if (isSeparator(*c))
            name = c + 1;
    }
    return name;
}

bool filename_isdir(const char* path) {
    return cachedStatus(path).isDirectory();
}

int filename_list(const char* dir, struct dirent*** list, char sequences) {
    if (!list)
        return 0;
    *list = nullptr;
    if (!dir)
        return 0;
    try {
        char** array = nullptr;
        const int count = listDirectory(dir, array, sequences != 0);
        *list = reinterpret_cast<struct dirent**>(array);
        return count;
    } catch (const std::exception&) {
        return 0; // no memory; the caller may be C
    }
}
