/**
 * Access lists in the five-tuple text format, one rule a line:
 *
 *     @10.1.0.0/16  192.168.7.0/24  0 : 65535  1024 : 2047  0x06/0xFF
 *
 * The columns are source prefix, destination prefix, source port range, destination port range and
 * protocol value/mask; further columns are ignored. Columns are separated by blanks and tabs, which
 * may also stand before the first column and around a colon. A carriage return at the end of a line
 * is no part of it. Blank lines, and lines that begin with '#', are skipped.
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

/** An IPv4 prefix in host byte order. The bits beyond the prefix are kept as they were written. */
struct Prefix {
    std::uint32_t address = 0;
    unsigned length = 0;

    std::uint32_t mask() const { return length == 0 ? 0 : UINT32_MAX << (32 - length); }
};

/** The ports from low to high, both included. */
struct PortRange {
    std::uint16_t low = 0;
    std::uint16_t high = 0xFFFF;
};

/** The ports that agree with value in the bits that are set in mask. */
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

/** Why a text is refused. Line 0 stands for a refusal that no single line is to blame for. */
struct Refusal {
    std::size_t line = 0;
    std::string reason;
};

/** Takes any bytes; refuses at the first malformed line. */
std::variant<AccessList, Refusal> readAccessList(std::string_view text);

/** Adds the rules of all other lines to @p rules, and returns the refusals of malformed ones. */
std::vector<Refusal> readAccessList(std::string_view text, AccessList& rules);

/**
 * The fewest blocks of ports that make up @p range, in ascending order. A block is what a mask of
 * leading ones selects, so blocks never overlap; the full range is one pair with the mask 0.
 */
std::vector<PortPair> coverPortRange(const PortRange& range);

} // namespace filterctl

#endif // FILTER_COMMON_TOOLS_ACCESS_LIST_H
