/**
 * A typical rule from end to end: built, put into a group, sent to another process, and printed.
 */
#include "filter_groups.h"

#include <arpa/inet.h>

#include <cstdlib>
#include <iostream>

using namespace FiltersCommon;

namespace {

in_addr ipv4(const char* text)
{
    in_addr address{};
    if (inet_pton(AF_INET, text, &address) != 1) {
        std::cerr << "not an IPv4 address: " << text << "\n";
        std::exit(EXIT_FAILURE);
    }
    return address;
}

void answered(const char* step, filtersErr_t result)
{
    std::cout << step << (result == FILTERS_OK ? ": done" : ": refused with ");
    if (result != FILTERS_OK)
        std::cout << result;
    std::cout << "\n";
}

} // namespace

int main()
{
    std::cout << "1. A rule: deny what goes to 192.0.2.0/24.\n";
    FiltersEntry entry(7);
    entry.setPriority(100);
    const MatchDstIPv4 destination(ipv4("192.0.2.0"), ipv4("255.255.255.0"));
    answered("   set the IPv4 destination", entry.setMatch(destination));
    answered("   set the action deny", entry.setAction(ActionDeny()));
    // The rule stores copies, and refuses contradictions.
    answered("   set an IPv6 destination too", entry.setMatch(MatchDstIPv6(in6addr_loopback)));

    std::cout << "2. A group, whose type and stage decide which rules it holds.\n";
    FiltersGroup group(1);
    answered("   insert into a new group, of type 0", group.insertEntry(entry));
    answered("   set type 3, five-tuple rules", group.setType(GROUP_TYPE_3));
    answered("   insert again", group.insertEntry(entry));
    answered("   set stage 3, which has no type 3", group.setStage(GROUP_STAGE_3));

    std::cout << "3. The group as bytes.\n";
    FiltersSerialized envelope;
    group.serialize(&envelope);
    std::cout << "   " << envelope.size() << " bytes, a terminating zero included\n";

    std::cout << "4. The same group in another process, from the bytes alone.\n";
    const FiltersGroup rebuilt(envelope);
    std::cout << "   equal to the first: " << (rebuilt == group ? "yes" : "no") << "\n";

    std::cout << "5. What it holds.\n" << rebuilt;
    return rebuilt == group ? EXIT_SUCCESS : EXIT_FAILURE;
}
