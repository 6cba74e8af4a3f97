#include "recognition.h"

#include "rule_line.h"

#include <algorithm>
#include <cstddef>

namespace filterctl {

using FiltersCommon::Word;
using FiltersCommon::Words;
using namespace std::string_view_literals;

namespace {

struct Beginning {
    std::string_view bytes;
    const char* name;
};

/** Of whole files. */
constexpr Beginning FILES[] = {
    {"\x1F\x8B"sv, "a gzip file"},
    {"\x28\xB5\x2F\xFD"sv, "a zstd file"},
    {"\xFD"
     "7zXZ"sv,
     "an xz file"},
    {"BZh"sv, "a bzip2 file"},
    {"PK\x03\x04"sv, "a ZIP archive"},
    {"\xD4\xC3\xB2\xA1"sv, "a pcap file of captured packets"},
    {"\xA1\xB2\xC3\xD4"sv, "a pcap file of captured packets"},
    {"\x4D\x3C\xB2\xA1"sv, "a pcap file of captured packets"},
    {"\xA1\xB2\x3C\x4D"sv, "a pcap file of captured packets"},
    {"\x0A\x0D\x0D\x0A"sv, "a pcapng file of captured packets"},
    {"\x7F"
     "ELF"sv,
     "a program"},
    {"\xFF\xFE"sv, "text in UTF-16"},
    {"\xFE\xFF"sv, "text in UTF-16"},
};

/** Of the first line that says something. */
constexpr Beginning LINES[] = {
    {"*filter"sv, "the output of iptables-save"},
    {"*nat"sv, "the output of iptables-save"},
    {"*mangle"sv, "the output of iptables-save"},
    {"*raw"sv, "the output of iptables-save"},
    {"*security"sv, "the output of iptables-save"},
    {":INPUT"sv, "the output of iptables-save"},
    {"-A "sv, "rules for iptables"},
    {"-P "sv, "rules for iptables"},
    {"table "sv, "a ruleset of nftables"},
    {"=FiltersGroup="sv, "what 'filterctl show' prints"},
    {"["sv, "JSON of something else"},
    {"<"sv, "XML"},
};

template <std::size_t N>
const char* strangerOf(const Beginning (&beginnings)[N], std::string_view content)
{
    for (const Beginning& each : beginnings)
        if (content.substr(0, each.bytes.size()) == each.bytes)
            return each.name;
    return nullptr;
}

/** One of these is in the bytes of every group, in which a field has the number 1, and in no text. */
bool isBinary(char c) { return c == '\0' || c == '\x08'; }

/** Whether it can be the name of a word of rule text. */
bool isName(std::string_view name)
{
    return !name.empty() && std::all_of(name.begin(), name.end(), [](char c) {
        return (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9') || c == '_';
    });
}

/** Whether a line of words is one of rule text, right or wrong. */
bool isRule(std::string_view line)
{
    Words words(line);
    Word word = words.next();
    if (word.name() == "group")
        return true;
    for (; !word.text.empty(); word = words.next())
        if (word.text == "then" || (word.hasValue() && isName(word.name())))
            return true;
    return false;
}

/** Whether a line is one of an access list of which the '@' is missing. */
bool isRuleOfList(std::string_view line)
{
    return line[0] >= '0' && line[0] <= '9' && line.find('/') < line.find(':') &&
           line.find(':') != line.npos;
}

/** What a line tells that is not blank, if anything. */
Recognition recognizeLine(std::string_view line)
{
    if (std::any_of(line.begin(), line.end(), isBinary))
        return {Form::BYTES};
    switch (line[0]) {
    case '{':
        return {Form::JSON};
    case '@':
        return {Form::LIST};
    }
    if (const char* const stranger = strangerOf(LINES, line))
        return {std::nullopt, stranger};
    if (isRule(line))
        return {Form::RULES};
    if (isRuleOfList(line))
        return {Form::LIST};
    return {};
}

} // namespace

Recognition recognize(std::string_view content)
{
    if (const char* const stranger = strangerOf(FILES, content))
        return {std::nullopt, stranger};
    if (content.substr(0, 3) == "\xEF\xBB\xBF")
        content.remove_prefix(3);
    Recognition last;
    while (!content.empty()) {
        std::string_view line = content.substr(0, content.find('\n'));
        content.remove_prefix(std::min(line.size() + 1, content.size()));
        line.remove_prefix(std::min(line.find_first_not_of(" \t\r"), line.size()));
        if (line.empty() || line[0] == '#')
            continue;
        const Recognition told = recognizeLine(line);
        if (told.form || told.stranger != nullptr)
            return told;
        last.stranger = "text of another kind";
    }
    return last;
}

} // namespace filterctl
