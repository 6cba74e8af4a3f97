// What reading loses of matches and actions: each loss on each field where it can occur, in bytes of
// the form that the library writes and in others.

#include "reading_support.h"
#include "wire_support.h"

#include <google/protobuf/descriptor.h>

#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <vector>

namespace {

using namespace FiltersCommon;
using namespace FiltersCommon::test;
using google::protobuf::Descriptor;
using google::protobuf::FieldDescriptor;

// -------------------------------------------------------------------------- matches and actions

/** How wide the member is that a kind reads a field into: bits of a number, bytes of an address. */
struct Width {
    std::uint32_t kind;
    std::uint32_t field;
    unsigned width;
};

// clang-format off
const std::vector<Width> MATCH_WIDTHS = {
    {MATCH_INGRESS_PORTS, 2, 32}, {MATCH_INGRESS_PORTS, 20, 32},
    {MATCH_EXTERNAL_VLAN_ID, 3, 16},
    {MATCH_TPID, 4, 16},
    {MATCH_DST_MAC, 5, 6}, {MATCH_DST_MAC, 7, 6},
    {MATCH_DST_L4_PORT, 6, 16}, {MATCH_DST_L4_PORT, 18, 16},
    {MATCH_SRC_L4_PORT, 6, 16}, {MATCH_SRC_L4_PORT, 18, 16},
    {MATCH_SRC_MAC, 5, 6}, {MATCH_SRC_MAC, 7, 6},
    {MATCH_L2_SRC_ENTRY_TYPE, 13, 32},
    {MATCH_SRC_IPV4, 8, 4}, {MATCH_SRC_IPV4, 10, 4},
    {MATCH_DST_IPV4, 8, 4}, {MATCH_DST_IPV4, 10, 4},
    {MATCH_INTERNAL_VLAN_ID, 3, 16},
    {MATCH_PCP, 9, 8},
    {MATCH_INTERNAL_PCP, 9, 8},
    {MATCH_SRC_IPV6, 11, 16}, {MATCH_SRC_IPV6, 12, 16},
    {MATCH_DST_IPV6, 11, 16}, {MATCH_DST_IPV6, 12, 16},
    {MATCH_IP_PROTOCOL, 14, 8},
    {MATCH_PACKET_RES, 15, 32},
    {MATCH_MPLS_TERM, 26, 1},
    {MATCH_TOS, 16, 8},
    {MATCH_VIRTUAL_PORT, 17, 32},
    {MATCH_EGRESS_PORTS, 2, 32},
    {MATCH_INGRESS_STP_STATE, 19, 32},
    {MATCH_VLAN_INFO, 21, 32},
    {MATCH_SRC_PORT, 17, 32},
    {MATCH_TTL, 22, 8},
    {MATCH_VRF_ID, 23, 16},
    {MATCH_DROP, 24, 1},
    {MATCH_FORWARDING_TYPE, 25, 32},
};
const std::vector<Width> ACTION_WIDTHS = {
    {ACTION_BLOCK_EGRESS_PORTS, 2, 32},
    {ACTION_COPY_TO_CPU_CANCEL, 7, 32},
    {ACTION_SET_PCP, 3, 8},
    {ACTION_SET_PCP_AND_QUEUE, 4, 8},
    {ACTION_SET_INNER_PCP, 3, 8},
    {ACTION_SET_DSCP, 5, 8},
    {ACTION_MAP_TO_COS_QUEUE, 6, 8},
    {ACTION_MAP_TO_CPU_COS_QUEUE, 6, 8},
    {ACTION_REDIRECT, 2, 32},
    {ACTION_REPLACE_DST_MAC, 8, 6},
    {ACTION_REPLACE_SRC_MAC, 8, 6},
    {ACTION_L3_SWITCH, 9, 32},
};
// clang-format on

/** The two sorts of element. */
struct Sort {
    filtersPart_t part;
    std::uint32_t field; ///< of an entry
    std::size_t kinds;
    const std::vector<Width>& widths;
    const Descriptor& message;

    unsigned width(std::uint32_t kind, std::uint32_t of) const
    {
        for (const Width& row : widths)
            if (row.kind == kind && row.field == of)
                return row.width;
        return 0;
    }

