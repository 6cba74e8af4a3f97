#include "filter_actions.h"

#include "kinds.h"
#include "text.h"

#include <ostream>

using namespace FiltersCommon;

// --------------------------------------------------------------------------------- parameter part

namespace {

void writeValues(std::ostream& out, const ActionBlockEgressPorts& action)
{
    out << static_cast<const ActionPorts&>(action) << std::endl;
}

void writeValues(std::ostream& out, const ActionCopyToCpuCancel& action)
{
    out << "      Cp2CPU Cancel type: ";
    switch (action.getCancelType()) {
    case COPY_TO_CPU_CANCEL:
        out << "COPY_TO_CPU_CANCEL";
        break;
    case SWITCH_TO_CPU_CANCEL:
        out << "SWITCH_TO_CPU_CANCEL";
        break;
    }
    out << std::endl;
}

void writeValues(std::ostream& out, const ActionRedirect& action)
{
    for (const limid_t& port : action.getRedirectPortsRef()) {
        out << "      \"";
        writeIntfName(out, port);
        out << "\" ";
    }
    out << std::endl;
}

void writeReplacedMac(std::ostream& out, const ether_addr& mac)
{
    out << "      Replace MAC: ";
    writeMac(out, mac);
    out << std::endl;
}

void writeValues(std::ostream& out, const ActionReplaceDstMac& action)
{
    writeReplacedMac(out, action.getReplaceDstMac());
}

void writeValues(std::ostream& out, const ActionReplaceSrcMac& action)
{
    writeReplacedMac(out, action.getReplaceSrcMac());
}

#define FILTERS_COMMON_LINE(Class, label, value)                                                   \
    void writeValues(std::ostream& out, const Class& action)                                       \
    {                                                                                              \
        writeLine(out, "      " label ": ", value);                                                \
    }

FILTERS_COMMON_LINE(ActionSetPcp, "PCP", action.getPcp())
FILTERS_COMMON_LINE(ActionSetPcpAndQueue, "PCP_AND_QUEUE", action.getPcpAndQueue())
FILTERS_COMMON_LINE(ActionSetInnerPcp, "Inner PCP", action.getInnerPcp())
FILTERS_COMMON_LINE(ActionSetDSCP, "DSCP", action.getDSCP())
FILTERS_COMMON_LINE(ActionMapToCosQueue, "CoS Queue", action.getCosQueue())
FILTERS_COMMON_LINE(ActionMapToCpuCosQueue, "CPU CoS Queue", action.getCpuCosQueue())
FILTERS_COMMON_LINE(ActionL3Switch, "L3 Destination ID", action.getL3DestinationId())

#undef FILTERS_COMMON_LINE

// ---------------------------------------------------------------------------- title and type line

/** Dumps @p action as a T; without parameters where @p values, the action as a T, is null. */
template <class T>
std::ostream& writeAction(std::ostream& out, const Action& action, const T* values)
{
    out << TITLE<T> << std::endl;
    out << "      Action Type ID: " << static_cast<int>(action.getType()) << std::endl;
    if constexpr (hasNoValues<T>)
        out << "      <no parameters>" << std::endl;
    else if (values != nullptr)
        writeValues(out, *values);
    return out;
}

} // namespace

// -------------------------------------------------------------------------------------- operators

std::ostream& operator<<(std::ostream& out, const Action& action)
{
    ActionKinds::visit(action.getType(), [&](auto kind) {
        writeAction(out, action, as<ClassOf<decltype(kind)>>(action));
    });
    return out;
}

#define FILTERS_COMMON_PRINTED(Class)                                                              \
    std::ostream& operator<<(std::ostream& out, const Class& action)                               \
    {                                                                                              \
        return writeAction(out, action, &action);                                                  \
    }
FILTERS_COMMON_ACTION_CLASSES(FILTERS_COMMON_PRINTED)
#undef FILTERS_COMMON_PRINTED

std::ostream& operator<<(std::ostream& out, const ActionPorts& action)
{
    writePorts(out, action.getPortsRef());
    return out;
}
