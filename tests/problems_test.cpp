#include "problems.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>

namespace {

using namespace filterctl;
using namespace std::string_literals;

TEST(Printable, PlainTextStaysAsItIs)
{
    for (const char* text :
         {"", "group.bin", "a b", "\xC3\xA4", "\xE2\x82\xAC", "\xF0\x9F\x99\x82"})
        EXPECT_EQ(printable(text), text);
}

TEST(Printable, WhatATerminalWouldTakeForACommandIsEscaped)
{
    const std::pair<std::string, const char*> texts[] = {
        {"\033[2J", "\\x1b[2J"},    {"a\nb", "a\\x0ab"},        {"\0"s, "\\x00"},
        {"\x7F", "\\x7f"},          {"\xC2\x9B", "\\xc2\\x9b"}, {"\x9B", "\\x9b"},
        {"\xC3", "\\xc3"},          {"\xC3(", "\\xc3("},        {"\xE2\x82", "\\xe2\\x82"},
        {"\xFF\xFE", "\\xff\\xfe"}, {"\xC0\x80", "\\xc0\\x80"}, {"\xC2\xA0", "\xC2\xA0"},
    };
    for (const auto& [text, safe] : texts)
        EXPECT_EQ(printable(text), safe);
    for (int byte = 0; byte < 256; ++byte) {
        const std::string safe = printable(std::string(1, static_cast<char>(byte)));
        EXPECT_EQ(safe.size(), byte >= 0x20 && byte < 0x7F ? 1u : 4u) << byte;
    }
}

} // namespace
