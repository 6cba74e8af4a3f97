/**
 * For tests of what reading loses: bytes of entries and groups, and losses.
 */
#ifndef FILTER_COMMON_TESTS_READING_SUPPORT_H
#define FILTER_COMMON_TESTS_READING_SUPPORT_H

#include "refusals_support.h"
#include "wire_bytes.h"

#include <cstdint>
#include <string>

namespace FiltersCommon::test {

inline const std::string COUNTER = wire::delimited(6, wire::number(1, 0) + wire::number(2, 0));
inline const std::string ENTRY_HEAD =
    wire::number(1, 7) + wire::number(2, 0) + wire::delimited(3, "");
inline const std::string GROUP_HEAD =
    wire::number(1, 1) + wire::number(2, 0) + wire::number(3, 0) + wire::number(4, 3);

inline std::string entryOf(const std::string& elements) { return ENTRY_HEAD + elements + COUNTER; }
/** The same in an order in which the library does not write. */
inline std::string reordered(const std::string& elements)
{
    return COUNTER + elements + ENTRY_HEAD;
}
inline std::string groupOf(const std::string& entries) { return GROUP_HEAD + entries; }

/** What is lost, but for where in the bytes. */
inline Refusals withoutOffsets(Refusals refusals)
{
    for (FiltersRefusal& refusal : refusals)
        refusal.offset.reset();
    return refusals;
}

/** The loss in a field of entry 7, or of the group. */
inline FiltersRefusal lossIn(filtersRefusalReason_t reason, filtersPart_t part, std::uint32_t field)
{
    return refusal(reason, [=](FiltersRefusal& r) {
        if (part != PART_GROUP)
            r.entry = filtersEntryId_t{7};
        r.part = part;
        r.field = field;
    });
}

inline FiltersRefusal changeIn(filtersRefusalReason_t reason, filtersPart_t part,
                               std::uint32_t field, std::uint64_t was, std::uint64_t became)
{
    FiltersRefusal loss = lossIn(reason, part, field);
    loss.was = was;
    loss.became = became;
    return loss;
}

} // namespace FiltersCommon::test

#endif // FILTER_COMMON_TESTS_READING_SUPPORT_H
