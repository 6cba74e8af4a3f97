/**
 * What an object holds as labelled, typed values, for programs that show rules to people.
 *
 * The labels are those of the text dumps. Numbers are decimal and enumerators without a name are
 * numbers, signed; addresses and interfaces are the texts that dumps show.
 *
 * When memory runs out std::bad_alloc is raised.
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
    /** A number, a truth, a text (a name or an address), a list, or fields that belong together. */
    std::variant<std::int64_t, bool, std::string, std::vector<FiltersValue>, FiltersDescription>
        value;
};

struct FiltersField {
    std::string label;
    FiltersValue value;
};

/**
 * What the object of a match or action kind holds: nothing for kinds without values, for unknown
 * kinds, and for an object that is not of the class of its kind. A MatchDSCP is described as the
 * MatchToS that it is everywhere but in a dump by its own class. Of the ports and the excluded port
 * types of a match, a list that is empty is left out if the other is not.
 */
FiltersDescription describe(const Match& match);
FiltersDescription describe(const Action& action);

FiltersDescription describe(const Counter& counter);

/** All of a policer, whatever its stage; of the rates those that its mode uses or that are not 0. */
FiltersDescription describe(const policer::Policer& policer);

} // namespace FiltersCommon

#pragma GCC visibility pop

#endif // FILTER_COMMON_FILTER_DESCRIPTION_H
