#include "filter_groups.h"

#include "wire/filter_groups_rows.h"

#include <ostream>

std::ostream& operator<<(std::ostream& out, const FiltersCommon::FiltersGroup& group)
{
    out << "=FiltersGroup="
        << "\n";
    FiltersCommon::GroupRows::of(&group).dump(out, group);
    for (const auto& element : group.getEntriesRef())
        out << element.second;
    return out;
}
