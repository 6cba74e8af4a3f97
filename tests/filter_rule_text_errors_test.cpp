#include "filter_rule_text.h"

#include "rule_text_support.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

namespace FiltersCommon::test {
namespace {

// ------------------------------------------------------------------------------------ whole lines

struct Wrong {
    std::string text;
    std::string errors;
};

void expectErrors(const std::vector<Wrong>& texts)
{
    for (const auto& [text, errors] : texts)
        EXPECT_EQ(errorsOf(text), errors) << text;
}

TEST(RuleTextErrors, OfHeaders)
{
    expectErrors({
        {"group # 1", "1:1: group takes a number from 0 to 65535, not ''\n"},
        {"group=7", "1:1: the header begins with 'group NUMBER'\n"},
        {"group 65536 priority=65536 stage=x\t type",
         "1:7: group takes a number from 0 to 65535, not '65536'\n"
         "1:13: priority takes a number from 0 to 65535, not '65536'\n"
         "1:28: stage takes a number from 0 to 4294967295, not 'x'\n"
         "1:37: type takes a number from 0 to 4294967295, not ''\n"},
        {"\xEF\xBB\xBFgroup 1 stage=1 stage=2 state=3 group=4 then",
         "1:17: 'stage' is given twice\n"
         "1:25: a header has no 'state'; did you mean 'stage'?\n"
         "1:33: a header has no 'group'; the nearest word is 'stage'\n"
         "1:41: a header has no 'then'; the nearest word is 'type'\n"},
        {"\n# once\ngroup 1\n group 2 type\n",
         "4:2: the header stands in front of all entries, and only once\n"
         "4:10: type takes a number from 0 to 4294967295, not ''\n"},
        {"1 then\ngroup 2", "2:1: the header stands in front of all entries, and only once\n"},
    });
}

TEST(RuleTextErrors, OfWordsInWrongPlaces)
{
    expectErrors({
        {"1", "1:1: 'then' is missing, which stands in front of the actions, even of none\n"},
        {" 1 permit",
         "1:4: 'permit' stands behind 'then'\n"
         "1:2: 'then' is missing, which stands in front of the actions, even of none\n"},
        {"then=1", "1:1: 'then' takes no value\n"},
        {"then ttl=x priority=2 dscp=1", "1:6: 'ttl' stands in front of 'then'\n"
                                         "1:12: 'priority' stands in front of 'then'\n"
                                         "1:23: 'dscp' stands in front of 'then'\n"},
        {"1 counter=x policer=x deny then", "1:3: 'counter' stands behind 'then'\n"
                                            "1:13: 'policer' stands behind 'then'\n"
                                            "1:23: 'deny' stands behind 'then'\n"},
        {"1 group then", "1:3: 'group' stands at the beginning of the header\n"},
    });
}

TEST(RuleTextErrors, OfUnknownWords)
{
    const std::string longWord(31, 'a');
    expectErrors({
        {"scr_ipv4=1 dst_14_port=1 pripority=1 dsc = x thin then",
         "1:1: there is no match 'scr_ipv4'; did you mean 'src_ipv4'?\n"
         "1:12: there is no match 'dst_14_port'; did you mean 'dst_l4_port'?\n"
         "1:26: there is no match 'pripority'; did you mean 'priority'?\n"
         "1:38: there is no match 'dsc'; did you mean 'dscp'?\n"
         "1:42: there is no match ''\n"
         "1:44: there is no match 'x'; the nearest word is 'all'\n"
         "1:46: there is no match 'thin'; did you mean 'then'?\n"},
        {"then premit counters=1 polisher 3",
         "1:6: there is no action 'premit'; did you mean 'permit'?\n"
         "1:13: there is no action 'counters'; did you mean 'counter'?\n"
         "1:24: there is no action 'polisher'; did you mean 'policer'?\n"
         "1:33: there is no action '3'; the nearest word is 'all'\n"},
        // Neighbouring letters are exchanged more often than others.
        {"sdt_ipv4=1 rsc_l4_port=1 dst_ip6v=1 tlt=1 dcsp=1 gruop then set_dcsp=1",
         "1:1: there is no match 'sdt_ipv4'; did you mean 'dst_ipv4'?\n"
         "1:12: there is no match 'rsc_l4_port'; did you mean 'src_l4_port'?\n"
         "1:26: there is no match 'dst_ip6v'; did you mean 'dst_ipv6'?\n"
         "1:37: there is no match 'tlt'; did you mean 'ttl'?\n"
         "1:43: there is no match 'dcsp'; did you mean 'dscp'?\n"
         "1:50: there is no match 'gruop'; did you mean 'group'?\n"
         "1:61: there is no action 'set_dcsp'; did you mean 'set_dscp'?\n"},
        // A word of the other side may be meant; one of this side if both are as near.
        {"permt then thn priorty=1 dst_ipv=1 set_inner_pcb=1",
         "1:1: there is no match 'permt'; did you mean 'permit'?\n"
         "1:12: there is no action 'thn'; did you mean 'then'?\n"
         "1:16: there is no action 'priorty'; did you mean 'priority'?\n"
         "1:26: there is no action 'dst_ipv'; did you mean 'dst_ipv4'?\n"
         "1:36: there is no action 'set_inner_pcb'; did you mean 'set_inner_pcp'?\n"},
        {"groupp 1",
         "1:1: there is no match 'groupp'; did you mean 'group'?\n"
         "1:1: 'then' is missing, which stands in front of the actions, even of none\n"},
        {std::string("\0\x1F \x7F\xFFz~ then \r\r", 15),
         "1:1: there is no match '\\x00\\x1f'; the nearest word is 'all'\n"
         "1:4: there is no match '\\x7f\\xffz~'; the nearest word is 'all'\n"
         "1:14: there is no action '\\x0d'; the nearest word is 'all'\n"},
        {"Permit then", "1:1: there is no match 'Permit'; did you mean 'permit'?\n"},
        {"then ALL", "1:6: there is no action 'ALL'; did you mean 'all'?\n"},
        {longWord + longWord + longWord + longWord + " then",
         "1:1: there is no match 'aaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaa...'\n"},
    });
}

TEST(RuleTextErrors, OfWordsThatAreGivenTwice)
{
    expectErrors({
        {"group 0 type=9\n"
         "1 2 priority=1 priority=1 all all=1 tos=1 dscp=1 then then deny deny "
         "counter=1:octets counter policer= policer",
         "2:3: the identifier is given twice\n"
         "2:16: 'priority' is given twice\n"
         "2:31: 'all' is given twice\n"
         "2:43: 'dscp' is given twice\n"
         "2:55: 'then' is given twice\n"
         "2:65: 'deny' is given twice\n"
         "2:87: 'counter' is given twice\n"
         "2:104: 'policer' is given twice\n"},
        {"group 0 type=9\ndscp=1 tos=1 then", "2:8: 'tos' is given twice\n"},
    });
}

TEST(RuleTextErrors, OfIdentifiers)
{
    expectErrors({
        {"1 then\n0x1 then\n1 then",
         "2:1: identifier 1 is taken by an entry in front of this one\n"
         "3:1: identifier 1 is taken by an entry in front of this one\n"},
        {"5 then\n4 then\nthen", "3:1: identifier 5 is taken by an entry in front of this one\n"},
        {"5 then\n4 then\n65536 then",
         "3:1: an entry's identifier takes a number from 0 to 65535, not '65536'\n"},
        {"65535 then\nthen\n\n then x\n0 then",
         "2:1: no identifier is left for this entry; the greatest is 65535\n"
         "4:7: there is no action 'x'; the nearest word is 'all'\n"
         "4:2: no identifier is left for this entry; the greatest is 65535\n"},
        // An identifier may stand anywhere in front of 'then'.
        {"1 then\npriority=2 1 then",
         "2:12: identifier 1 is taken by an entry in front of this one\n"},
        // The second line makes entries 10 to 13.
        {"group 0 type=3\n12 then\n10 src_l4_port=1-6 then\nthen\n11 then\n15 then",
         "3:1: identifier 12 is taken by an entry in front of this one\n"
         "5:1: identifier 11 is taken by an entry in front of this one\n"},
        {"group 0 type=3\n65535 src_l4_port=1-2 then\n65535 then",
         "2:1: no identifier is left for this entry; the greatest is 65535\n"
         "3:1: identifier 65535 is taken by an entry in front of this one\n"},
    });
}

TEST(RuleTextErrors, OfMoreEntriesThanThereAreIdentifiers)
{
    std::string text;
    for (int left = 65536; left != 0; --left)
        text += "then\n";
    EXPECT_EQ(errorsOf(text), "");
    EXPECT_EQ(errorsOf(text + "then\n"),
              "65537:1: no identifier is left for this entry; the greatest is 65535\n");
}

// -------------------------------------------------------------------------- what is not admitted

TEST(RuleTextErrors, OfWhatTheGroupDoesNotAdmit)
{
    const std::string pcp = "match kind MATCH_PCP is not admitted in a group of type GROUP_TYPE_8; "
                            "admitted are MATCH_ALL, MATCH_DST_IPV6 and MATCH_VRF_ID\n";
    const std::string redirect =
        "action kind ACTION_REDIRECT is not admitted at group stage GROUP_STAGE_3; "
        "admitted are ACTION_PERMIT and ACTION_DENY\n";
    const std::string ports =
        "match kind MATCH_DST_L4_PORT is not admitted in a group of type GROUP_TYPE_0; "
        "none is admitted\n";
    expectErrors({
        {"group 0 stage=3 type=8\npcp=1 7 then redirect=\n8 then permit policer=stage:ingress",
         "2:1: entry 7: " + pcp + "2:1: entry 7: " + redirect +
             "3:1: entry 8: a policer of stage STAGE_INGRESS is not admitted at group stage "
             "GROUP_STAGE_3; admitted are STAGE_EGRESS and STAGE_NONE\n"},
        // Also beside other errors.
        {"group x priority=x stage=3 type=8\n7 pcp=x then redirect=x x\n7 pcp=1 then",
         "1:7: group takes a number from 0 to 65535, not 'x'\n"
         "1:9: priority takes a number from 0 to 65535, not 'x'\n"
         "2:3: pcp takes a number from 0 to 255, not 'x'\n"
         "2:14: redirect takes ports of eight hexadecimal digits with commas between them, not "
         "'x'\n"
         "2:25: there is no action 'x'; the nearest word is 'all'\n"
         "2:1: entry 7: " +
             pcp + "2:1: entry 7: " + redirect +
             "3:1: identifier 7 is taken by an entry in front of this one\n"
             "3:1: entry 7: " +
             pcp},
        {"group 0 type=8\n65536 pcp=1 then\n65535 then\npcp=1 then",
         "2:1: an entry's identifier takes a number from 0 to 65535, not '65536'\n"
         "2:1: " +
             pcp +
             "4:1: no identifier is left for this entry; the greatest is 65535\n"
             "4:1: " +
             pcp},
        // Once for all entries of a line.
        {"5 dst_l4_port=1-9 then\ndst_l4_port=1-x then",
         "1:1: entry 5: " + ports +
             "2:1: dst_l4_port takes two numbers from 0 to 65535, the lower first, not '1-x'\n"
             "2:1: entry 9: " +
             ports},
        {"group 0 stage=9 type=0\nthen",
         "2:1: entry 0: group stage 9 is unknown; known are GROUP_STAGE_0, GROUP_STAGE_1, "
         "GROUP_STAGE_2 and GROUP_STAGE_3\n"},
        {"group 0 type=3\ntos=1 then", errorsOf("group 0 type=3\ntos=2 then")},
    });
}

TEST(RuleTextErrors, OfAdmittanceAreNotGuessed)
{
    for (const std::string header : {"group 0 stage=x", "group 0 type=x", "group 0 type=0 type=1",
                                     "group 0 typ=1", "group 0 type=1\ngroup 0"}) {
        const std::string errors = errorsOf(header + "\nall then");
        EXPECT_EQ(errors, errorsOf(header)) << errors;
        EXPECT_NE(errors, "");
    }
}

TEST(RuleTextErrors, OfMatchesThatExcludeEachOther)
{
    const std::string beside = "; an entry holds IPv4 addresses or IPv6 addresses, never both\n";
    expectErrors({
        {"group 0 type=8\ndst_ipv6=:: src_ipv4=x 10 src_ipv6=::1 dst_ipv4=192.0.2.1 then",
         "2:13: match kind MATCH_SRC_IPV4 is not admitted beside MATCH_DST_IPV6" + beside +
             "2:13: src_ipv4 takes an IPv4 address, not 'x'\n"
             "2:40: match kind MATCH_DST_IPV4 is not admitted beside MATCH_SRC_IPV6 and "
             "MATCH_DST_IPV6" +
             beside +
             "2:1: entry 10: match kind MATCH_SRC_IPV6 is not admitted in a group of type "
             "GROUP_TYPE_8; admitted are MATCH_ALL, MATCH_DST_IPV6 and MATCH_VRF_ID\n"},
    });
}

// ----------------------------------------------------------------------------------------- values

/** Words with wrong values, and what is expected instead of all of them. */
struct WrongValues {
    std::string header;
    std::string front; /**< of the line */
    std::string name;
    std::vector<std::string> values;
    std::string expected;
};

const std::vector<WrongValues> WRONG_VALUES = {
    {"type=3",
     "",
     "src_ipv4",
     {"", "1.2.3", "01.2.3.4", "::1", "1.2.3.4.5", "1.2.3.4-5", "/24"},
     "an IPv4 address"},
    {"type=3",
     "",
     "src_ipv4",
     {"1.2.3.4/33", "1.2.3.4/", "1.2.3.4/1.2.3", "1.2.3.4/24/24"},
     "a length from 0 to 32 or a mask"},
    {"type=8", "", "dst_ipv6", {"", "1.2.3.4", ":", "1::2::3", "g::"}, "an IPv6 address"},
    {"type=8",
     "",
     "dst_ipv6",
     {"::1/129", "::1/", "::1/255.0.0.0", "::/ffff:"},
     "a length from 0 to 128 or a mask"},
    {"type=1",
     "",
     "dst_mac",
     {"", "1:2:3:4:5", "1:2:3:4:5:", "1:2:3:4:5:6:", "1:2:3:4:5:6:7", "001:2:3:4:5:6",
      "1:2:3:4:5:0x6", "1-2-3-4-5-6", "1:2:3::5:6"},
     "a MAC address"},
    {"type=1",
     "",
     "dst_mac",
     {"1:2:3:4:5:6/24", "1:2:3:4:5:6/", "1:2:3:4:5:6/1:2:3:4:5"},
     "a mask in the form of a MAC address"},
    {"", "then ", "replace_src_mac", {"", "1:2:3:4:5", "1:2:3:4:5:6/1:2:3:4:5:6"}, "a MAC address"},
    {"type=3",
     "",
     "ip_protocol",
     {"", "TCP", "256", "tcp:", "udp/17"},
     "the name of a protocol, such as tcp, or a number from 0 to 255"},
    {"type=3", "", "dst_l4_port", {"", "65536", "1,2"}, "a number from 0 to 65535"},
    {"type=3",
     "",
     "dst_l4_port",
     {"5/", "5/0x10000", "5/1/1", "5:6"},
     "a port with a mask, such as 1024/0xfc00, both up to 65535"},
    {"type=3",
     "",
     "src_l4_port",
     {"6-5", "-5", "5-", "-", "5-65536", "5-6-7", "5-6/0xffff"},
     "two numbers from 0 to 65535, the lower first"},
    {"type=3",
     "",
     "external_vlan_id",
     {",", "1,", ",1", "1,,2", "2-1", "1-", "-1", "1-2-3", "1,65536", "1-65536", "1/2"},
     "numbers from 0 to 65535 and ascending ranges of them, such as 20-29, with commas between "
     "them"},
    {"type=3",
     "",
     "ingress_ports",
     {"1", ",", "00000001,", ",00000001", "00000001,,00000002", "0x000001", "000000001", "0000000g",
      "00000001except:1", "00000001,x,except:1"},
     "ports of eight hexadecimal digits with commas between them"},
    {"type=3",
     "",
     "ingress_ports",
     {"except:", "except:x", "except:1,", "except:1,00000001", "00000001,except:1,,except:2"},
     "ports of eight hexadecimal digits, and behind them excluded types such as except:0, with "
     "commas between them"},
    {"",
     "then ",
     "redirect",
     {"1", "00000001,"},
     "ports of eight hexadecimal digits with commas between them"},
    {"type=7",
     "",
     "src_port",
     {"", "0000001", "00000001,00000002", "0x000001"},
     "a port of eight hexadecimal digits"},
    {"type=1", "", "drop", {"", "1", "True", "true,"}, "true or false"},
    {"",
     "then ",
     "counter",
     {"", "x", ":octets", "65536:octets", "1", "1:", "1:bytes", "1:octets:", "1:-", "1:--1",
      "1:2147483648", "1:-2147483649", "1/2"},
     "ID:TYPE, where ID is a number from 0 to 65535, and TYPE packets, octets, invalid or a "
     "number"},
    {"",
     "then ",
     "policer",
     {"id", ",", "id:1,", ",id:1", "id:1,,cir:1"},
     "NAME:VALUE with commas between them, such as id:7,stage:ingress,red:drop"},
    {"", "then ", "policer", {"id:", "id:1,id:1", "id:4294967296"}, "id:NUMBER, once"},
    {"",
     "then ",
     "policer",
     {"stage:", "stage:INGRESS", "stage:none,stage:none", "stage:4294967296"},
     "stage:ingress, stage:egress or stage:none, once"},
    {"",
     "then ",
     "policer",
     {"mode:", "mode:drop", "mode:flow,mode:flow", "mode:4294967296"},
     "mode:sr_tcm, mode:tr_tcm, mode:tr_tcm_ds, mode:flow or mode:none, once"},
    {"",
     "then ",
     "policer",
     {"cir:", "pir:1,pir:1", "ebs:4294967296"},
     "each of the rates cir, cbs, ebs, eir, pbs and pir as a number, once"},
    {"",
     "then ",
     "policer",
     {":", "color:drop", "red:", "red:pass", "red:drop:1", "red:drop:", "red:set_pcp",
      "red:set_pcp:", "red:set_dscp:256", "red:set_dscp:1:1", "red:drop,0:0", "4294967296:drop",
      "id:1,bytes:00"},
     "id, stage, mode, cir, cbs, ebs, eir, pbs, pir, or an action such as red:drop or "
     "yellow:set_dscp:10, once"},
    {"",
     "then ",
     "policer",
     {"bytes:", "bytes:0", "bytes:0g", "bytes:00", "bytes:00,id:1"},
     "the bytes of a policer, two hexadecimal digits for each"},
};

TEST(RuleTextErrors, OfValues)
{
    for (const auto& [header, front, name, values, expected] : WRONG_VALUES)
        for (const std::string& value : values) {
            const std::string line = front + name + "=" + value + (front.empty() ? " then" : "");
            EXPECT_EQ(errorsOf("group 0 " + header + "\n" + line),
                      "2:" + std::to_string(front.size() + 1) + ": " + name + " takes " + expected +
                          ", not '" + value + "'\n")
                << line;
        }
}

TEST(RuleTextErrors, OfValuesThatAreMissingOrTooMany)
{
    expectErrors({
        {"group 0 type=3\nsrc_ipv4 external_vlan_id then counter policer redirect",
         "2:1: src_ipv4 takes an IPv4 address, not ''\n"
         "2:10: external_vlan_id takes numbers from 0 to 65535 and ascending ranges of them, such "
         "as 20-29, with commas between them, not ''\n"
         "2:32: counter takes ID:TYPE, where ID is a number from 0 to 65535, and TYPE packets, "
         "octets, invalid or a number, not ''\n"
         "2:40: policer takes a list of NAME:VALUE, not ''\n"
         "2:48: redirect takes ports of eight hexadecimal digits with commas between them, not "
         "''\n"},
        {"group 0 type=3\nall= destination_cpu=1 then permit= deny=x",
         "2:1: 'all' takes no value\n"
         "2:6: 'destination_cpu' takes no value\n"
         "2:29: 'permit' takes no value\n"
         "2:37: 'deny' takes no value\n"},
        {"group 0 type=8\ndst_ipv6=0000:0000:0000:0000:0000:ffff:255.255.255.2555 then",
         "2:1: dst_ipv6 takes an IPv6 address, not "
         "'0000:0000:0000:0000:0000:ffff:255.255.25...'\n"},
        {std::string("group 0 type=3\nsrc_ipv4=1.2.3.4\0 then", 37),
         "2:1: src_ipv4 takes an IPv4 address, not '1.2.3.4\\x00'\n"},
    });
}

// ----------------------------------------------------------------------------------------- number

TEST(RuleTextErrors, AreOnlyCountedBeyondANumber)
{
    constexpr std::size_t MOST = 1000 + (2 * 1144 + 4) / 16 + 1;
    std::string text;
    for (std::size_t left = MOST; left != 0; --left)
        text += "x ";
    text += "then";
    std::vector<RuleTextError> errors;
    EXPECT_FALSE(groupFromRuleText(text, &errors));
    ASSERT_EQ(errors.size(), MOST);
    EXPECT_EQ(errors.back().sentence, "there is no match 'x'; the nearest word is 'all'");
    EXPECT_EQ(errors.back().column, 2 * MOST - 1);

    text.insert(0, "x x ");
    EXPECT_FALSE(groupFromRuleText(text, &errors));
    ASSERT_EQ(errors.size(), MOST);
    EXPECT_EQ(errors.back().sentence,
              "there is no match 'x'; the nearest word is 'all'; errors behind this one: 2");

    text.append(32000 - text.size(), ' ');
    EXPECT_FALSE(groupFromRuleText(text, &errors));
    EXPECT_EQ(errors.size(), MOST + 2);
    EXPECT_EQ(errors.back().sentence, "there is no match 'x'; the nearest word is 'all'");
}

} // namespace
} // namespace FiltersCommon::test
