/**
 * Policers in rule text: a list of names and values, without those that are as in policer::Policer.
 */
#ifndef FILTER_COMMON_SRC_RULE_POLICERS_H
#define FILTER_COMMON_SRC_RULE_POLICERS_H

#include <policer_common.h>

#include <optional>
#include <string>
#include <string_view>

namespace FiltersCommon {

/** Writes the list behind its "=". */
void putPolicer(std::string& out, const policer::Policer& policer);

/**
 * The policer that the text describes, or none.
 * @param expected gets what was expected where there is none.
 */
std::optional<policer::Policer> readPolicer(std::string_view text, std::string& expected);

} // namespace FiltersCommon

#endif // FILTER_COMMON_SRC_RULE_POLICERS_H
