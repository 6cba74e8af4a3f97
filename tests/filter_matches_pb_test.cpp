#include "kind_codes.h"
#include "named_samples.h"
#include "wire_support.h"

#include <gtest/gtest.h>

#include <set>
#include <string>
#include <typeinfo>

namespace {

using namespace FiltersCommon;
using namespace FiltersCommon::test;

std::string macFields(const std::string& type, const std::string& mac, const std::string& mask)
{
    return "type_: " + type + " mac_: " + mac + " mac_mask_: " + mask;
}

std::string ipv4Fields(const std::string& type, const std::string& ip, const std::string& mask)
{
    return "type_: " + type + " ipv4_: " + ip + " ipv4_mask_: " + mask;
}

std::string ipv6Fields(const std::string& type, const std::string& ip, const std::string& mask)
{
    return "type_: " + type + " ipv6_: " + ip + " ipv6_mask_: " + mask;
}

class EveryMatch : public testing::TestWithParam<Sample<Match>> {};

INSTANTIATE_TEST_SUITE_P(Samples, EveryMatch, testing::ValuesIn(matchSamples()), BY_NAME);

TEST_P(EveryMatch, WritesExactlyItsFields)
{
    EXPECT_TRUE(isMessage(written(*GetParam().object), GetParam().message()));
}

TEST_P(EveryMatch, IsRebuiltByTheEntryAsTheClassOfItsKind)
{
    const Match& match = *GetParam().object;
    FiltersEntryPB pb;
    match.convertToMatchPB(pb.add_matches_());
    FiltersEntry entry;
    entry.convertFromFiltersEntryPB(&pb);

    ASSERT_EQ(entry.getMatchesRef().size(), 1u);
    const Match& rebuilt = *entry.getMatchesRef().find(match.getType())->second;
    EXPECT_TRUE(rebuilt == match);
    EXPECT_EQ(typeid(rebuilt) == typeid(match), typeid(match) != typeid(MatchDSCP));
}

TEST(MatchSamples, NameEveryClass)
{
    const std::set<std::string> named = classesOf(matchSamples());
    for (const std::string& className : matchClasses())
        EXPECT_EQ(named.count(className), 1u) << "named_samples.cpp lacks " << className;
    EXPECT_EQ(named.size(), matchClasses().size());
}

void expectReadings(const std::vector<Reading>& readings)
{
    test::expectReadings(matchSamples(), readings);
}

TEST(MatchMessages, ReadAMissingFieldAsZero)
{
    constexpr char NO_MAC[] = R"("\0\0\0\0\0\0")";
    constexpr char NO_IPV4[] = R"("\0\0\0\0")";
    constexpr char NO_IPV6[] = R"("\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0")";
    expectReadings({
        {"MatchExternalVlanId", "type_: 0", "type_: 2"},
        {"MatchTPID", "type_: 0", "type_: 3 tpid_: 0"},
        {"MatchDstMac", "type_: 0", macFields("4", NO_MAC, NO_MAC)},
        {"MatchDstL4Port", "type_: 0", "type_: 5 l4port_: 0 l4port_mask_: 0"},
        {"MatchSrcL4Port", "type_: 0", "type_: 6 l4port_: 0 l4port_mask_: 0"},
        {"MatchSrcMac", "type_: 0", macFields("7", NO_MAC, NO_MAC)},
        {"MatchL2SrcEntryType", "type_: 0", "type_: 8 l2_src_: 0"},
        {"MatchSrcIPv4", "type_: 0", ipv4Fields("9", NO_IPV4, NO_IPV4)},
        {"MatchDstIPv4", "type_: 0", ipv4Fields("10", NO_IPV4, NO_IPV4)},
        {"MatchInternalVlanId", "type_: 0", "type_: 11"},
        {"MatchPcp", "type_: 0", "type_: 12 pcp_: 0"},
        {"MatchInternalPcp", "type_: 0", "type_: 13 pcp_: 0"},
        {"MatchSrcIPv6", "type_: 0", ipv6Fields("14", NO_IPV6, NO_IPV6)},
        {"MatchDstIPv6", "type_: 0", ipv6Fields("15", NO_IPV6, NO_IPV6)},
        {"MatchIpProtocol", "type_: 0", "type_: 17 ipprotocol_: 0"},
        {"MatchPacketRes", "type_: 0", "type_: 18 packet_resolution_: 0"},
        {"MatchMplsTerm", "type_: 0", "type_: 19 mpls_terminated_: false"},
        {"MatchToS", "type_: 0", "type_: 20 tos_: 0"},
        {"MatchDSCP", "type_: 0", "type_: 20 tos_: 0"},
        {"MatchVirtualPort", "type_: 0", "type_: 21 limid_: 0"},
        {"MatchIngressStpState", "type_: 0", "type_: 23 ingress_stp_state_: 0"},
        {"MatchVlanInfo", "type_: 0", "type_: 24 vlan_info_svc_vlan_type_: 0"},
        {"MatchSrcPort", "type_: 0", "type_: 25 limid_: 0"},
        {"MatchTTL", "type_: 0", "type_: 26 ttl_: 0"},
        {"MatchVrfId", "type_: 0", "type_: 27 vrf_id_: 0"},
        {"MatchDrop", "type_: 0", "type_: 28 drop_flag_: false"},
        {"MatchForwardingType", "type_: 0", "type_: 30 fwd_type_: 0"},
    });
}

TEST(MatchMessages, CutNumbersToTheWidthOfTheMember)
{
    expectReadings({
        {"MatchExternalVlanId", "vlan_id_: [0x1000a, 0xffff0009]", "type_: 2 vlan_id_: [9, 10]"},
        {"MatchTPID", "tpid_: 0x18100", "type_: 3 tpid_: 0x8100"},
        {"MatchDstL4Port", "l4port_: 0x10050 l4port_mask_: 0xffff00f0",
         "type_: 5 l4port_: 0x50 l4port_mask_: 0xf0"},
        {"MatchSrcL4Port", "l4port_: 65536 l4port_mask_: 65537",
         "type_: 6 l4port_: 0 l4port_mask_: 1"},
        {"MatchInternalVlanId", "vlan_id_: 0x1ffff", "type_: 11 vlan_id_: 0xffff"},
        {"MatchPcp", "pcp_: 0x1ff", "type_: 12 pcp_: 0xff"},
        {"MatchInternalPcp", "pcp_: 260", "type_: 13 pcp_: 4"},
        {"MatchIpProtocol", "ipprotocol_: 0xffffff06", "type_: 17 ipprotocol_: 6"},
        {"MatchToS", "tos_: 0x1fd", "type_: 20 tos_: 0xfd"},
        {"MatchDSCP", "tos_: 0x1fd", "type_: 20 tos_: 0xfd"},
        {"MatchTTL", "ttl_: 256", "type_: 26 ttl_: 0"},
        {"MatchVrfId", "vrf_id_: 0x12345", "type_: 27 vrf_id_: 0x2345"},
    });
}

TEST(MatchMessages, KeepAll32BitsOfTheHardwaresNumbersAndOfInterfaces)
{
    expectReadings({
        {"MatchL2SrcEntryType", "l2_src_: 0xfedcba98", "type_: 8 l2_src_: 0xfedcba98"},
        {"MatchPacketRes", "packet_resolution_: 0xfedcba98",
         "type_: 18 packet_resolution_: 0xfedcba98"},
        {"MatchVirtualPort", "limid_: 0xfedcba98", "type_: 21 limid_: 0xfedcba98"},
        {"MatchIngressStpState", "ingress_stp_state_: 0xfedcba98",
         "type_: 23 ingress_stp_state_: 0xfedcba98"},
        {"MatchVlanInfo", "vlan_info_svc_vlan_type_: 0xfedcba98",
         "type_: 24 vlan_info_svc_vlan_type_: 0xfedcba98"},
        {"MatchSrcPort", "limid_: 0xfedcba98", "type_: 25 limid_: 0xfedcba98"},
        {"MatchForwardingType", "fwd_type_: 0xfedcba98", "type_: 30 fwd_type_: 0xfedcba98"},
        {"MatchIngressPorts_excluded", "excluded_port_types_: 0xfedcba98",
         "type_: 1 excluded_port_types_: [0, 0xfedcba98]"},
    });
}

TEST(MatchMessages, FillShortBytesUpWithZerosAndCutLongOnes)
{
    expectReadings({
        {"MatchDstMac", R"(mac_: "\x01\x02" mac_mask_: "\x11\x12\x13\x14\x15\x16\x17")",
         R"(type_: 4 mac_: "\x01\x02\0\0\0\0" mac_mask_: "\x11\x12\x13\x14\x15\x16")"},
        {"MatchSrcMac", R"(mac_: "\x01\x02\x03\x04\x05\x06\x07\x08" mac_mask_: "\x11")",
         R"(type_: 7 mac_: "\x01\x02\x03\x04\x05\x06" mac_mask_: "\x11\0\0\0\0\0")"},
        {"MatchSrcIPv4", R"(ipv4_: "\x01\x02\x03" ipv4_mask_: "\x11\x12\x13\x14\x15")",
         R"(type_: 9 ipv4_: "\x01\x02\x03\0" ipv4_mask_: "\x11\x12\x13\x14")"},
        {"MatchDstIPv4", R"(ipv4_: "\x01\x02\x03\x04\x05\x06" ipv4_mask_: "")",
         R"(type_: 10 ipv4_: "\x01\x02\x03\x04" ipv4_mask_: "\0\0\0\0")"},
        {"MatchSrcIPv6", R"(ipv6_: "123456789abcdef" ipv6_mask_: "0123456789abcdefg")",
         R"(type_: 14 ipv6_: "123456789abcdef\0" ipv6_mask_: "0123456789abcdef")"},
        {"MatchDstIPv6", R"(ipv6_: "0123456789abcdefghijk" ipv6_mask_: "0123")",
         R"(type_: 15 ipv6_: "0123456789abcdef" ipv6_mask_: "0123\0\0\0\0\0\0\0\0\0\0\0\0")"},
    });
}

TEST(MatchMessages, TakeTheMaskAsItStandsWithoutTheDefaultOfTheConstructor)
{
    expectReadings({{"MatchSrcL4Port", "l4port_: 80", "type_: 6 l4port_: 80 l4port_mask_: 0"}});
}

TEST(MatchMessages, NeverChangeTheKindByReading)
{
    for (const Sample<Match>& sample : matchSamples()) {
        const std::unique_ptr<Match> match = sample.copy();
        const MatchPB other = message<MatchPB>("type_: 77");
        match->convertFromMatchPB(&other);
        EXPECT_EQ(match->getType(), sample.object->getType()) << sample.name;
    }
}

TEST(MatchMessages, OverwriteTheValuesOfAKindThatHoldsNoPortList)
{
    expectOverwritten(matchSamples(), {"MatchIngressPorts", "MatchEgressPorts"});
}

TEST(MatchMessages, KeepAPcpOf9ThatTheConstructorWouldCut)
{
    const MatchPB pb = message<MatchPB>("type_: 12 pcp_: 9");
    MatchPcp external(0);
    external.convertFromMatchPB(&pb);
    EXPECT_EQ(external.getPcp(), 9);
    MatchInternalPcp internal(0);
    internal.convertFromMatchPB(&pb);
    EXPECT_EQ(internal.getPcp(), 9);
    EXPECT_EQ(MatchPcp(9).getPcp(), 1);
}

TEST(MatchMessages, TurnADscpIntoAToSOfTheSameByte)
{
    const MatchDSCP dscp(10);
    EXPECT_TRUE(isMessage(written(dscp), "type_: 20 tos_: 40"));

    FiltersEntry entry;
    entry.setMatch(dscp);
    const FiltersEntry copy = rebuilt(entry);
    const Match& match = *copy.getMatchesRef().find(MATCH_TOS)->second;
    ASSERT_EQ(typeid(match), typeid(MatchToS));
    EXPECT_EQ(static_cast<const MatchToS&>(match).getToS(), 40);
    EXPECT_TRUE(match == dscp);
}

TEST(MatchMessages, GiveADscpAllEightBitsOfTheByte)
{
    const MatchPB pb = message<MatchPB>("type_: 20 tos_: 0x1ff");
    MatchDSCP match(0);
    match.convertFromMatchPB(&pb);
    EXPECT_EQ(match.getToS(), 255);
    EXPECT_EQ(match.getDSCP(), 63);
}

// ------------------------------------------------------------------------ appending and replacing

TEST(MatchMessages, AppendPortsToThoseOfTheMessage)
{
    MatchPB pb = message<MatchPB>("ports_: 9 excluded_port_types_: 8");
    MatchIngressPorts(std::list<limid_t>{limId(0, 0, 0, 1), limId(0, 0, 0, 2)})
        .convertToMatchPB(&pb);
    EXPECT_TRUE(isMessage(pb, "type_: 1 ports_: [9, 1, 2] excluded_port_types_: 8"));

    MatchIngressPorts(std::list<port_type_t>{PORT_TYPE_CPU}).convertToMatchPB(&pb);
    EXPECT_TRUE(isMessage(pb, "type_: 1 ports_: [9, 1, 2] excluded_port_types_: [8, 0]"));

    MatchEgressPorts({limId(0, 0, 0, 3)}).convertToMatchPB(&pb);
    EXPECT_TRUE(isMessage(pb, "type_: 22 ports_: [9, 1, 2, 3] excluded_port_types_: [8, 0]"));
}

TEST(MatchMessages, AppendPortsToThoseOfTheMatch)
{
    expectReadings({
        {"MatchIngressPorts", "ports_: [7, 6, 7] excluded_port_types_: [4, 3]",
         "type_: 1 ports_: [0x01020304, 1, 7, 6, 7] excluded_port_types_: [4, 3]"},
        {"MatchIngressPorts_excluded", "excluded_port_types_: [2, 1]",
         "type_: 1 excluded_port_types_: [0, 2, 1]"},
        {"MatchEgressPorts", "ports_: 7", "type_: 22 ports_: [0x01020304, 1, 7]"},
    });
}

TEST(MatchMessages, LeaveExcludedPortTypesOutOfEgressPorts)
{
    const MatchPB pb = message<MatchPB>("type_: 22 ports_: 7 excluded_port_types_: 0");
    MatchEgressPorts match({});
    match.convertFromMatchPB(&pb);
    EXPECT_TRUE(match.getExcludedPortTypes().empty());
    EXPECT_TRUE(isMessage(written(match), "type_: 22 ports_: 7"));

    // Not even if the base class was given some.
    static_cast<MatchPorts&>(match) =
        MatchPorts(MATCH_EGRESS_PORTS, std::list<port_type_t>{PORT_TYPE_CPU});
    EXPECT_TRUE(isMessage(written(match), "type_: 22"));
    FiltersEntry entry;
    entry.setMatch(match);
    EXPECT_EQ(written(entry).SerializeAsString(), serialized(entry));
}

TEST(MatchMessages, ReplaceTheVlanIdsOfTheMessage)
{
    MatchPB pb = message<MatchPB>("vlan_id_: [9, 8]");
    MatchExternalVlanId({300, 5}).convertToMatchPB(&pb);
    EXPECT_TRUE(isMessage(pb, "type_: 2 vlan_id_: [5, 300]"));
    MatchInternalVlanId({20, 10}).convertToMatchPB(&pb);
    EXPECT_TRUE(isMessage(pb, "type_: 11 vlan_id_: [10, 20]"));
}

TEST(MatchMessages, ReplaceTheVlanIdsOfTheMatchAndCollapseDuplicates)
{
    const char* read = "vlan_id_: [300, 5, 300, 100, 65541]";
    expectReadings({{"MatchExternalVlanId", read, "type_: 2 vlan_id_: [5, 100, 300]"},
                    {"MatchInternalVlanId", read, "type_: 11 vlan_id_: [5, 100, 300]"}});
}

TEST(MatchMessages, EncodeNoPortsFieldForAnEmptyList)
{
    const MatchPB pb = written(MatchEgressPorts({}));
    EXPECT_EQ(bytesOf(pb), "\x08\x16");
}

// ------------------------------------------------------------------------------ interface packing

TEST(MatchMessages, PackAnInterfaceWithItsFirstByteMostSignificant)
{
    const limid_t limIds[] = {limId(1, 2, 3, 4), limId(0xFF, 0, 0, 0), limId(0, 0, 0, 0xFE)};
    const std::uint32_t packed[] = {16909060, 0xFF000000, 0xFE};
    for (std::size_t i = 0; i < std::size(limIds); ++i) {
        const MatchPB pb = written(MatchSrcPort(limIds[i]));
        EXPECT_EQ(pb.limid_(), packed[i]);
        MatchSrcPort copy(limId(9, 9, 9, 9));
        copy.convertFromMatchPB(&pb);
        EXPECT_TRUE(copy == MatchSrcPort(limIds[i]));
    }
}

// ------------------------------------------------------------------------------------- bare match

TEST(MatchMessages, OfABareMatchHoldItsTypeAlone)
{
    for (const std::uint32_t code : knownAndUnknownCodes(MATCH_KINDS)) {
        const Match match(static_cast<filtersMatch_t>(code));
        EXPECT_TRUE(isMessage(written(match), "type_: " + std::to_string(code)));
    }
}

TEST(MatchMessages, LeaveABareMatchAsItIs)
{
    const MatchPB pb = message<MatchPB>("type_: 5 tpid_: 7");
    Match match(MATCH_TPID);
    match.convertFromMatchPB(&pb);
    EXPECT_TRUE(isMessage(written(match), "type_: 3"));
}

} // namespace
