/**
 * Access lists in the five-tuple text format, one rule per line:
 *
 *     @10.1.0.0/16  192.168.7.0/24  0 : 65535  1024 : 2047  0x06/0xFF
 *
 * The columns are source prefix, destination prefix, source port range, destination port range and
 * protocol value/mask; then perhaps pairs of hexadecimal numbers, which are ignored, and perhaps the
 * rule's action, permit or deny. Columns are separated by blanks and tabs, which are also allowed
 * before the first column and around a colon. A byte order mark at the beginning and a carriage
 * return at the end of a line are ignored. Blank lines and lines that begin with '#' are skipped.
 */
#ifndef FILTER_COMMON_TOOLS_ACCESS_LIST_H
#define FILTER_COMMON_TOOLS_ACCESS_LIST_H

#include "port_pairs.h"
#include "problems.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>
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

enum class AccessAction { PERMIT, DENY };

struct AccessRule {
    std::size_t line = 0; /**< counted from 1 */
    Prefix source;
    Prefix destination;
    PortRange sourcePorts;
    PortRange destinationPorts;
    std::optional<std::uint8_t> protocol; /**< none for any protocol */
    std::optional<AccessAction> action;   /**< none if the line does not say */
};

using AccessList = std::vector<AccessRule>;

/** The rules of all well-formed lines; adds what is wrong with the others to @p problems. */
AccessList readAccessList(std::string_view text, std::vector<Problem>& problems);

/** The fewest pairs that cover the range, in ascending order. */
std::vector<FiltersCommon::PortPair> coverPortRange(const PortRange& range);

} // namespace filterctl

#endif // FILTER_COMMON_TOOLS_ACCESS_LIST_H
