#pragma once

#include <initializer_list>
#include <string_view>

/** \file
    The help service's developer log, switched by one flag for the whole process. Interface thread.
 */

namespace Kestrel::UI::Help {

bool isVerbose();
void setVerbose(bool verbose);

/** Writes the parts as one line to standard output, when verbose. */
void log(std::initializer_list<std::string_view> parts);

/** Writes the parts as one line to standard error, when verbose. */
void logToError(std::initializer_list<std::string_view> parts);

/** Writes the parts as one line to standard error, verbose or not. */
void reportError(std::initializer_list<std::string_view> parts);

/** Writes the parts as one line to standard output, verbose or not. */
void report(std::initializer_list<std::string_view> parts);

} // namespace Kestrel::UI::Help
