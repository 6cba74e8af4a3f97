/**
 * The words of which a line of rule text consists.
 */
#ifndef FILTER_COMMON_SRC_RULE_LINE_H
#define FILTER_COMMON_SRC_RULE_LINE_H

#include <cstddef>
#include <string_view>

namespace FiltersCommon {

struct Word {
    std::string_view text;
    std::size_t column;

    std::string_view name() const { return text.substr(0, text.find('=')); }
    bool hasValue() const { return text.find('=') != text.npos; }
    std::string_view value() const { return hasValue() ? text.substr(text.find('=') + 1) : ""; }
};

/** The words of a line, one after another, without its comment. */
class Words {
public:
    explicit Words(std::string_view line) : line_(line) {}

    /** A word without text is the end of the line. */
    Word next()
    {
        while (place_ != line_.size() && isBlank(line_[place_]))
            ++place_;
        const std::size_t begin = place_;
        if (begin == line_.size() || line_[begin] == '#')
            return {{}, begin + 1};
        while (place_ != line_.size() && !isBlank(line_[place_]))
            ++place_;
        return {line_.substr(begin, place_ - begin), begin + 1};
    }

private:
    // The standard library's search for one of several characters calls a function for each byte.
    static bool isBlank(char c) { return c == ' ' || c == '\t'; }

    std::string_view line_;
    std::size_t place_ = 0;
};

} // namespace FiltersCommon

#endif // FILTER_COMMON_SRC_RULE_LINE_H
