#include "access_list.h"
#include "group_import.h"
#include "support.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <regex>
#include <sstream>
#include <string>
#include <string_view>
#include <tuple>
#include <utility>
#include <vector>

namespace {

using namespace filterctl;
using namespace FiltersCommon;
using namespace std::string_literals;
using test::ipv4;

// ----------------------------------------------------------------------------------- access lists

constexpr char GOOD_LINE[] = "@10.1.0.9/16  192.168.7.0/24  0 : 65535  1024 : 2047  0x06/0xFF\n";

/** What is wrong with the first wrong line, or "taken". */
Problem refusalOf(std::string_view text)
{
    std::vector<Problem> problems;
    readAccessList(text, problems);
    return problems.empty() ? Problem{0, 0, "taken"} : problems.front();
}

AccessList rulesOf(std::string_view text)
{
    std::vector<Problem> problems;
    AccessList rules = readAccessList(text, problems);
    for (const Problem& problem : problems)
        ADD_FAILURE() << "line " << problem.line << ": " << problem.sentence;
    return rules;
}

void expectGoodRule(const AccessRule& rule)
{
    EXPECT_EQ(rule.source.address, 0x0A010009u);
    EXPECT_EQ(rule.source.length, 16u);
    EXPECT_EQ(rule.destination.address, 0xC0A80700u);
    EXPECT_EQ(rule.destination.length, 24u);
    EXPECT_EQ(rule.sourcePorts.low, 0);
    EXPECT_EQ(rule.sourcePorts.high, 65535);
    EXPECT_EQ(rule.destinationPorts.low, 1024);
    EXPECT_EQ(rule.destinationPorts.high, 2047);
    EXPECT_EQ(rule.protocol, std::uint8_t{6});
}

TEST(AccessList, OneRuleInManyForms)
{
    const std::string forms[] = {
        GOOD_LINE,
        "@10.1.0.9/16  192.168.7.0/24  0 : 65535  1024 : 2047  0x06/0xFF",
        "@10.1.0.9/16\t192.168.7.0/24\t0 : 65535\t1024 : 2047\t0x06/0xFF\t\n",
        "@10.1.0.9/16 192.168.7.0/24 0:65535 1024 :\t2047 0x6/0xff\n",
        " \t@10.1.0.9/016 192.168.7.0/24 00 : 065535 1024: 2047 0x0006/0x00FF \t\n",
        "@10.1.0.9/16 192.168.7.0/24 0 : 65535 1024 : 2047 0x06/0xFF\r\n",
        "@10.1.0.9/16 192.168.7.0/24 0 : 65535 1024 : 2047 0x06/0xFF 0x0000/0x0200 0xf/0xfffffffff "
        "\n",
        "\xEF\xBB\xBF@10.1.0.9/16 192.168.7.0/24 0 : 65535 1024 : 2047 0x06/0xFF",
    };
    for (const std::string& form : forms) {
        SCOPED_TRACE(form);
        const AccessList rules = rulesOf(form);
        ASSERT_EQ(rules.size(), 1u);
        EXPECT_EQ(rules[0].line, 1u);
        EXPECT_EQ(rules[0].action, std::nullopt);
        expectGoodRule(rules[0]);
    }
}

TEST(AccessList, BlankLinesAndCommentsAreCountedAndSkipped)
{
    const AccessList rules = rulesOf("# first\n\n"s + GOOD_LINE + " \t \n\r\n#@\n" + GOOD_LINE);
    ASSERT_EQ(rules.size(), 2u);
    EXPECT_EQ(rules[0].line, 3u);
    EXPECT_EQ(rules[1].line, 7u);
    EXPECT_TRUE(rulesOf("").empty());
    EXPECT_TRUE(rulesOf("#").empty());
    EXPECT_EQ(refusalOf("\n # no comment\n").line, 2u);
}

TEST(AccessList, AnyProtocol)
{
    for (const char* column : {"0x00/0x00", "0xFF/0x00", "0x6/0x0"})
        EXPECT_EQ(rulesOf("@1.2.3.4/8 5.6.7.8/8 1:2 3:4 "s + column).at(0).protocol, std::nullopt);
}

TEST(AccessList, PrefixMasks)
{
    for (unsigned length = 0; length <= 32; ++length)
        EXPECT_EQ((Prefix{0, length}.mask()),
                  ~((std::uint64_t{1} << (32 - length)) - 1) & UINT32_MAX);
}

TEST(AccessList, EveryColumnIsNeeded)
{
    const std::pair<const char*, const char*> cut[] = {
        {"@10.1.0.0/16", "destination prefix: missing"},
        {"@10.1.0.0/16 10.2.0.0/16 ", "source port range: missing"},
        {"@10.1.0.0/16 10.2.0.0/16 0", "source port range: missing ':'"},
        {"@10.1.0.0/16 10.2.0.0/16 0 :", "source port range: high port is not a number"},
        {"@10.1.0.0/16 10.2.0.0/16 0 : 65535", "destination port range: missing"},
        {"@10.1.0.0/16 10.2.0.0/16 0 : 65535 0 : 65535\t\r", "protocol: missing"},
    };
    for (const auto& [line, why] : cut)
        EXPECT_EQ(refusalOf(line).sentence, why);
}

TEST(AccessList, TakesEveryValueOfAColumn)
{
    const auto rule = [](const std::string& source, const std::string& ports,
                         const std::string& protocol) {
        return rulesOf("@" + source + " 9.8.7.6/32 " + ports + " 0 : 0 " + protocol).at(0);
    };
    for (unsigned length = 0; length <= 32; ++length)
        EXPECT_EQ(rule("1.2.3.4/" + std::to_string(length), "1:1", "0x6/0xFF").source.length,
                  length);
    for (unsigned octet = 0; octet <= 255; ++octet) {
        const std::string digits = std::to_string(octet);
        const std::string addresses[] = {digits + ".2.3.4/8", "1." + digits + ".3.4/8",
                                         "1.2." + digits + ".4/8", "1.2.3." + digits + "/8"};
        const std::uint32_t expected[] = {octet << 24 | 0x020304, 0x01000304 | octet << 16,
                                          0x01020004 | octet << 8, 0x01020300 | octet};
        for (std::size_t place = 0; place < 4; ++place)
            EXPECT_EQ(rule(addresses[place], "1:1", "0x6/0xFF").source.address, expected[place]);
        std::ostringstream column;
        column << "0x" << std::hex << octet << "/0xFF";
        EXPECT_EQ(rule("1.2.3.4/8", "1:1", column.str()).protocol, octet);
    }
    for (unsigned port = 0; port <= 65535; ++port) {
        const PortRange range =
            rule("1.2.3.4/8", std::to_string(port) + ":" + std::to_string(port), "0x6/0xFF")
                .sourcePorts;
        ASSERT_EQ(range.low, port);
        ASSERT_EQ(range.high, port);
    }
}

TEST(AccessList, WithoutColumnsARuleIsOfAllPackets)
{
    const AccessRule rule;
    for (const Prefix& prefix : {rule.source, rule.destination}) {
        EXPECT_EQ(prefix.address, 0u);
        EXPECT_EQ(prefix.length, 0u);
    }
    for (const PortRange& range : {rule.sourcePorts, rule.destinationPorts}) {
        EXPECT_EQ(range.low, 0);
        EXPECT_EQ(range.high, 65535);
    }
    EXPECT_EQ(rule.protocol, std::nullopt);
    EXPECT_EQ(rule.line, 0u);
    EXPECT_EQ(rule.action, std::nullopt);
}

TEST(AccessList, EveryMalformedLineIsNamedWithItsColumn)
{
    const std::string text = GOOD_LINE + "@1.2.3.4/33\n 1.2.3.4/8\n"s + GOOD_LINE +
                             "@1.2.3.4/8 1.2.3.4/8\t1 : 2 3 :  x 0x06/0xFF\n@1.2.3.4/8";
    std::vector<Problem> problems = {{9, 9, "kept"}};
    EXPECT_EQ(readAccessList(text, problems).size(), 2u);
    const std::tuple<std::size_t, std::size_t, const char*> expected[] = {
        {9, 9, "kept"},
        {2, 1, "source prefix: length is over 32"},
        {3, 2, "source prefix: missing '@'"},
        {5, 33, "destination port range: high port is not a number"},
        {6, 11, "destination prefix: missing"},
    };
    ASSERT_EQ(problems.size(), std::size(expected));
    for (std::size_t index = 0; index < problems.size(); ++index)
        EXPECT_EQ(std::tie(problems[index].line, problems[index].column, problems[index].sentence),
                  expected[index]);
}

TEST(AccessList, ColumnsBehindTheProtocol)
{
    const std::string five = "@10.1.0.9/16 192.168.7.0/24 0 : 65535 1024 : 2047 0x06/0xFF";
    for (const char* pairs : {"", " 0x1/0x2", "\t0x0000/0x0200\t0xABCDEF0123456789/0x0"}) {
        EXPECT_EQ(rulesOf(five + pairs + " permit").at(0).action, AccessAction::PERMIT);
        EXPECT_EQ(rulesOf(five + pairs + "\tdeny \r\n").at(0).action, AccessAction::DENY);
    }
    const std::string unknown = "further column: neither permit nor deny nor a pair of "
                                "hexadecimal numbers";
    for (const char* column : {"drop", "Permit", "permitted", "0x1", "0x1/", "/0x1", "0x/0x1",
                               "0x1/0x", "1/2", "0x1/0x2/0x3", "0x1/0xg", "#", "0X1/0X1"}) {
        const Problem problem = refusalOf(five + "  " + column);
        EXPECT_EQ(problem.sentence, unknown) << column;
        EXPECT_EQ(problem.column, five.size() + 3);
    }
    EXPECT_EQ(refusalOf(five + " permit deny").sentence,
              "further column: nothing stands behind the action");
    EXPECT_EQ(refusalOf(five + " deny 0x1/0x2").column, five.size() + 7);
}

/** What a line says, read in another way: whole, by a pattern. */
bool isRule(const std::string& line)
{
    static const std::regex pattern("[ \t]*@(\\d+)\\.(\\d+)\\.(\\d+)\\.(\\d+)/(\\d+)[ \t]+"
                                    "(\\d+)\\.(\\d+)\\.(\\d+)\\.(\\d+)/(\\d+)[ \t]+"
                                    "(\\d+)[ \t]*:[ \t]*(\\d+)[ \t]+(\\d+)[ \t]*:[ \t]*(\\d+)[ \t]+"
                                    "0x([0-9a-fA-F]+)/0x([0-9a-fA-F]+)[ \t]*\r?");
    std::smatch columns;
    if (!std::regex_match(line, columns, pattern))
        return false;
    const auto number = [&](std::size_t index) {
        return std::stoul(columns[index], nullptr, index < 15 ? 10 : 16);
    };
    const auto isOctet = [&](std::size_t index) {
        return number(index) <= 255 && (columns.length(index) == 1 || *columns[index].first != '0');
    };
    for (const std::size_t prefix : {1u, 6u})
        for (std::size_t octet = 0; octet < 4; ++octet)
            if (!isOctet(prefix + octet) || number(prefix + 4) > 32)
                return false;
    for (const std::size_t range : {11u, 13u})
        if (number(range + 1) > 65535 || number(range) > number(range + 1))
            return false;
    return number(15) <= 255 && (number(16) == 0 || number(16) == 255);
}

TEST(AccessList, IsReadAsAPatternReadsIt)
{
    const std::string good = "@10.1.0.9/16 192.168.7.0/24 0 : 65535 1024 : 2047 0x06/0xFF";
    ASSERT_TRUE(isRule(good));
    for (std::size_t position = 0; position < good.size(); ++position)
        for (int byte = 0; byte < 256; ++byte) {
            if (byte == '\n' || (byte == '#' && position == 0))
                continue; // another line, and a comment
            std::string text = good;
            text[position] = static_cast<char>(byte);
            EXPECT_EQ(refusalOf(text).sentence == "taken", isRule(text)) << text;
            text.insert(position, 1, good[position]);
            EXPECT_EQ(refusalOf(text).sentence == "taken", isRule(text)) << text;
            text.erase(position, 2);
            EXPECT_EQ(refusalOf(text).sentence == "taken", isRule(text)) << text;
        }
}

TEST(AccessList, TakesAnyByteAnywhere)
{
    const std::string good = GOOD_LINE;
    for (std::size_t position = 0; position < good.size(); ++position) {
        std::string text = good;
        for (int byte = 0; byte < 256; ++byte) {
            text[position] = static_cast<char>(byte);
            const Problem refusal = refusalOf(text);
            EXPECT_TRUE(refusal.sentence == "taken" || refusal.line == 1 ||
                        (refusal.line == 2 && byte == '\n'));
        }
        EXPECT_NE(refusalOf(good.substr(0, position)).sentence, "");
    }
    EXPECT_EQ(refusalOf("@" + std::string(1 << 20, '1')).line, 1u);
    EXPECT_EQ(refusalOf(std::string(1 << 20, '\0')).line, 1u);
    EXPECT_EQ(rulesOf(std::string(1 << 20, '\n') + GOOD_LINE).at(0).line, (1u << 20) + 1);
}

// ------------------------------------------------------------------------------------ port ranges

constexpr std::size_t SPACE = 256;

bool holds(const PortPair& pair, std::size_t port) { return (port & pair.mask) == pair.value; }

void expectCovers(const std::vector<PortPair>& pairs, std::size_t low, std::size_t high)
{
    for (std::size_t port = 0; port < SPACE; ++port)
        ASSERT_EQ(std::count_if(pairs.begin(), pairs.end(),
                                [port](const PortPair& pair) { return holds(pair, port); }),
                  low <= port && port <= high ? 1 : 0)
            << "port " << port << " and the range " << low << " : " << high;
    EXPECT_TRUE(
        std::is_sorted(pairs.begin(), pairs.end(),
                       [](const PortPair& a, const PortPair& b) { return a.value < b.value; }));
    for (const PortPair& pair : pairs) {
        EXPECT_LT(pair.value, SPACE);
        EXPECT_EQ(pair.mask & 0xFF00, 0xFF00);
    }
}

/** The fewest blocks for each range of the space, by trying every place to cut it. */
std::vector<std::vector<std::size_t>> fewestBlocks()
{
    std::vector<std::vector<std::size_t>> fewest(SPACE, std::vector<std::size_t>(SPACE, SPACE));
    for (std::size_t size = 1; size <= SPACE; ++size)
        for (std::size_t low = 0; low + size <= SPACE; ++low) {
            std::size_t& best = fewest[low][low + size - 1];
            if ((size & (size - 1)) == 0 && low % size == 0)
                best = 1;
            for (std::size_t cut = low + 1; cut < low + size; ++cut)
                best = std::min(best, fewest[low][cut - 1] + fewest[cut][low + size - 1]);
        }
    return fewest;
}

TEST(CoverPortRange, EveryRangeOfASmallSpace)
{
    const auto fewest = fewestBlocks();
    for (std::size_t low = 0; low < SPACE; ++low)
        for (std::size_t high = low; high < SPACE; ++high) {
            const auto pairs =
                coverPortRange({static_cast<std::uint16_t>(low), static_cast<std::uint16_t>(high)});
            ASSERT_NO_FATAL_FAILURE(expectCovers(pairs, low, high));
            ASSERT_EQ(pairs.size(), fewest[low][high]);
            // The same range in steps of 256 ports.
            const auto wide = coverPortRange({static_cast<std::uint16_t>(low << 8),
                                              static_cast<std::uint16_t>(high << 8 | 0xFF)});
            ASSERT_EQ(wide.size(), pairs.size());
            for (std::size_t index = 0; index < wide.size(); ++index) {
                ASSERT_EQ(wide[index].value, pairs[index].value << 8);
                ASSERT_EQ(wide[index].mask, (pairs[index].mask & 0xFF) << 8);
            }
        }
}

TEST(CoverPortRange, TheWholeSpaceAndAllButItsEnds)
{
    const auto whole = coverPortRange({0, 65535});
    ASSERT_EQ(whole.size(), 1u);
    EXPECT_EQ(whole[0].mask, 0);
    EXPECT_EQ(coverPortRange({1, 65534}).size(), 30u);
    EXPECT_EQ(coverPortRange({65535, 65535}).at(0).mask, 0xFFFF);
}

// ----------------------------------------------------------------------------------------- groups

FiltersGroup groupOf(std::string_view text, const ImportOptions& options = {})
{
    std::vector<Problem> problems;
    auto group = groupFromAccessList(text, options, problems);
    for (const Problem& problem : problems)
        ADD_FAILURE() << "line " << problem.line << ": " << problem.sentence;
    return group ? *std::move(group) : FiltersGroup(0);
}

TEST(GroupImport, WhatARuleLeavesOpenGivesNoMatch)
{
    const FiltersGroup group = groupOf("@1.2.3.4/0 5.6.7.8/1 0 : 65535 0 : 65535 0x06/0x00\n"
                                       "@0.0.0.0/0 0.0.0.0/0 0 : 0 0 : 65535 0x00/0xFF\n"
                                       "@0.0.0.0/0 0.0.0.0/0 0 : 65535 0 : 65535 0x11/0x00\n");
    FiltersEntry entries[] = {FiltersEntry(0), FiltersEntry(1), FiltersEntry(2)};
    entries[0].setMatch(MatchDstIPv4(ipv4("5.6.7.8"), ipv4("128.0.0.0")));
    entries[1].setMatch(MatchSrcL4Port(0, 0xFFFF));
    entries[1].setMatch(MatchIpProtocol(0));
    entries[2].setMatch(MatchAll());
    FiltersGroup expected(0);
    expected.setType(GROUP_TYPE_3);
    for (FiltersEntry& entry : entries) {
        entry.setPriority(3u - entry.getId());
        entry.setAction(ActionPermit());
        expected.insertEntry(entry);
    }
    EXPECT_EQ(group, expected);
}

TEST(GroupImport, AnEntryForEachPairOfPorts)
{
    const FiltersGroup group = groupOf("@0.0.0.0/0 0.0.0.0/0 1 : 2 5 : 8 0x06/0xFF\n"s + GOOD_LINE);
    const std::pair<PortPair, PortPair> pairs[] = {
        {{1, 0xFFFF}, {5, 0xFFFF}}, {{1, 0xFFFF}, {6, 0xFFFE}}, {{1, 0xFFFF}, {8, 0xFFFF}},
        {{2, 0xFFFF}, {5, 0xFFFF}}, {{2, 0xFFFF}, {6, 0xFFFE}}, {{2, 0xFFFF}, {8, 0xFFFF}},
    };
    ASSERT_EQ(group.getEntriesRef().size(), std::size(pairs) + 1);
    filtersEntryId_t id = 0;
    for (const auto& [source, destination] : pairs) {
        FiltersEntry expected(id);
        expected.setPriority(2);
        expected.setMatch(MatchSrcL4Port(source.value, source.mask));
        expected.setMatch(MatchDstL4Port(destination.value, destination.mask));
        expected.setMatch(MatchIpProtocol(6));
        expected.setAction(ActionPermit());
        EXPECT_EQ(group.getEntriesRef().at(id++), expected);
    }
    EXPECT_EQ(group.getEntriesRef().at(id).getPriority(), 1u);
}

TEST(GroupImport, ARuleThatSaysItsActionHasIt)
{
    const std::string five = "@0.0.0.0/0 0.0.0.0/0 0:65535 0:65535 0x06/0xFF";
    for (const AccessAction action : {AccessAction::PERMIT, AccessAction::DENY}) {
        ImportOptions options;
        options.action = action;
        const FiltersGroup group = groupOf(five + " permit\n" + five + " deny\n" + five, options);
        const bool denies = action == AccessAction::DENY;
        for (const auto& [id, kind] : {std::pair(0, ACTION_PERMIT), std::pair(1, ACTION_DENY),
                                       std::pair(2, denies ? ACTION_DENY : ACTION_PERMIT)}) {
            const auto& actions =
                group.getEntriesRef().at(static_cast<filtersEntryId_t>(id)).getActionsRef();
            EXPECT_EQ(actions.size(), 1u);
            EXPECT_EQ(actions.count(kind), 1u);
        }
    }
}

} // namespace
