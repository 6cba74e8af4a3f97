/**
 * The contents of objects as text for people.
 */
#ifndef FILTER_COMMON_TOOLS_DESCRIPTION_TEXT_H
#define FILTER_COMMON_TOOLS_DESCRIPTION_TEXT_H

#include <filter_description.h>

#include <string>

namespace filterctl {

/** "Port: 1024, Mask: 64512"; lists are in brackets, groups of fields in braces. */
std::string textOf(const FiltersCommon::FiltersDescription& fields);

/** The name of a code, or its number, signed, if it has no name. */
FiltersCommon::FiltersValue valueOf(FiltersCommon::filtersGroupStage_t stage);
FiltersCommon::FiltersValue valueOf(FiltersCommon::filtersGroupType_t type);

/** The same as text. */
std::string nameOf(FiltersCommon::filtersGroupStage_t stage);
std::string nameOf(FiltersCommon::filtersGroupType_t type);

} // namespace filterctl

#endif // FILTER_COMMON_TOOLS_DESCRIPTION_TEXT_H
