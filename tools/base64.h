/**
 * Bytes as text in base64, with the standard alphabet and padding.
 */
#ifndef FILTER_COMMON_TOOLS_BASE64_H
#define FILTER_COMMON_TOOLS_BASE64_H

#include <optional>
#include <string>
#include <string_view>

namespace filterctl {

std::string toBase64(std::string_view bytes);

/** Nothing if toBase64 does not write that text for any bytes. */
std::optional<std::string> fromBase64(std::string_view text);

} // namespace filterctl

#endif // FILTER_COMMON_TOOLS_BASE64_H
