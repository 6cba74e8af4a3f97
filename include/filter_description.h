/**
 * The contents of an object as labelled, typed values, for programs that show rules to people.
 *
 * Labels are those of the text dumps. A code without a name is a number, signed if its
 * enumeration is; addresses and interfaces are the texts shown in dumps.
 *
 * If memory runs out, std::bad_alloc is thrown.
 */
#ifndef FILTER_COMMON_FILTER_DESCRIPTION_H
#define FILTER_COMMON_FILTER_DESCRIPTION_H

#include "filter_actions.h"
#include "filter_counter.h"
#include "filter_matches.h"

#include <policer_common.h>

#include <cstdint>
#include <string>
#include <variant>
#include <vector>

#pragma GCC visibility push(default)

namespace FiltersCommon {

struct FiltersField;

/** The fields of one object, in the order of its dump. */
using FiltersDescription = std::vector<FiltersField>;

struct FiltersValue {
    /** A number, a boolean, a text (a name or an address), a list, or a group of fields. */
    std::variant<std::int64_t, bool, std::string, std::vector<FiltersValue>, FiltersDescription>
        value;
};

struct FiltersField {
    std::string label;
    FiltersValue value;
};

/**
 * Describes a match or action. Empty for kinds without values, for unknown kinds, and for an object
 * that is not of its kind's class. A MatchDSCP is described as a MatchToS, as it is everywhere but
 * in a dump by its own class. Of a match's ports and excluded port types, an empty list is left out
 * if the other is not empty.
 */
FiltersDescription describe(const Match& match);
FiltersDescription describe(const Action& action);

FiltersDescription describe(const Counter& counter);

/** The whole policer, whatever its stage, but only rates that its mode uses or that are not 0. */
FiltersDescription describe(const policer::Policer& policer);

} // namespace FiltersCommon

#pragma GCC visibility pop

#endif // FILTER_COMMON_FILTER_DESCRIPTION_H
