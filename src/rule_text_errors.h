/**
 * What is wrong with a rule text.
 */
#ifndef FILTER_COMMON_SRC_RULE_TEXT_ERRORS_H
#define FILTER_COMMON_SRC_RULE_TEXT_ERRORS_H

#include "filter_rule_text.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace FiltersCommon {

/** The word between quotation marks, short enough for a sentence, without bytes that harm. */
inline std::string quoted(std::string_view word)
{
    constexpr std::size_t MOST = 40;
    std::string text = "'";
    for (const char c : word.substr(0, MOST)) {
        const auto byte = static_cast<unsigned char>(c);
        if (byte >= 0x20 && byte < 0x7F)
            text += c;
        else
            (text += "\\x") += {"0123456789abcdef"[byte >> 4], "0123456789abcdef"[byte & 0xF]};
    }
    return text + (word.size() > MOST ? "...'" : "'");
}

/** The longest word that may be meant to be a known one. */
inline constexpr std::size_t LONGEST_WORD = 31;

/**
 * How many letters have to be changed, added or left out to make one word of the other; neither is
 * longer than LONGEST_WORD.
 */
inline std::size_t distance(std::string_view a, std::string_view b)
{
    std::array<std::size_t, LONGEST_WORD + 1> row;
    for (std::size_t j = 0; j <= b.size(); ++j)
        row[j] = j;
    for (std::size_t i = 1; i <= a.size(); ++i) {
        std::size_t diagonal = std::exchange(row[0], i);
        for (std::size_t j = 1; j <= b.size(); ++j) {
            const std::size_t changed = diagonal + (a[i - 1] != b[j - 1]);
            diagonal = row[j];
            row[j] = std::min({changed, row[j] + 1, row[j - 1] + 1});
        }
    }
    return row[b.size()];
}

/** The nearest of the words it is asked about, if it is near enough to be meant. */
class Nearest {
public:
    explicit Nearest(std::string_view word) : word_(word), least_(word.size() / 3 + 1) {}

    void ask(std::string_view known)
    {
        if (word_.size() > LONGEST_WORD || word_.size() > known.size() + least_)
            return;
        const std::size_t apart = distance(word_, known);
        if (apart <= least_ && (nearest_.empty() || apart < least_)) {
            least_ = apart;
            nearest_ = known;
        }
    }

    /** A question to put behind a sentence, or nothing. */
    std::string question() const
    {
        return nearest_.empty() ? "" : "; did you mean " + quoted(nearest_) + "?";
    }

private:
    std::string_view word_;
    std::size_t least_;
    std::string_view nearest_;
};

/** Collects errors, up to a number that stands in proportion to the text. */
class RuleTextErrors {
public:
    RuleTextErrors(std::vector<RuleTextError>* errors, std::size_t textSize)
        : errors_(errors), most_(std::max<std::size_t>(1000, textSize / 16))
    {
        if (errors_ != nullptr)
            errors_->clear();
    }

    std::size_t count() const { return count_; }

    /** Whether anybody asks for more than whether there are errors. */
    bool areAskedFor() const { return errors_ != nullptr; }

    /** Whether nobody will see the sentences that are added from now on. */
    bool areOnlyCounted() const { return errors_ == nullptr || count_ > most_; }

    void add(std::size_t line, std::size_t column, std::string sentence)
    {
        ++count_;
        if (errors_ != nullptr && count_ <= most_ + 1)
            errors_->push_back({line, column, std::move(sentence)});
    }

    void finish()
    {
        if (errors_ != nullptr && count_ > most_ + 1)
            errors_->back().sentence +=
                "; errors behind this one: " + std::to_string(count_ - most_ - 1);
    }

private:
    std::vector<RuleTextError>* errors_;
    std::size_t most_;
    std::size_t count_ = 0;
};

} // namespace FiltersCommon

#endif // FILTER_COMMON_SRC_RULE_TEXT_ERRORS_H
