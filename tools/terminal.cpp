#include "terminal.h"

#include <cstdlib>

#include <unistd.h>

namespace filterctl {

namespace {

/** The value of an environment variable, empty if it is not set. */
std::string_view environment(const char* name)
{
    const char* const value = std::getenv(name);
    return value == nullptr ? "" : value;
}

} // namespace

bool takesColor(int descriptor)
{
    const std::string_view terminal = environment("TERM");
    return ::isatty(descriptor) == 1 && environment("NO_COLOR").empty() && !terminal.empty() &&
           terminal != "dumb";
}

} // namespace filterctl
