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

/** Whether the letters are the same but for their case. */
inline bool areAlike(char a, char b)
{
    const bool isCapital = a >= 'A' && a <= 'Z';
    return a == b || (isCapital && a - 'A' + 'a' == b);
}

/**
 * How many letters of @p a have to be changed, added, left out or exchanged with their neighbours
 * to make @p b, which is in small letters; neither is longer than LONGEST_WORD.
 */
inline std::size_t distance(std::string_view a, std::string_view b)
{
    using Row = std::array<std::size_t, LONGEST_WORD + 1>;
    Row rows[3]; // of the letter of a, and of the two before it
    for (std::size_t i = 0; i <= a.size(); ++i) {
        Row& row = rows[i % 3];
        const Row& above = rows[(i + 2) % 3];
        const Row& higher = rows[(i + 1) % 3];
        row[0] = i;
        for (std::size_t j = 1; j <= b.size(); ++j) {
            if (i == 0) {
                row[j] = j;
                continue;
            }
            const std::size_t changed = above[j - 1] + (areAlike(a[i - 1], b[j - 1]) ? 0 : 1);
            row[j] = std::min({changed, above[j] + 1, row[j - 1] + 1});
            if (i > 1 && j > 1 && areAlike(a[i - 1], b[j - 2]) && areAlike(a[i - 2], b[j - 1]))
                row[j] = std::min(row[j], higher[j - 2] + 1);
        }
    }
    return rows[a.size() % 3][b.size()];
}

/** The nearest of the words it is asked about; of several, the first. */
class Nearest {
public:
    explicit Nearest(std::string_view word) : word_(word) {}

    void ask(std::string_view known)
    {
        if (word_.size() > LONGEST_WORD || word_.size() >= known.size() + least_)
            return;
        const std::size_t apart = distance(word_, known);
        if (apart < least_) {
            least_ = apart;
            nearest_ = known;
        }
    }

    /** To be put behind a sentence: a question if the word is near enough to be meant. */
    std::string question() const
    {
        const bool isNear = !nearest_.empty() && least_ <= word_.size() / 3 + 1;
        return isNear ? "; did you mean " + quoted(nearest_) + "?" : "";
    }

    /** The same, or what the nearest word is all the same. */
    std::string hint() const
    {
        const std::string near = question();
        return nearest_.empty() || word_.empty() || !near.empty()
                   ? near
                   : "; the nearest word is " + quoted(nearest_);
    }

private:
    std::string_view word_;
    std::size_t least_ = LONGEST_WORD + 1;
    std::string_view nearest_;
};

/** Collects errors, up to a number that stands in proportion to the text. */
class RuleTextErrors {
public:
    RuleTextErrors(std::vector<RuleTextError>* errors, std::size_t textSize)
        : errors_(errors), most_(1000 + textSize / 16)
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
