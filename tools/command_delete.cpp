#include "commands.h"
#include "rule_lines.h"

#include <set>
#include <string>

namespace filterctl {

using namespace FiltersCommon;

namespace {

std::set<filtersEntryId_t> idsOf(const CommandLine& line)
{
    std::set<filtersEntryId_t> ids;
    for (auto operand = line.operands.begin() + 1; operand != line.operands.end(); ++operand) {
        const auto id = numberOf<filtersEntryId_t>(*operand);
        if (!id)
            throw UsageError("an ID is a number from 0 to 65535, which '" + *operand + "' is not");
        ids.insert(*id);
    }
    return ids;
}

int deleteEntries(const CommandLine& line)
{
    const std::set<filtersEntryId_t> ids = idsOf(line);
    const std::string& name = line.operands.front();
    Input input = readChangeable(name, line.input);
    std::vector<Problem> missing;
    for (const filtersEntryId_t id : ids)
        if (input.group->removeEntry(id) != FILTERS_OK)
            missing.push_back({0, 0, "there is no entry " + std::to_string(id)});
    if (!missing.empty())
        throw Refused(name, missing);
    const bool isText = input.form == Form::RULES;
    writeChanged(input, *input.group, isText ? withoutEntries(input.text, ids) : "");
    return DONE;
}

constexpr char DESCRIPTION[] =
    "Deletes the entries with these identifiers from FILE, which holds the bytes of a group or\n"
    "rule text and is replaced in one step, in its own form. The other entries keep their\n"
    "identifiers, and in rule text what is not touched stays as it is. If there is no entry with\n"
    "one of the identifiers, nothing is deleted.\n";

constexpr char EXAMPLES[] = "  filterctl delete office.txt 20\n"
                            "  filterctl delete office.group 7 8 9\n";

} // namespace

const Command DELETE = {"delete",
                        "FILE ID...",
                        "delete entries from a file",
                        {&FROM_OPTION, &EMPTY_OPTION, &HELP_OPTION},
                        2,
                        ANY_NUMBER,
                        "a file and identifiers of entries",
                        deleteEntries,
                        DESCRIPTION,
                        EXAMPLES};

} // namespace filterctl
