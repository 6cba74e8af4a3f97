/**
 * What objects hold, as labels and values for people: those of the text dumps.
 */
#ifndef FILTER_COMMON_TOOLS_FIELDS_H
#define FILTER_COMMON_TOOLS_FIELDS_H

#include <filter_groups.h>

#include <string>
#include <vector>

namespace filterctl {

struct Field {
    std::string label;
    std::string value;
};

using Fields = std::vector<Field>;

Fields fieldsOf(const FiltersCommon::Match& match);
Fields fieldsOf(const FiltersCommon::Action& action);
Fields fieldsOf(const FiltersCommon::Counter& counter);
/** None for a policer of stage none, which entries without a policer hold. */
Fields fieldsOf(const policer::Policer& policer);

/** "Port: 1024, Mask: 64512" */
std::string textOf(const Fields& fields);

/** The name of a code, or its number as text dumps have it. */
std::string nameOf(FiltersCommon::filtersGroupStage_t stage);
std::string nameOf(FiltersCommon::filtersGroupType_t type);

} // namespace filterctl

#endif // FILTER_COMMON_TOOLS_FIELDS_H
