#include "terminal.h"

#include <cstdlib>
#include <limits>

#include <sys/ioctl.h>
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

std::size_t widthOf(int descriptor)
{
    winsize size{};
    const bool isKnown = ::ioctl(descriptor, TIOCGWINSZ, &size) == 0 && size.ws_col != 0;
    return isKnown ? size.ws_col : std::numeric_limits<std::size_t>::max() - 1;
}

} // namespace filterctl
