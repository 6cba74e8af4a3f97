#include "filter_entries.h"

#include "policer_tables.h"
#include "wire/filter_entries_rows.h"

#include <cstddef>
#include <cstdint>
#include <ostream>
#include <string>

using namespace FiltersCommon;

namespace {

/** The name of a code, or an empty string if it has none. */
template <class Code, std::size_t N>
const char* nameOf(const PolicerCode (&codes)[N], Code code)
{
    const char* name = nameIn(codes, code);
    return name == nullptr ? "" : name;
}

/** Writes four of the stream's fill characters. */
std::ostream& indent(std::ostream& out)
{
    out.width(4);
    return out << "";
}

/** Writes "Flow (CIR: 100 kbits/s, CBS: 200 bytes)", or nothing for an unknown mode. */
void writeMode(std::ostream& out, const policer::Mode& mode)
{
    const PolicerMode* row = findRow(POLICER_MODES, mode.GetType());
    if (row == nullptr)
        return;
    out << row->name;
    const char* separator = " (";
    for (const PolicerRate& rate : row->rates)
        if (rate.name != nullptr) {
            out << separator << rate.name << ": " << rate.of(mode) << rate.unit;
            separator = ", ";
        }
    out << (row->rates.front().name == nullptr ? "" : ")");
}

void writePolicerAction(std::ostream& out, const policer::Action& action)
{
    out << "+ " << nameOf(POLICER_COLORS, action.GetColor()) << " "
        << nameOf(POLICER_ACTIONS, action.GetType());
    if (action.GetType() == policer::Action::SET_PCP)
        out << " " << std::to_string(action.GetPcp());
    else if (action.GetType() == policer::Action::SET_DSCP)
        out << " " << std::to_string(action.GetDscp());
}

// The identifier, PCP and DSCP are always decimal. The rates follow the stream's formatting.
void writePolicer(std::ostream& out, const policer::Policer& policer)
{
    out << "  =Policer=" << std::endl;
    const std::uint32_t id = policer.GetId();
    indent(out) << "Policer Id: "
                << (id == policer::Policer::INVALID_ID ? "Invalid" : std::to_string(id)) << "\n";
    indent(out) << "Stage: " << nameOf(POLICER_STAGES, policer.GetStage()) << "\n";
    indent(out) << "Mode: ";
    writeMode(out, policer.GetMode());
    out << "\n";
    indent(out) << "Actions:";
    for (const policer::Action& action : policer.GetActions()) {
        out << "\n";
        writePolicerAction(indent(out), action);
    }
    out << std::endl;
}

void writeCounter(std::ostream& out, const Counter& counter)
{
    out << "  =Counter=" << std::endl;
    out.width(4);
    out << counter << std::endl;
}

} // namespace

std::basic_ostream<char>& operator<<(std::basic_ostream<char>& out, const FiltersEntry& entry)
{
    out << "  =FiltersEntry=" << std::endl;
    EntryRows::of(&entry).dump(out, entry);
    if (entry.getPolicer().GetStage() != policer::STAGE_NONE)
        writePolicer(out, entry.getPolicer());
    if (entry.getCounter().GetType() != COUNTER_TYPE_INVALID)
        writeCounter(out, entry.getCounter());
    for (const auto& element : entry.getMatchesRef())
        out << *element.second;
    for (const auto& element : entry.getActionsRef())
        out << *element.second;
    return out;
}
