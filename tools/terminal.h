/**
 * What is for people only: anything but a terminal never gets any of it.
 */
#ifndef FILTER_COMMON_TOOLS_TERMINAL_H
#define FILTER_COMMON_TOOLS_TERMINAL_H

#include <cstddef>
#include <string>
#include <string_view>

namespace filterctl {

/**
 * Whether output to the descriptor may be coloured: it must be a terminal that supports colours,
 * and NO_COLOR must be empty or not set.
 */
bool takesColor(int descriptor);

/** How many characters a line of the terminal has; any number if that is not known. */
std::size_t widthOf(int descriptor);

/** Colours texts, or leaves them as they are. */
class Painter {
public:
    explicit Painter(bool paints) : paints_(paints) {}

    std::string bold(std::string_view text) const { return paint("\033[1m", text); }
    std::string red(std::string_view text) const { return paint("\033[31m", text); }
    std::string cyan(std::string_view text) const { return paint("\033[36m", text); }
    std::string green(std::string_view text) const { return paint("\033[32m", text); }

private:
    std::string paint(const char* color, std::string_view text) const
    {
        const std::string plain(text);
        return paints_ ? color + plain + "\033[0m" : plain;
    }

    bool paints_;
};

} // namespace filterctl

#endif // FILTER_COMMON_TOOLS_TERMINAL_H
