/**
 * Writes docs/admissibility.md from the library's own rule tables. scripts/regenerate-docs renews
 * the page; a test compares it with what this program writes.
 */
#include "filter_groups.h"
#include "filter_names.h"

#include <cstdint>
#include <iostream>
#include <map>
#include <set>
#include <string>
#include <vector>

using namespace FiltersCommon;

namespace {

// ---------------------------------------------------------------------------------------- writing

std::string cell(const std::string& text) { return " " + text + " |"; }

std::string mark(bool admitted) { return cell(admitted ? "x" : " "); }

void writeHeader(const std::string& firstColumns, const std::string& what, std::size_t count)
{
    std::string titles = firstColumns;
    for (std::size_t i = 0; i < count; ++i)
        titles += cell(what + std::to_string(i));
    std::string rule;
    for (const char c : titles)
        rule += c == '|' ? "|" : "-";
    std::cout << titles << "\n" << rule << "\n";
}

/** The column of each key of @p table that admits @p code. */
template <class Key, class Code>
std::string marks(const std::map<Key, std::set<Code>>& table, Code code)
{
    std::string cells;
    for (const auto& row : table)
        cells += mark(row.second.count(code) != 0);
    return cells;
}

std::string code(const std::string& text) { return "`" + text + "`"; }

template <class Code>
struct Kind {
    const char* className;
    Code code;
};

template <class Code>
std::string kindCells(const Kind<Code>& kind, const char* name)
{
    return "|" + cell(std::to_string(kind.code)) + cell(code(name)) + cell(code(kind.className));
}

#define FILTERS_COMMON_KIND(kind, Class, Values) {#Class, kind},
const std::vector<Kind<filtersMatch_t>> MATCH_KINDS = {
    FILTERS_COMMON_EACH_MATCH_KIND(FILTERS_COMMON_KIND)};
const std::vector<Kind<filtersAction_t>> ACTION_KINDS = {
    FILTERS_COMMON_EACH_ACTION_KIND(FILTERS_COMMON_KIND)};
#undef FILTERS_COMMON_KIND

// ----------------------------------------------------------------------------------------- tables

/** The family of addresses that a kind brings into an entry. */
const char* familyOf(filtersMatch_t kind)
{
    const auto number = static_cast<std::uint32_t>(kind);
    if (FiltersEntry::ipv4OnlyMatchTypes.count(number) != 0)
        return "IPv4";
    return FiltersEntry::ipv6OnlyMatchTypes.count(number) != 0 ? "IPv6" : " ";
}

void writeMatches()
{
    std::cout << "## Matches by group type\n\n"
                 "An entry may be in a group only if the group's type (columns 0 to 9) admits each "
                 "of its match kinds;\notherwise `FILTERS_ERR_MATCH_NOT_ALLOWED`. Type 0 takes "
                 "entries without matches only. A `MatchDSCP`\ncounts as a `MatchToS`.\n\n"
                 "The column \"entry\" is a rule of entries: IPv4 and IPv6 kinds cannot be in the "
                 "same entry\n(`FILTERS_ERR_INVALID`).\n\n";
    writeHeader("| code | kind | class | entry |", "", FiltersGroup::TypeDescription_.size());
    for (const auto& kind : MATCH_KINDS)
        std::cout << kindCells(kind, filtersMatchName(kind.code)) << cell(familyOf(kind.code))
                  << marks(FiltersGroup::TypeDescription_, kind.code) << "\n";
}

void writeTypes()
{
    std::cout << "\n## Group types by group stage\n\n"
                 "A stage and a type that do not fit each other are refused with "
                 "`FILTERS_ERR_TYPE_NOT_ALLOWED`.\n\n";
    writeHeader("| stage |", "type ", FiltersGroup::TypeDescription_.size());
    for (const auto& [stage, types] : FiltersGroup::StageTypesDescription_) {
        std::cout << "|" << cell(std::to_string(stage));
        for (const auto& row : FiltersGroup::TypeDescription_)
            std::cout << mark(types.count(row.first) != 0);
        std::cout << "\n";
    }
}

void writeActions()
{
    std::cout << "\n## Actions by group stage\n\n"
                 "An entry may be in a group only if the group's stage admits each of its action "
                 "kinds; otherwise\n`FILTERS_ERR_ACTION_NOT_ALLOWED`.\n\n";
    writeHeader("| code | kind | class |", "stage ", FiltersGroup::StageActionsDescription_.size());
    for (const auto& kind : ACTION_KINDS)
        std::cout << kindCells(kind, filtersActionName(kind.code))
                  << marks(FiltersGroup::StageActionsDescription_, kind.code) << "\n";
}

void writePolicers()
{
    std::cout << "\n## Policers by group stage\n\n"
                 "A policer whose stage does not fit is refused with "
                 "`FILTERS_ERR_POLICER_STAGE`. A policer of\n`STAGE_NONE`, which an entry has "
                 "by default, is admitted everywhere.\n\n";
    const FiltersGroup anyGroup(0);
    writeHeader("| policer stage |", "stage ", FiltersGroup::StageActionsDescription_.size());
    for (const auto stage : {policer::STAGE_INGRESS, policer::STAGE_EGRESS, policer::STAGE_NONE}) {
        const policer::Policer policer(0, stage, policer::Mode(), {});
        std::cout << "|" << cell(code(filtersPolicerStageName(stage)));
        for (const auto& row : FiltersGroup::StageActionsDescription_)
            std::cout << mark(anyGroup.groupPolicerValidation(policer, row.first) == FILTERS_OK);
        std::cout << "\n";
    }
}

} // namespace

int main()
{
    std::cout << "<!-- Written by scripts/regenerate-docs; not edited by hand. -->\n\n"
                 "# What a group admits\n\n"
                 "In code, these tables are `FiltersGroup::TypeDescription_`, "
                 "`StageTypesDescription_`,\n`StageActionsDescription_` and "
                 "`groupPolicerValidation`.\n\n";
    writeMatches();
    writeTypes();
    writeActions();
    writePolicers();
}
