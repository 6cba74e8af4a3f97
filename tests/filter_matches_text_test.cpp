#include "named_samples.h"
#include "text_support.h"

#include "filter_matches.pb.h"

#include <gtest/gtest.h>

#include <iomanip>
#include <map>
#include <sstream>
#include <string>

namespace {

using namespace FiltersCommon;
using namespace FiltersCommon::test;

/** The dump of a match: title and type line, and behind them its values. */
std::string dumpOf(const std::string& name, int type, const std::string& values = "")
{
    const std::string title = "    =" + name + "=";
    const std::string typeLine = "      Match Type ID: " + std::to_string(type);
    const bool isVrfId = name == "MatchVrfId";
    const bool isDrop = name == "MatchDrop";
    return (isVrfId ? nl(title) : eol(title)) + (isVrfId || isDrop ? nl(typeLine) : eol(typeLine)) +
           values;
}

std::string portsLines(int number, const std::string& names)
{
    return eol("      Number of ports: " + std::to_string(number)) + eol("      LIMIDs: " + names);
}

std::string l4PortLines(const std::string& port, const std::string& mask)
{
    return eol("      Port: " + port) + eol("      Mask: " + mask);
}

std::string macLines(const std::string& mac, const std::string& mask)
{
    return eol("      MAC: " + mac) + eol("      Mask: " + mask);
}

std::string ipv4Lines(const std::string& ip, const std::string& mask)
{
    return eol("      IP: " + ip) + eol("      Mask: " + mask);
}

std::string ipv6Lines(const std::string& ip, const std::string& mask)
{
    return nl("      IPv6: " + ip) + nl("      Mask: " + mask);
}

const std::string FULL_MAC = "ff:ff:ff:ff:ff:ff";
const std::string FULL_IPV6 = "ffff:ffff:ffff:ffff:ffff:ffff:ffff:ffff";

std::map<std::string, std::string> dumpsByFamily()
{
    return {
        {"MatchIngressPorts",
         dumpOf("MatchIngressPorts", 1, portsLines(2, "\"lag772\" \"eth0/1\" "))},
        {"MatchIngressPorts_none", dumpOf("MatchIngressPorts", 1, portsLines(0, ""))},
        {"MatchIngressPorts_excluded",
         dumpOf("MatchIngressPorts", 1, eol("      Excluded Port Types: \"CPU_PORT\" "))},
        {"MatchIngressPorts_excludedUnnamed",
         dumpOf("MatchIngressPorts", 1, eol("      Excluded Port Types: \"\" \"CPU_PORT\" "))},
        {"MatchEgressPorts",
         dumpOf("MatchEgressPorts", 22, portsLines(2, "\"lag772\" \"eth0/1\" "))},
        {"MatchEgressPorts_none", dumpOf("MatchEgressPorts", 22, portsLines(0, ""))},

        {"MatchExternalVlanId", dumpOf("MatchExternalVlanId", 2, eol("      VLAN IDs: [ 5 300 ]"))},
        {"MatchExternalVlanId_one",
         dumpOf("MatchExternalVlanId", 2, eol("      VLAN IDs: [ 4094 ]"))},
        {"MatchExternalVlanId_none", dumpOf("MatchExternalVlanId", 2, eol("      VLAN IDs: [ ]"))},
        {"MatchInternalVlanId",
         dumpOf("MatchInternalVlanId", 11, eol("      VLAN IDs: [ 10 20 ]"))},
        {"MatchInternalVlanId_one",
         dumpOf("MatchInternalVlanId", 11, eol("      VLAN IDs: [ 65535 ]"))},
        {"MatchInternalVlanId_none", dumpOf("MatchInternalVlanId", 11, eol("      VLAN IDs: [ ]"))},

        {"MatchDstMac", dumpOf("MatchDstMac", 4, macLines("0:1a:2b:0:0:1", FULL_MAC))},
        {"MatchDstMac_masked",
         dumpOf("MatchDstMac", 4, macLines("1:80:c2:0:0:0", "ff:ff:ff:0:0:f"))},
        {"MatchSrcMac", dumpOf("MatchSrcMac", 7, macLines("aa:bb:cc:dd:ee:f", FULL_MAC))},
        {"MatchSrcMac_masked", dumpOf("MatchSrcMac", 7, macLines("2:0:0:0:0:0", "3:0:0:0:0:0"))},

        {"MatchDstL4Port", dumpOf("MatchDstL4Port", 5, l4PortLines("80", "65535"))},
        {"MatchDstL4Port_masked", dumpOf("MatchDstL4Port", 5, l4PortLines("1024", "64512"))},
        {"MatchSrcL4Port", dumpOf("MatchSrcL4Port", 6, l4PortLines("65535", "65535"))},
        {"MatchSrcL4Port_masked", dumpOf("MatchSrcL4Port", 6, l4PortLines("32768", "49152"))},

        {"MatchSrcIPv4", dumpOf("MatchSrcIPv4", 9, ipv4Lines("192.0.2.1", "255.255.255.255"))},
        {"MatchSrcIPv4_masked", dumpOf("MatchSrcIPv4", 9, ipv4Lines("192.0.2.1", "255.255.255.0"))},
        {"MatchDstIPv4", dumpOf("MatchDstIPv4", 10, ipv4Lines("198.51.100.7", "255.255.255.255"))},
        {"MatchDstIPv4_masked",
         dumpOf("MatchDstIPv4", 10, ipv4Lines("203.0.113.128", "255.255.255.128"))},

        {"MatchSrcIPv6", dumpOf("MatchSrcIPv6", 14, ipv6Lines("2001:db8::1", FULL_IPV6))},
        {"MatchDstIPv6", dumpOf("MatchDstIPv6", 15, ipv6Lines("2001:db8:0:1:2:3:4:5", FULL_IPV6))},
        {"MatchDstIPv6_masked",
         dumpOf("MatchDstIPv6", 15, ipv6Lines("2001:db8:1::", "ffff:ffff:ffff::"))},

        {"MatchVirtualPort", dumpOf("MatchVirtualPort", 21, eol("      LIMID: vlan300"))},
        {"MatchSrcPort", dumpOf("MatchSrcPort", 25, eol("      LIMID: cpu1"))},
        {"MatchSrcPort_unnamed", dumpOf("MatchSrcPort", 25, eol("      LIMID: limid-ff008001"))},
    };
}

std::map<std::string, std::string> dumpsOfSingleKinds()
{
    return {
        {"MatchAll", dumpOf("MatchAll", 0, eol("      <no parameters>"))},
        {"MatchTPID", dumpOf("MatchTPID", 3, eol("      TPID: 0x8100"))},
        {"MatchTPID_small", dumpOf("MatchTPID", 3, eol("      TPID: 0xab"))},
        {"MatchL2SrcEntryType",
         dumpOf("MatchL2SrcEntryType", 8, eol("      L2 Src Entry Type: 3"))},
        {"MatchL2SrcEntryType_negative",
         dumpOf("MatchL2SrcEntryType", 8, eol("      L2 Src Entry Type: -1"))},
        {"MatchPcp", dumpOf("MatchPcp", 12, eol("      PCP: 7"))},
        {"MatchPcp_cut", dumpOf("MatchPcp", 12, eol("      PCP: 1"))},
        {"MatchInternalPcp", dumpOf("MatchInternalPcp", 13, eol("      PCP: 5"))},
        {"MatchInternalPcp_cut", dumpOf("MatchInternalPcp", 13, eol("      PCP: 6"))},
        {"MatchVlanUntagged", dumpOf("MatchVlanUntagged", 16, eol("      <no parameters>"))},
        {"MatchIpProtocol", dumpOf("MatchIpProtocol", 17, eol("      Ip Protocol: 6"))},
        {"MatchIpProtocol_letter", dumpOf("MatchIpProtocol", 17, eol("      Ip Protocol: 65"))},
        {"MatchPacketRes", dumpOf("MatchPacketRes", 18, eol("      Pkt Resolution: 4"))},
        {"MatchPacketRes_negative", dumpOf("MatchPacketRes", 18, eol("      Pkt Resolution: -2"))},
        {"MatchMplsTerm", dumpOf("MatchMplsTerm", 19, eol("      Mpls Terminated status: 1"))},
        {"MatchMplsTerm_false",
         dumpOf("MatchMplsTerm", 19, eol("      Mpls Terminated status: 0"))},
        {"MatchToS", dumpOf("MatchToS", 20, eol("      ToS: 41"))},
        {"MatchDSCP", dumpOf("MatchDSCP", 20, eol("      DSCP: 10"))},
        {"MatchDSCP_cut", dumpOf("MatchDSCP", 20, eol("      DSCP: 1"))},
        {"MatchIngressStpState",
         dumpOf("MatchIngressStpState", 23, eol("      IngressStpState: 2"))},
        {"MatchIngressStpState_negative",
         dumpOf("MatchIngressStpState", 23, eol("      IngressStpState: -3"))},
        {"MatchVlanInfo", dumpOf("MatchVlanInfo", 24, eol("      SVC VLAN Type: 7"))},
        {"MatchVlanInfo_large",
         dumpOf("MatchVlanInfo", 24, eol("      SVC VLAN Type: 4294967295"))},
        {"MatchTTL", dumpOf("MatchTTL", 26, eol("      TTL: 64"))},
        {"MatchVrfId", dumpOf("MatchVrfId", 27, nl("      Match VRF ID: 5"))},
        {"MatchVrfId_large", dumpOf("MatchVrfId", 27, nl("      Match VRF ID: 65535"))},
        {"MatchDrop", dumpOf("MatchDrop", 28, nl("      Match Drop: 1"))},
        {"MatchDrop_false", dumpOf("MatchDrop", 28, nl("      Match Drop: 0"))},
        {"MatchCpuPort", dumpOf("MatchCpuPort", 29)},
        {"MatchForwardingType", dumpOf("MatchForwardingType", 30, eol("      Forwarding Type: 1"))},
        {"MatchForwardingType_negative",
         dumpOf("MatchForwardingType", 30, eol("      Forwarding Type: -4"))},
        {"MatchDestinationCpu", dumpOf("MatchDestinationCpu", 31)},
    };
}

/** The dump of each sample by the operator of its own class. */
std::string expectedDump(const std::string& name)
{
    auto dumps = dumpsByFamily();
    dumps.merge(dumpsOfSingleKinds());
    return dumps.at(name);
}

class EveryMatch : public testing::TestWithParam<Sample<Match>> {};

INSTANTIATE_TEST_SUITE_P(Samples, EveryMatch, testing::ValuesIn(matchSamples()), BY_NAME);

TEST_P(EveryMatch, IsDumpedByItsOwnOperator)
{
    MarkedStream out;
    const std::ostream& returned = GetParam().print(out);
    EXPECT_EQ(out.text(), expectedDump(GetParam().name));
    EXPECT_EQ(&returned, &out);
}

TEST_P(EveryMatch, IsDumpedAsItsKindThroughTheBase)
{
    MarkedStream out;
    const std::ostream& returned = out << *GetParam().object;
    const std::map<std::string, std::string> asToS = {
        {"MatchDSCP", dumpOf("MatchToS", 20, eol("      ToS: 40"))},
        {"MatchDSCP_cut", dumpOf("MatchToS", 20, eol("      ToS: 4"))}};
    const auto found = asToS.find(GetParam().name);
    EXPECT_EQ(out.text(), found == asToS.end() ? expectedDump(GetParam().name) : found->second);
    EXPECT_EQ(&returned, &out);
}

TEST_P(EveryMatch, LeavesTheStreamsFormattingAsItWasButForTpid)
{
    std::ostringstream out;
    out << std::boolalpha << std::setfill('*');
    out.precision(3);
    const auto before = out.flags();
    GetParam().print(out);
    const bool isTpid = GetParam().className() == "MatchTPID";
    EXPECT_EQ(out.flags(), isTpid ? (before & ~std::ios::basefield) | std::ios::hex : before);
    EXPECT_EQ(out.fill(), '*');
    EXPECT_EQ(out.precision(), 3);
    EXPECT_EQ(out.width(), 0);
}

// --------------------------------------------------------------------------------- value families

TEST(MatchFamilies, AreDumpedAsTheirValueLinesAlone)
{
    const limid_t port = limId(1, 2, 3, 4);
    EXPECT_EQ(markedDump(MatchPorts(MATCH_INGRESS_PORTS, std::list<limid_t>{port, port})),
              portsLines(2, "\"lag772\" \"lag772\" "));
    EXPECT_EQ(markedDump(MatchPorts(MATCH_INGRESS_PORTS, std::list<port_type_t>{PORT_TYPE_CPU})),
              eol("      Excluded Port Types: \"CPU_PORT\" "));
    EXPECT_EQ(markedDump(MatchLimId(MATCH_SRC_PORT, port)), eol("      LIMID: lag772"));
    EXPECT_EQ(markedDump(MatchL4Port(MATCH_DST_L4_PORT, 80)), l4PortLines("80", "65535"));
    EXPECT_EQ(markedDump(MatchVlanId(MATCH_EXTERNAL_VLAN_ID, {20, 10})),
              eol("      VLAN IDs: [ 10 20 ]"));
    EXPECT_EQ(markedDump(MatchMac(MATCH_DST_MAC, mac("00:1a:2b:00:00:01"))),
              macLines("0:1a:2b:0:0:1", FULL_MAC));
    EXPECT_EQ(markedDump(MatchIPv4(MATCH_SRC_IPV4, ipv4("192.0.2.1"))),
              ipv4Lines("192.0.2.1", "255.255.255.255"));
    EXPECT_EQ(markedDump(MatchIPv6(MATCH_SRC_IPV6, ipv6("::"), ipv6("::1"))),
              ipv6Lines("::", "::1"));
}

TEST(MatchFamilies, AreDumpedWhateverKindTheyClaim)
{
    EXPECT_EQ(markedDump(MatchLimId(static_cast<filtersMatch_t>(99), limId(3, 1, 0, 0))),
              eol("      LIMID: cpu1"));
}

TEST(MatchFamilies, LeaveThePortsOfAListWithExcludedTypesOut)
{
    MatchIngressPorts match(std::list<port_type_t>{PORT_TYPE_CPU});
    MatchPB pb;
    MatchEgressPorts({limId(0, 0, 0, 1)}).convertToMatchPB(&pb);
    match.convertFromMatchPB(&pb);
    ASSERT_EQ(match.getPorts().size(), 1u);
    EXPECT_EQ(markedDump(match), expectedDump("MatchIngressPorts_excluded"));
}

// ----------------------------------------------------------------------- formatting of the stream

std::string hexDump(const Match& match)
{
    MarkedStream out;
    out << std::hex << match;
    return out.text();
}

TEST(MatchDumps, OfATpidLeaveTheStreamHexadecimal)
{
    MarkedStream out;
    out << MatchTPID(0x8100) << 255;
    EXPECT_EQ(out.text(), expectedDump("MatchTPID") + "ff");

    MarkedStream matches;
    matches << MatchTPID(0x8100) << MatchIpProtocol(17);
    EXPECT_EQ(matches.text(), expectedDump("MatchTPID") + eol("    =MatchIpProtocol=") +
                                  eol("      Match Type ID: 11") + eol("      Ip Protocol: 11"));
}

TEST(MatchDumps, WriteTheirNumbersInTheBaseOfTheStream)
{
    EXPECT_EQ(hexDump(MatchVrfId(255)), nl("    =MatchVrfId=") + nl("      Match Type ID: 1b") +
                                            nl("      Match VRF ID: ff"));
    EXPECT_EQ(hexDump(MatchSrcL4Port(80, 0xFC00)),
              dumpOf("MatchSrcL4Port", 6, l4PortLines("50", "fc00")));
    EXPECT_EQ(hexDump(MatchExternalVlanId({10, 4094})),
              dumpOf("MatchExternalVlanId", 2, eol("      VLAN IDs: [ a ffe ]")));
    EXPECT_EQ(hexDump(MatchPcp(7)),
              eol("    =MatchPcp=") + eol("      Match Type ID: c") + eol("      PCP: 7"));
    EXPECT_EQ(hexDump(MatchToS(252)),
              eol("    =MatchToS=") + eol("      Match Type ID: 14") + eol("      ToS: fc"));
    EXPECT_EQ(hexDump(MatchL2SrcEntryType(static_cast<l2SrcEntryType_t>(-1))),
              dumpOf("MatchL2SrcEntryType", 8, eol("      L2 Src Entry Type: ffffffff")));
    EXPECT_EQ(hexDump(MatchIngressPorts(std::list<limid_t>(10, limId(3, 0, 0, 0)))),
              dumpOf("MatchIngressPorts", 1,
                     eol("      Number of ports: a") +
                         eol("      LIMIDs: \"cpu0\" \"cpu0\" \"cpu0\" \"cpu0\" \"cpu0\" "
                             "\"cpu0\" \"cpu0\" \"cpu0\" \"cpu0\" \"cpu0\" ")));
}

TEST(MatchDumps, KeepAddressesAndInterfacesAsTheyAreInAnyBase)
{
    EXPECT_EQ(hexDump(MatchDstIPv6(ipv6("2001:db8::1"), ipv6("ffff::"))),
              eol("    =MatchDstIPv6=") + eol("      Match Type ID: f") +
                  ipv6Lines("2001:db8::1", "ffff::"));
    EXPECT_EQ(hexDump(MatchSrcIPv4(ipv4("192.0.2.1"))),
              dumpOf("MatchSrcIPv4", 9, ipv4Lines("192.0.2.1", "255.255.255.255")));
    EXPECT_EQ(hexDump(MatchVirtualPort(limId(2, 0, 1, 0x2C))), eol("    =MatchVirtualPort=") +
                                                                   eol("      Match Type ID: 15") +
                                                                   eol("      LIMID: vlan300"));
}

TEST(MatchDumps, WriteFlagsAsTheStreamWritesBooleans)
{
    const auto alphabetic = [](const Match& match) {
        std::ostringstream out;
        out << std::boolalpha << match;
        return out.str();
    };
    EXPECT_EQ(alphabetic(MatchMplsTerm(true)), "    =MatchMplsTerm=\n"
                                               "      Match Type ID: 19\n"
                                               "      Mpls Terminated status: true\n");
    EXPECT_EQ(alphabetic(MatchDrop(false)), "    =MatchDrop=\n"
                                            "      Match Type ID: 28\n"
                                            "      Match Drop: false\n");
}

TEST(MatchDumps, ApplyAWidthToTheirTitleAlone)
{
    const auto wide = [](const auto& match) {
        std::ostringstream out;
        out << std::setw(20) << std::setfill('.') << match;
        return out.str();
    };
    EXPECT_EQ(wide(MatchTTL(64)), "......    =MatchTTL=\n"
                                  "      Match Type ID: 26\n"
                                  "      TTL: 64\n");
    // The line end belongs to this title.
    EXPECT_EQ(wide(MatchVrfId(5)), "...    =MatchVrfId=\n"
                                   "      Match Type ID: 27\n"
                                   "      Match VRF ID: 5\n");
}

// -------------------------------------------------------------- objects that lie about their kind

TEST(BareMatches, AreDumpedWithoutValuesAndNotAtAllBeyondTheKinds)
{
#define NAME(kind, Class, Values) #Class,
    const char* const names[] = {FILTERS_COMMON_EACH_MATCH_KIND(NAME)};
#undef NAME
    for (int code = 0; code < 32; ++code) {
        const bool saysSo = code == MATCH_ALL || code == MATCH_VLAN_UNTAGGED;
        EXPECT_EQ(markedDump(Match(static_cast<filtersMatch_t>(code))),
                  dumpOf(names[code], code, saysSo ? eol("      <no parameters>") : ""));
    }
    for (const std::uint32_t code : {32u, 33u, 0x7FFFFFFFu, 0x80000000u, 0xFFFFFFFFu})
        EXPECT_EQ(markedDump(Match(static_cast<filtersMatch_t>(code))), "") << code;
}

TEST(BareMatches, BeyondTheKindsStillGiveTheStreamBack)
{
    std::ostringstream out;
    out << Match(static_cast<filtersMatch_t>(32)) << "behind";
    EXPECT_EQ(out.str(), "behind");
}

/** A class of a caller's own, with the code of a kind. */
class Custom : public Match {
public:
    explicit Custom(filtersMatch_t type) : Match(type) {}
};

TEST(MatchesOfAnotherClass, AreDumpedWithoutValues)
{
    const Custom custom(MATCH_TTL);
    const Match& match = custom;
    EXPECT_EQ(markedDump(match), dumpOf("MatchTTL", 26));

    const Custom withoutValues(MATCH_CPU_PORT);
    const Match& bare = withoutValues;
    EXPECT_EQ(markedDump(bare), dumpOf("MatchCpuPort", 29));
}

TEST(MatchesOfAnotherClass, AreDumpedWithTheirValuesWhereTheyDeriveFromTheClassOfTheKind)
{
    class Derived : public MatchTTL {
    public:
        using MatchTTL::MatchTTL;
    };
    const Derived derived(64);
    const Match& match = derived;
    EXPECT_EQ(markedDump(match), expectedDump("MatchTTL"));
}

} // namespace
