/**
 * Access lists in the five-tuple text format, one rule per line:
 *
 *     @10.1.0.0/16  192.168.7.0/24  0 : 65535  1024 : 2047  0x06/0xFF
 *
 * The columns are source prefix, destination prefix, source port range, destination port range and
 * protocol value/mask; further columns are ignored. Columns are separated by blanks and tabs, which
 * are also allowed before the first column and around a colon. A carriage return at the end of a
 * line is ignored. Blank lines and lines that begin with '#' are skipped.
 */
#ifndef FILTER_COMMON_TOOLS_ACCESS_LIST_H
#define FILTER_COMMON_TOOLS_ACCESS_LIST_H

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace filterctl {

/** An IPv4 prefix in host byte order. Bits beyond the prefix length are kept as written. */
struct Prefix {
    std::uint32_t address = 0;
    unsigned length = 0;

    std::uint32_t mask() const { return length == 0 ? 0 : UINT32_MAX << (32 - length); }
};

/** The ports from low to high, inclusive. */
struct PortRange {
    std::uint16_t low = 0;
    std::uint16_t high = 0xFFFF;
};

/** The ports that equal value in the bits set in mask. */
struct PortPair {
    std::uint16_t value;
    std::uint16_t mask;
};

struct AccessRule {
    std::size_t line = 0; /**< counted from 1 */
    Prefix source;
    Prefix destination;
    PortRange sourcePorts;
    PortRange destinationPorts;
    std::optional<std::uint8_t> protocol; /**< none for any protocol */
};

using AccessList = std::vector<AccessRule>;

/** Why a text is refused. The line is 0 if no single line is to blame. */
struct Refusal {
    std::size_t line = 0;
    std::string reason;
};

/** Accepts any bytes; stops with a refusal at the first malformed line. */
std::variant<AccessList, Refusal> readAccessList(std::string_view text);

/** Adds the rules of well-formed lines to @p rules and returns the refusals of malformed ones. */
std::vector<Refusal> readAccessList(std::string_view text, AccessList& rules);

/**
 * The smallest set of port blocks that makes up @p range, in ascending order. A block is what a
 * mask of leading ones selects, so blocks never overlap; the full range is one pair with mask 0.
 */
std::vector<PortPair> coverPortRange(const PortRange& range);

} // namespace filterctl

#endif // FILTER_COMMON_TOOLS_ACCESS_LIST_H
