#include "MemoryDirectory.h"

#include <KxUI/files/platform/Platform_p.h>

#include <map>

using namespace Kestrel::UI::Platform;

namespace {

struct Kind {
    EntryType told; // what the listing says
    bool isDirectory;
};

std::map<std::string, Kind>& directory() {
    static std::map<std::string, Kind> entries;
    return entries;
}

} // namespace

namespace Kestrel::Fuzz {

MemoryDirectory::MemoryDirectory(const Names& entries) {
    directory().clear();
    const auto add = [this](const std::string& name, Kind kind) {
        if (name.empty() || !directory().emplace(name, kind).second)
            return;
        names.push_back(name);
        if (kind.isDirectory)
            directories.push_back(name);
    };
    for (const char* name : {".", ".."})
        add(name, {EntryType::Directory, true});
    for (const std::string& entry : entries) {
        const std::string name = entry.substr(0, entry.empty() ? 0 : entry.size() - 1);
        switch (entry.empty() ? '\0' : entry.back()) {
        case '/':
            add(name, {EntryType::Directory, true});
            break;
        case '>':
            add(name, {EntryType::Unknown, true});
            break;
        case '<':
            add(name, {EntryType::Unknown, false});
            break;
        default:
            add(entry, {EntryType::Other, false});
        }
    }
}

} // namespace Kestrel::Fuzz

// What the library is linked with in place of its backend.
namespace Kestrel::UI::Platform {

int readDirectory(const std::string&, Listing& listing) {
    listing.entries.clear();
    for (const auto& [name, kind] : directory())
        listing.entries.emplace_back(listing.names.add(name), kind.told);
    return 0;
}

bool queryStatus(const std::string& path, Status& status) {
    const auto entry = directory().find(path.substr(path.rfind('/') + 1));
    if (entry == directory().end())
        return false;
    status.mode = entry->second.isDirectory ? 0x4000 : 0x8000;
    return true;
}

bool isWritable(const std::string&) {
    return true;
}

bool isAbsolute(std::string_view path) {
    return !path.empty() && path.front() == '/';
}

std::string currentDirectory() {
    return "/";
}

std::string toUtf8(std::string_view name) {
    return std::string(name);
}

std::string fromUtf8(std::string_view name) {
    return std::string(name);
}

} // namespace Kestrel::UI::Platform
