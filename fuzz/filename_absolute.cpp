// filename_absolute() and filename_name() against their rules. Three lines: the path, the base
// directory, HOME. The last bytes choose the size of the buffer and what is null or unset.

#include <KxUI/files/filename.h>

#include <support/Require.h>

#include <fuzzer/FuzzedDataProvider.h>

#include <algorithm>
#include <cstring>
#include <memory>

#include <unistd.h>

using namespace Kestrel::Fuzz;

namespace {

bool isSeparator(char c) {
    return c == '/' || c == '\\';
}

// Sets HOME without the memory that every setenv() costs.
void setHome(const std::string* home) {
    static char variable[512];
    std::strcpy(variable, home ? "HOME=" : "HOME");
    if (home)
        std::strncat(variable, home->c_str(), sizeof variable - 6);
    putenv(variable); // without "=" it is taken away
}

void cutLastComponent(std::string& path) {
    const std::size_t at = path.find_last_of("/\\");
    path.resize(at == std::string::npos ? 0 : at);
}

// The whole result, for a buffer of `room` bytes.
std::string absolute(std::string rest, const std::string* cwd, const std::string* home, int room) {
    std::string base;
    bool hasBase = true;
    if (!cwd && rest[0] == '~') {
        hasBase = home && !home->empty();
        if (hasBase) {
            base = *home;
            const bool ofAnother = rest.size() > 1 && !isSeparator(rest[1]);
            if (ofAnother)
                cutLastComponent(base);
            rest.erase(0, rest.size() > 1 && !ofAnother ? 2 : 1);
        }
    } else if (isSeparator(rest[0]) || (!rest.empty() && rest[1] == ':')) {
        hasBase = false;
    } else if (cwd) {
        base = *cwd;
    } else {
        const std::unique_ptr<char, void (*)(void*)> here(getcwd(nullptr, 0), std::free);
        base = here.get();
    }
    for (;;) {
        if (rest[0] == '.' && isSeparator(rest[1])) {
            rest.erase(0, 2);
        } else if (rest.compare(0, 2, "..") == 0 && isSeparator(rest[2]) && !base.empty()) {
            rest.erase(0, 3);
            cutLastComponent(base);
        } else {
            break;
        }
    }
    if (hasBase) {
        base.resize(std::min(base.size(), std::size_t(std::max(room - 2, 0))));
        if (base.empty() || !isSeparator(base.back()))
            base += '/';
    }
    return base + rest;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    FuzzedDataProvider input(data, size);
    const int room = input.ConsumeIntegral<std::uint8_t>();
    const auto choice = input.ConsumeIntegral<std::uint8_t>();
    const std::string text = input.ConsumeRemainingBytesAsString();
    std::string_view lines(text);
    std::string parts[3];
    for (std::string& part : parts) {
        part = take(lines, '\n');
        part.resize(std::min(part.find('\0'), part.size()));
    }
    const auto& [from, cwd, home] = parts;
    const std::string* const base = choice & 1 ? &cwd : nullptr;
    setHome(choice & 2 ? &home : nullptr);

    std::string wanted = absolute(from, base, choice & 2 ? &home : nullptr, room);
    const std::unique_ptr<char[]> to(new char[std::size_t(room)]);
    const auto length =
        filename_absolute(to.get(), room, from.c_str(), base ? base->c_str() : nullptr);
    require(length == wanted.size(), "the length of the whole result");
    std::replace(wanted.begin(), wanted.end(), '\\', '/');
    if (room > 0)
        require(wanted.substr(0, std::size_t(room) - 1) == to.get(), "the path by the rules");

    const char* const name = filename_name(from.c_str());
    require(std::none_of(name, from.c_str() + from.size(), isSeparator) &&
                (name == from.c_str() || isSeparator(name[-1]) || name == from.c_str() + 2),
            "the last component");
    return 0;
}
