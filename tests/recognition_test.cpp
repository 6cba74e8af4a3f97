#include "recognition.h"

#include "named_entries.h"

#include <filter_rule_text.h>

#include <gtest/gtest.h>

#include <string>
#include <utility>

namespace {

using namespace filterctl;
using namespace FiltersCommon;
using namespace FiltersCommon::test;
using namespace std::string_literals;

void expectForm(const std::string& content, Form form)
{
    const Recognition told = recognize(content);
    EXPECT_TRUE(told.form == form) << content;
    EXPECT_EQ(told.stranger, nullptr) << content;
}

TEST(Recognition, EverySampleGroupInItsOwnForms)
{
    for (const Named<FiltersGroup>& sample : groupSamples()) {
        SCOPED_TRACE(sample.name);
        std::string bytes;
        sample.object->serialize(&bytes);
        expectForm(bytes, Form::BYTES);
        expectForm(toRuleText(*sample.object), Form::RULES);
    }
    // Any identifier, also one that looks like the end of a line.
    for (int id = 0; id <= 0xFFFF; ++id) {
        std::string bytes;
        FiltersGroup(static_cast<filtersGroupId_t>(id)).serialize(&bytes);
        ASSERT_TRUE(recognize(bytes).form == Form::BYTES) << id;
    }
}

TEST(Recognition, RuleTextRightOrWrong)
{
    for (const char* text :
         {"group 7", "10 then", "then", "# comment\n\n  10 priority=3 all then permit # comment",
          "\xEF\xBB\xBFgroup 7\r\n", "src_ip=1", "1 all then", "hello\n1 all then permit",
          "group=7", "10 dst_l4_port=\x80 then", "10 \033[2J then"})
        expectForm(text, Form::RULES);
}

TEST(Recognition, AccessListsRightOrWrong)
{
    for (const char* text :
         {"@10.1.0.0/16 10.2.0.0/16 0 : 65535 0 : 65535 0x06/0xFF", "# comment\n \t@", "@bad",
          "\xEF\xBB\xBF@1.2.3.4/8", "10.1.0.0/16 10.2.0.0/16 0 : 65535 0 : 65535 0x06/0xFF"})
        expectForm(text, Form::LIST);
}

TEST(Recognition, Json)
{
    for (const char* text : {"{}", "\n\t {\"group\": {}}", "\xEF\xBB\xBF{", "{\n \"then\": 1}"})
        expectForm(text, Form::JSON);
}

TEST(Recognition, BlankIsNothing)
{
    for (const char* text :
         {"", "\n", " \t\r\n\n", "# comment", "#\n  # another\n", "\xEF\xBB\xBF"}) {
        const Recognition told = recognize(text);
        EXPECT_FALSE(told.form.has_value()) << text;
        EXPECT_EQ(told.stranger, nullptr) << text;
    }
}

TEST(Recognition, Strangers)
{
    const std::pair<std::string, const char*> strangers[] = {
        {"\x1F\x8B\x08\0"s, "a gzip file"},
        {"BZh91AY", "a bzip2 file"},
        {"\xFD"
         "7zXZ\0"s,
         "an xz file"},
        {"\x28\xB5\x2F\xFD\0"s, "a zstd file"},
        {"PK\x03\x04", "a ZIP archive"},
        {"\xD4\xC3\xB2\xA1\x02\0"s, "a pcap file of captured packets"},
        {"\xA1\xB2\xC3\xD4\0"s, "a pcap file of captured packets"},
        {"\x4D\x3C\xB2\xA1\x02\0"s, "a pcap file of captured packets"},
        {"\xA1\xB2\x3C\x4D\0"s, "a pcap file of captured packets"},
        {"\n\r\r\n\x1C\0"s, "a pcapng file of captured packets"},
        {"\x7F"
         "ELF\x02",
         "a program"},
        {"\xFF\xFEg\0r\0"s, "text in UTF-16"},
        {"\xFE\xFF\0g"s, "text in UTF-16"},
        {"# Generated\n*filter\n:INPUT ACCEPT [0:0]", "the output of iptables-save"},
        {":INPUT ACCEPT [0:0]", "the output of iptables-save"},
        {"-A INPUT -s 10.0.0.0/8 -j DROP", "rules for iptables"},
        {"table inet filter {", "a ruleset of nftables"},
        {"=FiltersGroup=\n  ID: 0\n", "what 'filterctl show' prints"},
        {"[1, 2]", "JSON of something else"},
        {"<?xml version=\"1.0\"?>", "XML"},
        {"Dear colleague,\nthis is no rule.", "text of another kind"},
    };
    for (const auto& [content, name] : strangers) {
        const Recognition told = recognize(content);
        EXPECT_FALSE(told.form.has_value()) << name;
        EXPECT_STREQ(told.stranger, name);
    }
}

TEST(Recognition, TakesAnyBytes)
{
    for (int first = 0; first < 256; ++first)
        for (int second = 0; second < 256; ++second) {
            const std::string bytes = {static_cast<char>(first), static_cast<char>(second)};
            const Recognition told = recognize(bytes);
            EXPECT_FALSE(told.form && told.stranger != nullptr);
        }
    EXPECT_STREQ(recognize(std::string(1 << 22, 'x')).stranger, "text of another kind");
    EXPECT_STREQ(recognize(std::string(1 << 22, ' ')).stranger, nullptr);
}

} // namespace
