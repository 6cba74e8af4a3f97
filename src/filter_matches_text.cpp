#include "filter_matches.h"

#include "kinds.h"
#include "text.h"

#include <arpa/inet.h>

#include <ostream>

using namespace FiltersCommon;

// ------------------------------------------------------------------------------------ value lines

namespace {

// A base class stands for all kinds that derive from it and have no line of their own here.

void writeValues(std::ostream& out, const MatchPorts& match) { out << match; }
void writeValues(std::ostream& out, const MatchLimId& match) { out << match; }
void writeValues(std::ostream& out, const MatchL4Port& match) { out << match; }
void writeValues(std::ostream& out, const MatchVlanId& match) { out << match; }
void writeValues(std::ostream& out, const MatchMac& match) { out << match; }
void writeValues(std::ostream& out, const MatchIPv4& match) { out << match; }
void writeValues(std::ostream& out, const MatchIPv6& match) { out << match; }

void writeValues(std::ostream& out, const MatchTPID& match)
{
    // The stream deliberately stays hexadecimal: readers of dumps rely on what follows.
    out << "      TPID: 0x" << std::hex << match.getTPID() << std::endl;
}

void writeValues(std::ostream& out, const MatchVrfId& match)
{
    out << "      Match VRF ID: " << match.getVrfId() << "\n";
}

void writeValues(std::ostream& out, const MatchDrop& match)
{
    out << "      Match Drop: " << match.getDropFlag() << "\n";
}

#define FILTERS_COMMON_LINE(Class, label, value)                                                   \
    void writeValues(std::ostream& out, const Class& match)                                        \
    {                                                                                              \
        writeLine(out, "      " label ": ", value);                                                \
    }

FILTERS_COMMON_LINE(MatchL2SrcEntryType, "L2 Src Entry Type", match.getL2SrcEntryType())
FILTERS_COMMON_LINE(MatchPcp, "PCP", match.getPcp())
FILTERS_COMMON_LINE(MatchInternalPcp, "PCP", match.getPcp())
FILTERS_COMMON_LINE(MatchIpProtocol, "Ip Protocol", match.getIpProtocol())
FILTERS_COMMON_LINE(MatchPacketRes, "Pkt Resolution", match.getPktRes())
FILTERS_COMMON_LINE(MatchMplsTerm, "Mpls Terminated status", match.getMplsTerm())
FILTERS_COMMON_LINE(MatchToS, "ToS", match.getToS())
FILTERS_COMMON_LINE(MatchDSCP, "DSCP", match.getDSCP())
FILTERS_COMMON_LINE(MatchTTL, "TTL", match.getTTL())
FILTERS_COMMON_LINE(MatchIngressStpState, "IngressStpState", match.getIngressStpState())
FILTERS_COMMON_LINE(MatchVlanInfo, "SVC VLAN Type", match.getVlanInfo().svcVlanType)
FILTERS_COMMON_LINE(MatchForwardingType, "Forwarding Type", match.getForwardingType())

#undef FILTERS_COMMON_LINE

// ---------------------------------------------------------------------------- title and type line

/** Dumps @p match as a T. The values are left out where @p values, the match as a T, is null. */
template <class T>
std::ostream& writeMatch(std::ostream& out, const Match& match, const T* values)
{
    // These two kinds deliberately do not flush all their lines.
    constexpr bool IS_VRF_ID = std::is_same_v<T, MatchVrfId>;
    constexpr bool IS_DROP = std::is_same_v<T, MatchDrop>;

    if constexpr (IS_VRF_ID)
        out << FILTERS_COMMON_TITLE(MatchVrfId) "\n";
    else
        out << TITLE<T> << std::endl;

    out << "      Match Type ID: " << static_cast<int>(match.getType());
    if constexpr (IS_VRF_ID || IS_DROP)
        out << "\n";
    else
        out << std::endl;

    if constexpr (std::is_same_v<T, MatchAll> || std::is_same_v<T, MatchVlanUntagged>)
        out << "      <no parameters>" << std::endl;
    else if constexpr (!hasNoValues<T>)
        if (values != nullptr)
            writeValues(out, *values);
    return out;
}

void writeAddress(std::ostream& out, const char* label, int family, const void* address)
{
    char text[INET6_ADDRSTRLEN];
    const socklen_t size = family == AF_INET ? INET_ADDRSTRLEN : INET6_ADDRSTRLEN;
    out << label;
    writeConverted(out, inet_ntop(family, address, text, size));
}

} // namespace

// -------------------------------------------------------------------------------------- operators

std::ostream& operator<<(std::ostream& out, const Match& match)
{
    MatchKinds::visit(match.getType(), [&](auto kind) {
        writeMatch(out, match, as<ClassOf<decltype(kind)>>(match));
    });
    return out;
}

#define FILTERS_COMMON_PRINTED(Class)                                                              \
    std::ostream& operator<<(std::ostream& out, const Class& match)                                \
    {                                                                                              \
        return writeMatch(out, match, &match);                                                     \
    }
FILTERS_COMMON_MATCH_CLASSES(FILTERS_COMMON_PRINTED)
FILTERS_COMMON_PRINTED(MatchDSCP)
#undef FILTERS_COMMON_PRINTED

std::ostream& operator<<(std::ostream& out, const MatchPorts& match)
{
    const std::list<port_type_t>& excluded = match.getExcludedPortTypesRef();
    if (excluded.empty()) {
        writePorts(out, match.getPortsRef());
        return out;
    }
    out << "      Excluded Port Types: ";
    for (const port_type_t type : excluded)
        out << "\"" << (type == PORT_TYPE_CPU ? "CPU_PORT" : "") << "\" ";
    return out << std::endl;
}

std::ostream& operator<<(std::ostream& out, const MatchLimId& match)
{
    out << "      LIMID: ";
    writeIntfName(out, match.getLimId());
    return out << std::endl;
}

std::ostream& operator<<(std::ostream& out, const MatchL4Port& match)
{
    writeLine(out, "      Port: ", match.getPort());
    writeLine(out, "      Mask: ", match.getMask());
    return out;
}

std::ostream& operator<<(std::ostream& out, const MatchVlanId& match)
{
    out << "      VLAN IDs: [ ";
    for (const unsigned short id : match.getVlanIdsRef())
        out << id << " ";
    return out << "]" << std::endl;
}

std::ostream& operator<<(std::ostream& out, const MatchMac& match)
{
    out << "      MAC: ";
    writeMac(out, *match.getMac());
    out << std::endl << "      Mask: ";
    writeMac(out, *match.getMask());
    return out << std::endl;
}

std::ostream& operator<<(std::ostream& out, const MatchIPv4& match)
{
    writeAddress(out, "      IP: ", AF_INET, match.getIPv4());
    out << std::endl;
    writeAddress(out, "      Mask: ", AF_INET, match.getIPv4Mask());
    return out << std::endl;
}

std::ostream& operator<<(std::ostream& out, const MatchIPv6& match)
{
    // Deliberately not flushed, unlike IPv4.
    writeAddress(out, "      IPv6: ", AF_INET6, match.getIPv6());
    out << "\n";
    writeAddress(out, "      Mask: ", AF_INET6, match.getIPv6Mask());
    return out << "\n";
}
