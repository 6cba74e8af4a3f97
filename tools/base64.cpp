#include "base64.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>

namespace filterctl {

namespace {

constexpr std::string_view ALPHABET =
    "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
constexpr char PADDING = '=';

} // namespace

std::string toBase64(std::string_view bytes)
{
    std::string text;
    text.reserve((bytes.size() + 2) / 3 * 4);
    for (; !bytes.empty(); bytes.remove_prefix(std::min<std::size_t>(bytes.size(), 3))) {
        std::uint32_t bits = 0;
        for (std::size_t i = 0; i < 3; ++i)
            bits = bits << 8 | (i < bytes.size() ? static_cast<unsigned char>(bytes[i]) : 0U);
        for (std::size_t i = 0; i < 4; ++i)
            text += i <= bytes.size() ? ALPHABET[bits >> (18 - 6 * i) & 0x3F] : PADDING;
    }
    return text;
}

std::optional<std::string> fromBase64(std::string_view text)
{
    std::string bytes;
    for (std::string_view rest = text; !rest.empty(); rest.remove_prefix(4)) {
        if (rest.size() < 4)
            return std::nullopt;
        std::uint32_t bits = 0;
        for (const char digit : rest.substr(0, 4))
            bits = bits << 6 | static_cast<std::uint32_t>(ALPHABET.find(digit) & 0x3F);
        for (const int shift : {16, 8, 0})
            bytes += static_cast<char>(bits >> shift & 0xFF);
    }
    // Whatever else than a digit was taken for one shows when the bytes are written again.
    const std::size_t padding = text.size() - (text.find_last_not_of(PADDING) + 1);
    bytes.resize(bytes.size() - std::min<std::size_t>(padding, bytes.size()));
    if (toBase64(bytes) != text)
        return std::nullopt;
    return bytes;
}

} // namespace filterctl
