#include "filter_groups.h"

#include <ostream>

std::ostream& operator<<(std::ostream& out, const FiltersCommon::FiltersGroup& group)
{
    out << "=FiltersGroup="
        << "\n";
    out << "  ID: " << group.getId() << "\n";
    out << "  Priority: " << group.getPriority() << "\n";
    out << "  Stage: " << static_cast<int>(group.getStage()) << "\n";
    out << "  Type: " << static_cast<int>(group.getType()) << "\n";
    for (const auto& element : group.getEntriesRef())
        out << element.second;
    return out;
}
