#include "kind_codes.h"
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

/** The dump of a match: the title, the line of the type, and the values. */
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

/** The dump of a sample by the operator of its own class. */
std::string expectedDump(const Sample<Match>& sample)
{
    return dumpOf(sample.className(), sample.expected.code, sample.expected.valueLines);
}

std::string expectedDump(const std::string& name)
{
    return expectedDump(sampleOf(matchSamples(), name));
}

class EveryMatch : public testing::TestWithParam<Sample<Match>> {};

INSTANTIATE_TEST_SUITE_P(Samples, EveryMatch, testing::ValuesIn(matchSamples()), BY_NAME);

TEST_P(EveryMatch, IsDumpedByItsOwnOperator)
{
    MarkedStream out;
    const std::ostream& returned = GetParam().print(out);
    EXPECT_EQ(out.text(), expectedDump(GetParam()));
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
    EXPECT_EQ(out.text(), found == asToS.end() ? expectedDump(GetParam()) : found->second);
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
    EXPECT_EQ(markedDump(MatchLimId(UNKNOWN_MATCH, limId(3, 1, 0, 0))), eol("      LIMID: cpu1"));
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
    // The line end is part of this title.
    EXPECT_EQ(wide(MatchVrfId(5)), "...    =MatchVrfId=\n"
                                   "      Match Type ID: 27\n"
                                   "      Match VRF ID: 5\n");
}

// -------------------------------------------------------------- objects that lie about their kind

TEST(BareMatches, AreDumpedWithoutValuesAndNotAtAllBeyondTheKinds)
{
    const std::string none = eol("      <no parameters>");
    for (const Sample<Match>& sample : matchSamples()) {
        const auto& [code, fields, valueLines, description] = sample.expected;
        if (sample.className() != "MatchDSCP") { // its kind is that of a MatchToS
            EXPECT_EQ(markedDump(Match(static_cast<filtersMatch_t>(code))),
                      dumpOf(sample.className(), code, valueLines == none ? none : ""));
        }
    }
    for (const std::uint32_t code : unknownCodes(MATCH_KINDS))
        EXPECT_EQ(markedDump(Match(static_cast<filtersMatch_t>(code))), "") << code;
}

TEST(BareMatches, BeyondTheKindsStillGiveTheStreamBack)
{
    std::ostringstream out;
    out << Match(UNKNOWN_MATCH) << "behind";
    EXPECT_EQ(out.str(), "behind");
}

/** A caller's class with the code of a kind. */
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
