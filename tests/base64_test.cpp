#include "base64.h"

#include <gtest/gtest.h>

#include <string>

namespace {

using namespace filterctl;
using namespace std::string_literals;

TEST(Base64, OfBytes)
{
    // The first ones are the examples of RFC 4648.
    const std::pair<std::string, std::string> examples[] = {
        {"", ""},
        {"f", "Zg=="},
        {"fo", "Zm8="},
        {"foo", "Zm9v"},
        {"foob", "Zm9vYg=="},
        {"fooba", "Zm9vYmE="},
        {"foobar", "Zm9vYmFy"},
        {"\xFF\xFE\0\x3E"s, "//4APg=="},
        {"\xFB\xEF\xBE", "++++"},
    };
    for (const auto& [bytes, text] : examples) {
        EXPECT_EQ(toBase64(bytes), text);
        EXPECT_EQ(fromBase64(text), bytes);
    }
}

TEST(Base64, OfEveryByteBackAgain)
{
    std::string bytes;
    for (int i = 0; i < 256; ++i) {
        bytes += static_cast<char>(i);
        EXPECT_EQ(fromBase64(toBase64(bytes)), bytes);
    }
}

TEST(Base64, WhatIsNone)
{
    for (const std::string& text : {
             "Z"s, "Zg"s, "Zg="s, "Zg==="s, "Zg==Zg=="s, "Z==="s, "===="s, "="s, "Zm9v="s,
             "Zm9vYg"s,
             "Zh=="s,                      // has bits that no byte has
             "Zm9 "s, " Zm9"s, "Zm9\n"s,   // blanks
             "__-_"s, "Zm\0v"s, "Zm\xFFv"s // other bytes
         })
        EXPECT_EQ(fromBase64(text), std::nullopt) << text;
}

} // namespace
