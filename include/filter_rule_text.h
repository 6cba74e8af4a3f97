/**
 * Rules as people write them: one rule a line.
 *
 *     # Guests may resolve names; nothing else leaves the guest network.
 *     group 7 priority=0 stage=2 type=3
 *     10 priority=200 src_ipv4=10.20.0.0/16 ip_protocol=udp dst_l4_port=53 then permit
 *     20 priority=100 src_ipv4=10.20.0.0/16 then deny
 *
 * What is written for a group is read back as an equal group with the same bytes, whatever the
 * entries hold; what is read and written again is in canonical form, and stays as it is. Only a
 * group that does not admit its own entries, because it has read another stage or type since, is
 * refused when it is read back.
 */
#ifndef FILTER_COMMON_FILTER_RULE_TEXT_H
#define FILTER_COMMON_FILTER_RULE_TEXT_H

#include "filter_groups.h"

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#pragma GCC visibility push(default)

namespace FiltersCommon {

/** What is wrong with a text, and where. */
struct RuleTextError {
    std::size_t line;   /**< counted from 1 */
    std::size_t column; /**< in bytes, counted from 1: where the word begins */
    /** In English, without a full stop at the end. Bytes that cannot be printed are escaped. */
    std::string sentence;
};

/** One line, without an end of line. */
std::string toRuleText(const FiltersEntry& entry);

/** A header and a line for each entry, each with an end of line. */
std::string toRuleText(const FiltersGroup& group);

/**
 * The group that the text describes; none if anything in it is wrong, as a rule left out would be a
 * rule unlike the others. Ranges may make a group much larger than its text: one of VLAN identifiers
 * holds each of them, and two of ports make up to 900 entries of a line.
 * @param errors gets everything that is wrong, in the order of the text; what it held before goes.
 * Of a text with more errors than one for each 16 bytes and a thousand, the rest is only counted,
 * in the last error.
 */
std::optional<FiltersGroup> groupFromRuleText(std::string_view text,
                                              std::vector<RuleTextError>* errors = nullptr);

} // namespace FiltersCommon

#pragma GCC visibility pop

#endif // FILTER_COMMON_FILTER_RULE_TEXT_H
