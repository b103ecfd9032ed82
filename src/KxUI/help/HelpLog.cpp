#include <KxUI/help/HelpLog_p.h>

#include <cstdio>
#include <string>

namespace Kestrel::UI::Help {
namespace {

bool verboseFlag = false;

void writeLine(std::FILE* stream, std::initializer_list<std::string_view> parts) {
    std::string line;
    for (const std::string_view part : parts)
        line += part;
    line += '\n';
    std::fwrite(line.data(), 1, line.size(), stream);
    std::fflush(stream);
}

} // namespace

bool isVerbose() {
    return verboseFlag;
}

void setVerbose(bool verbose) {
    verboseFlag = verbose;
}

void log(std::initializer_list<std::string_view> parts) {
    if (verboseFlag)
        writeLine(stdout, parts);
}

void logToError(std::initializer_list<std::string_view> parts) {
    if (verboseFlag)
        writeLine(stderr, parts);
}

void reportError(std::initializer_list<std::string_view> parts) {
    writeLine(stderr, parts);
}

void report(std::initializer_list<std::string_view> parts) {
    writeLine(stdout, parts);
}

} // namespace Kestrel::UI::Help
