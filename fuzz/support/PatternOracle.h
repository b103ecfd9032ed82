#pragma once

#include <string>

namespace Kestrel::Fuzz::PatternOracle {

/** The rules of filename_match(), tried one after the other with no thought of speed. */
bool matches(const std::string& name, const std::string& pattern);

} // namespace Kestrel::Fuzz::PatternOracle
