#include "filter_entries.h"

#include "text.h"

#include <cstddef>
#include <cstdint>
#include <ostream>
#include <string>

using namespace FiltersCommon;

namespace {

/** The name of a number, and nothing for a number that has none. */
template <class Code, std::size_t N>
const char* nameOf(Code code, const char* const (&names)[N])
{
    const auto index = static_cast<std::uint32_t>(code);
    return index < N ? names[index] : "";
}

// A policer of no stage is not written.
constexpr const char* STAGES[] = {"Ingress", "Egress"};
constexpr const char* COLORS[] = {"Red", "Yellow", "Green"};

/** Four fill characters of the stream. */
std::ostream& indent(std::ostream& out)
{
    out.width(4);
    return out << "";
}

void writeMode(std::ostream& out, const policer::Mode& mode)
{
    switch (mode.GetType()) {
    case policer::Mode::SR_TCM:
        out << "SrTcm (CIR: " << mode.GetCir() << " kbits/s, CBS: " << mode.GetCbs()
            << " bytes, EBS: " << mode.GetEbs() << " bytes)";
        break;
    case policer::Mode::TR_TCM:
        out << "TrTcm (CIR: " << mode.GetCir() << " kbits/s, CBS: " << mode.GetCbs()
            << " bytes, PIR: " << mode.GetPir() << " kbits/s, PBS: " << mode.GetPbs() << " bytes)";
        break;
    case policer::Mode::TR_TCM_DS:
        out << "TrTcmDs (CIR: " << mode.GetCir() << " kbits/s, CBS: " << mode.GetCbs()
            << " bytes, EIR: " << mode.GetEir() << " kbits/s, EBS: " << mode.GetEbs() << " bytes)";
        break;
    case policer::Mode::FLOW:
        out << "Flow (CIR: " << mode.GetCir() << " kbits/s, CBS: " << mode.GetCbs() << " bytes)";
        break;
    case policer::Mode::NONE:
        out << "None";
        break;
    }
}

void writePolicerAction(std::ostream& out, const policer::Action& action)
{
    out << "+ " << nameOf(action.GetColor(), COLORS) << " ";
    switch (action.GetType()) {
    case policer::Action::DROP:
        out << "Drop";
        break;
    case policer::Action::SET_PCP:
        out << "Set PCP " << std::to_string(action.GetPcp());
        break;
    case policer::Action::SET_DSCP:
        out << "Set DSCP " << std::to_string(action.GetDscp());
        break;
    }
}

// The identifier, the PCP and the DSCP are decimal whatever the stream's formatting. The rates are
// numbers like any other.
void writePolicer(std::ostream& out, const policer::Policer& policer)
{
    out << "  =Policer=" << std::endl;
    const std::uint32_t id = policer.GetId();
    indent(out) << "Policer Id: "
                << (id == policer::Policer::INVALID_ID ? "Invalid" : std::to_string(id)) << "\n";
    indent(out) << "Stage: " << nameOf(policer.GetStage(), STAGES) << "\n";
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

} // namespace

std::basic_ostream<char>& operator<<(std::basic_ostream<char>& out, const FiltersEntry& entry)
{
    out << "  =FiltersEntry=" << std::endl;
    writeLine(out, "    ID: ", entry.getId());
    writeLine(out, "    Priority: ", entry.getPriority());
    if (entry.getPolicer().GetStage() != policer::STAGE_NONE)
        writePolicer(out, entry.getPolicer());
    if (entry.getCounter().GetType() != COUNTER_TYPE_INVALID)
        out << "  =Counter=" << std::endl << entry.getCounter() << std::endl;
    for (const auto& element : entry.getMatchesRef())
        out << *element.second;
    for (const auto& element : entry.getActionsRef())
        out << *element.second;
    return out;
}
