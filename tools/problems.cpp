#include "problems.h"

#include "progress.h"
#include "terminal.h"

#include <algorithm>
#include <cstddef>
#include <cstdio>

#include <unistd.h>

namespace filterctl {

namespace {

bool isContinuation(char byte) { return (static_cast<unsigned char>(byte) & 0xC0) == 0x80; }

/** How many bytes the character at the beginning has; 0 if it is none that can be printed. */
std::size_t lengthOfPrintable(std::string_view text)
{
    const auto first = static_cast<unsigned char>(text[0]);
    if (first < 0x80)
        return first >= 0x20 && first != 0x7F;
    // The control characters behind ASCII begin with 0xC2.
    const std::size_t length = first < 0xC2 ? 0 : first < 0xE0 ? 2 : first < 0xF0 ? 3 : 4;
    if (first > 0xF4 || text.size() < length ||
        !std::all_of(text.begin() + 1, text.begin() + static_cast<std::ptrdiff_t>(length),
                     isContinuation))
        return 0;
    return first == 0xC2 && static_cast<unsigned char>(text[1]) < 0xA0 ? 0 : length;
}

/** The lines of a text, found quickly if they are asked for in their order. */
class Lines {
public:
    explicit Lines(std::string_view text) : text_(text), rest_(text) {}

    /** Empty if there is no such line. */
    std::string_view at(std::size_t number)
    {
        if (number < next_) {
            rest_ = text_;
            next_ = 1;
        }
        for (; next_ < number && !rest_.empty(); ++next_)
            rest_.remove_prefix(std::min(rest_.find('\n'), rest_.size() - 1) + 1);
        const std::string_view line = rest_.substr(0, rest_.find('\n'));
        return line.substr(0, line.find_last_not_of('\r') + 1);
    }

private:
    std::string_view text_;
    std::string_view rest_;
    std::size_t next_ = 1;
};

/** The bytes of a line, one character for each. */
std::string evenly(std::string_view line)
{
    std::string text(line);
    for (char& c : text)
        c = c == '\t' ? ' ' : c >= 0x20 && c < 0x7F ? c : '?';
    return text;
}

/** The part of the line around the column, and a mark under the word that begins there. */
std::string shown(std::string_view line, std::size_t column, const Painter& painter)
{
    constexpr std::size_t BEFORE = 40;
    constexpr std::size_t WIDTH = 76;
    constexpr std::string_view BLANKS = " \t";
    const std::size_t first = std::min(line.find_first_not_of(BLANKS), line.size());
    const std::size_t begin = std::min(column == 0 ? first : column - 1, line.size());
    const std::size_t end =
        std::min(column == 0 ? line.size() : line.find_first_of(BLANKS, begin), line.size());
    const std::size_t from = begin + 1 > WIDTH ? begin - BEFORE : 0;
    const std::size_t width = std::min(std::max<std::size_t>(end - begin, 1), from + WIDTH - begin);
    return "  " + evenly(line.substr(from, WIDTH)) + "\n  " + std::string(begin - from, ' ') +
           painter.green("^" + std::string(width - 1, '~')) + "\n";
}

std::string placeOf(const std::string& name, const Problem& problem)
{
    std::string place = printable(name) + ":";
    for (const std::size_t number : {problem.line, problem.column})
        if (number != 0)
            place += std::to_string(number) + ":";
    return place;
}

} // namespace

void report(const std::string& name, const std::vector<Problem>& problems, std::string_view text)
{
    const Painter painter(takesColor(STDERR_FILENO));
    const bool showsLines = ::isatty(STDERR_FILENO) == 1;
    Lines lines(text);
    std::string all;
    for (const Problem& problem : problems) {
        all += "filterctl: " + painter.bold(placeOf(name, problem)) + " " +
               printable(problem.sentence) + "\n";
        if (!showsLines || problem.line == 0)
            continue;
        if (const std::string_view line = lines.at(problem.line); !line.empty())
            all += shown(line, problem.column, painter);
    }
    tellUser(all);
}

void report(std::string_view message) { tellUser("filterctl: " + printable(message) + "\n"); }

void tellUser(const std::string& text)
{
    stopProgress();
    std::fwrite(text.data(), 1, text.size(), stderr);
}

std::string printable(std::string_view text)
{
    constexpr char DIGITS[] = "0123456789abcdef";
    std::string safe;
    while (!text.empty()) {
        const std::size_t length = lengthOfPrintable(text);
        if (length == 0) {
            const auto byte = static_cast<unsigned char>(text[0]);
            (safe += "\\x") += {DIGITS[byte >> 4], DIGITS[byte & 0xF]};
        }
        safe += text.substr(0, length);
        text.remove_prefix(std::max<std::size_t>(length, 1));
    }
    return safe;
}

} // namespace filterctl