    FiltersRefusal of(std::uint32_t kind, FiltersRefusal loss) const
    {
        if (part == PART_MATCH)
            loss.match = static_cast<filtersMatch_t>(kind);
        else
            loss.action = static_cast<filtersAction_t>(kind);
        return loss;
    }
};

const std::vector<Sort>& sorts()
{
    static const std::vector<Sort> sorts = {
        {PART_MATCH, 4, MATCH_KINDS, MATCH_WIDTHS, *MatchPB::descriptor()},
        {PART_ACTION, 5, ACTION_KINDS, ACTION_WIDTHS, *ActionPB::descriptor()},
    };
    return sorts;
}

/** Calls @p use with each kind of each sort, and each field that is not the kind's own code. */
template <class Use>
void forEachField(Use use)
{
    for (const Sort& sort : sorts())
        for (std::uint32_t kind = 0; kind < sort.kinds; ++kind)
            for (int i = 0; i < sort.message.field_count(); ++i) {
                const FieldDescriptor& field = *sort.message.field(i);
                SCOPED_TRACE(std::to_string(kind) + " " + field.name());
                if (field.number() != 1)
                    use(sort, kind, field, static_cast<std::uint32_t>(field.number()));
            }
}

/** Expects the losses of an element, in both orders of the fields around it. */
void expectLosses(const Sort& sort, std::uint32_t kind, const std::string& fields,
                  const Refusals& expected)
{
    const std::string element = wire::delimited(sort.field, wire::number(1, kind) + fields);
    EXPECT_EQ(withoutOffsets(readEntryRefusals(entryOf(element))), expected);
    EXPECT_EQ(withoutOffsets(readEntryRefusals(reordered(element))), expected);
}

TEST(ReadingLoses, NumbersThatAreTooWideForTheirMember)
{
    forEachField([](const Sort& sort, std::uint32_t kind, const FieldDescriptor& field,
                    std::uint32_t number) {
        const unsigned width = sort.width(kind, number);
        if (width == 0 || field.type() == FieldDescriptor::TYPE_BYTES)
            return;
        const bool isTruth = field.type() == FieldDescriptor::TYPE_BOOL;
        const std::uint64_t most = (std::uint64_t{1} << width) - 1;
        expectLosses(sort, kind, wire::number(number, most), {});
        const std::uint64_t more = most + 1;
        const FiltersRefusal loss =
            changeIn(REFUSAL_NUMBER_CUT, sort.part, number, more, isTruth ? 1 : 0);
        expectLosses(sort, kind, wire::number(number, more), {sort.of(kind, loss)});
    });
}

TEST(ReadingLoses, AddressesThatAreNotAsLongAsTheirMember)
{
    forEachField([](const Sort& sort, std::uint32_t kind, const FieldDescriptor& field,
                    std::uint32_t number) {
        const unsigned width = sort.width(kind, number);
        if (width == 0 || field.type() != FieldDescriptor::TYPE_BYTES)
            return;
        // The library writes all fields of a kind: without the other one, bytes are not regular.
        expectLosses(sort, kind, "", {});
        for (const unsigned length : {0u, 1u, width - 1, width, width + 1, width + 100}) {
            Refusals expected;
            if (length != width)
                expected.push_back(sort.of(
                    kind, changeIn(REFUSAL_LENGTH_CHANGED, sort.part, number, length, width)));
            expectLosses(sort, kind, wire::delimited(number, std::string(length, 'x')), expected);
        }
    });
}

TEST(ReadingLoses, FieldsThatTheKindDoesNotUse)
{
    forEachField([](const Sort& sort, std::uint32_t kind, const FieldDescriptor& field,
                    std::uint32_t number) {
        if (sort.width(kind, number) != 0)
            return;
        const bool isBytes = field.type() == FieldDescriptor::TYPE_BYTES;
        expectLosses(sort, kind, isBytes ? wire::delimited(number, "") : wire::number(number, 0),
                     {sort.of(kind, lossIn(REFUSAL_FIELD_NOT_OF_KIND, sort.part, number))});
    });
}

FiltersRefusal replacedIn(const Sort& sort, std::uint32_t kind)
{
    const auto reason = sort.part == PART_MATCH ? REFUSAL_MATCH_REPLACED : REFUSAL_ACTION_REPLACED;
    return sort.of(kind, refusal(reason, [](FiltersRefusal& r) { r.entry = filtersEntryId_t{7}; }));
}

TEST(ReadingLoses, TheFirstOfTwoElementsOfAKind)
{
    for (const Sort& sort : sorts())
        for (const Width& row : sort.widths) {
            SCOPED_TRACE(row.kind);
            const bool isBytes =
                sort.message.FindFieldByNumber(static_cast<int>(row.field))->type() ==
                FieldDescriptor::TYPE_BYTES;
            const auto element = [&](char value) {
                return wire::delimited(
                    sort.field,
                    wire::number(1, row.kind) +
                        (isBytes ? wire::delimited(row.field, std::string(row.width, value))
                                 : wire::number(row.field, static_cast<std::uint64_t>(value))));
            };
            const FiltersRefusal loss = replacedIn(sort, row.kind);
            const std::string two = element(1) + element(0);
            EXPECT_EQ(readEntryRefusals(entryOf(two)), Refusals{loss});
            EXPECT_EQ(readEntryRefusals(reordered(two)), Refusals{loss});
            // Also if they are equal: two were written, and one is held.
            EXPECT_EQ(readEntryRefusals(entryOf(element(1) + element(1))), Refusals{loss});
        }
    for (const Sort& sort : sorts())
        for (std::uint32_t kind = 0; kind < sort.kinds; ++kind) {
            const std::string element = wire::delimited(sort.field, wire::number(1, kind));
            EXPECT_EQ(readEntryRefusals(entryOf(element + element)),
                      Refusals{replacedIn(sort, kind)});
        }
}

TEST(ReadingLoses, NothingOfAVlanThatIsThereTwice)
{
    for (const filtersMatch_t kind : {MATCH_EXTERNAL_VLAN_ID, MATCH_INTERNAL_VLAN_ID})
        expectLosses(sorts()[0], static_cast<std::uint32_t>(kind),
                     wire::number(3, 20) + wire::number(3, 10) + wire::number(3, 20), {});
    expectLosses(sorts()[0], MATCH_INTERNAL_VLAN_ID,
                 wire::delimited(3, wire::varint(20) + wire::varint(10)), {});
}

} // namespace
