#include "filter_groups.pb.h"
#include "support.h"

#include <gtest/gtest.h>

#include <iterator>
#include <type_traits>
#include <utility>

namespace FiltersCommon {
namespace {

// ----------------------------------------------------------------------------- widths, at compile

template <class E>
constexpr bool isOpenEnumeration()
{
    return std::is_enum_v<E> && std::is_convertible_v<E, int> &&
           std::is_same_v<std::underlying_type_t<E>, std::int32_t> && sizeof(E) == 4 &&
           static_cast<std::uint32_t>(static_cast<E>(-1)) == 0xFFFFFFFF &&
           static_cast<std::uint32_t>(static_cast<E>(0x7FFFFFFF)) == 0x7FFFFFFF;
}

static_assert(isOpenEnumeration<filtersMatch_t>());
static_assert(isOpenEnumeration<filtersAction_t>());
static_assert(isOpenEnumeration<filtersErr_t>());
static_assert(isOpenEnumeration<filtersGroupStage_t>());
static_assert(isOpenEnumeration<filtersGroupType_t>());
static_assert(isOpenEnumeration<counter_type_t>());
static_assert(isOpenEnumeration<port_type_t>());
static_assert(isOpenEnumeration<l2SrcEntryType_t>());
static_assert(isOpenEnumeration<en_Resolution>());
static_assert(isOpenEnumeration<en_StpState>());
static_assert(isOpenEnumeration<en_ForwardingType>());
static_assert(isOpenEnumeration<cp2cpuCancelParam_t>());

static_assert(std::is_same_v<filtersEntryId_t, std::uint16_t>);
static_assert(std::is_same_v<filtersEntryPriority_t, std::uint32_t>);
static_assert(std::is_same_v<filtersGroupId_t, std::uint16_t>);
static_assert(std::is_same_v<filtersGroupPriority_t, std::uint16_t>);
static_assert(std::is_same_v<tpid_t, std::uint16_t>);
static_assert(std::is_same_v<l4port_t, std::uint16_t>);

static_assert(sizeof(vlan_info_t) == 4 && sizeof(vlan_info_t::svcVlanType) == 4);
static_assert(std::is_trivially_copyable_v<vlan_info_t>);
static_assert(sizeof(limid_t) == 4 && std::is_trivially_copyable_v<limid_t>);

// ----------------------------------------------------------------------------------------- values

// Those of the kinds are in samples.h.

template <class E>
using Numbers = std::pair<E, int>;

template <class E, std::size_t N>
void expectNumbers(const Numbers<E> (&table)[N])
{
    for (const auto& [enumerator, number] : table)
        EXPECT_EQ(static_cast<int>(enumerator), number);
}

TEST(FilterTypes, EveryResultHasItsCode)
{
    constexpr Numbers<filtersErr_t> TABLE[] = {
        {FILTERS_OK, 0},
        {FILTERS_ERR_NOT_FOUND, -3},
        {FILTERS_ERR_INVALID, -4},
        {FILTERS_ERR_BAD_PARAM, -5},
        {FILTERS_ERR_MATCH_NOT_ALLOWED, -6},
        {FILTERS_ERR_TYPE_NOT_ALLOWED, -7},
        {FILTERS_ERR_UNKNOWN_STAGE, -8},
        {FILTERS_ERR_ACTION_NOT_ALLOWED, -9},
        {FILTERS_ERR_POLICER_STAGE, -10},
    };
    expectNumbers(TABLE);
}

TEST(FilterTypes, EveryGroupStageHasItsCode)
{
    constexpr Numbers<filtersGroupStage_t> TABLE[] = {
        {GROUP_STAGE_0, 0},
        {GROUP_STAGE_1, 1},
        {GROUP_STAGE_2, 2},
        {GROUP_STAGE_3, 3},
    };
    expectNumbers(TABLE);
}

TEST(FilterTypes, EveryGroupTypeHasItsCode)
{
    constexpr Numbers<filtersGroupType_t> TABLE[] = {
        {GROUP_TYPE_0, 0}, {GROUP_TYPE_1, 1}, {GROUP_TYPE_2, 2}, {GROUP_TYPE_3, 3},
        {GROUP_TYPE_4, 4}, {GROUP_TYPE_5, 5}, {GROUP_TYPE_6, 6}, {GROUP_TYPE_7, 7},
        {GROUP_TYPE_8, 8}, {GROUP_TYPE_9, 9},
    };
    expectNumbers(TABLE);
}

TEST(FilterTypes, EveryCounterTypeHasItsCode)
{
    constexpr Numbers<counter_type_t> TABLE[] = {
        {COUNTER_TYPE_INVALID, 0},
        {COUNTER_TYPE_PACKETS, 1},
        {COUNTER_TYPE_OCTETS, 2},
    };
    expectNumbers(TABLE);
}

TEST(FilterTypes, SmallEnumerationsHaveTheirCodes)
{
    EXPECT_EQ(static_cast<int>(PORT_TYPE_CPU), 0);
    EXPECT_EQ(static_cast<int>(L2_SRC_ENTRY_TYPE_0), 0);
    EXPECT_EQ(static_cast<int>(RESOLUTION_0), 0);
    EXPECT_EQ(static_cast<int>(STP_STATE_0), 0);
    EXPECT_EQ(static_cast<int>(FORWARDING_TYPE_0), 0);
    EXPECT_EQ(static_cast<int>(COPY_TO_CPU_CANCEL), 0);
    EXPECT_EQ(static_cast<int>(SWITCH_TO_CPU_CANCEL), 1);
}

// ------------------------------------------------------------------------ codes beyond the tables

class UnknownCode : public testing::TestWithParam<std::uint32_t> {};

INSTANTIATE_TEST_SUITE_P(FilterTypes, UnknownCode,
                         testing::Values(10, 31, 32, 0x7FFFFFFF, 0x80000000, 0xFFFFFFFF),
                         [](const auto& code) { return std::to_string(code.param); });

TEST_P(UnknownCode, IsAnsweredAsAnUnknownStage)
{
    const auto stage = static_cast<filtersGroupStage_t>(GetParam());
    const FiltersEntry entry;
    FiltersGroup group(1);
    EXPECT_EQ(group.groupStageValidation(stage, GROUP_TYPE_0), FILTERS_ERR_UNKNOWN_STAGE);
    EXPECT_EQ(group.groupActionValidation(entry, stage), FILTERS_ERR_UNKNOWN_STAGE);
    EXPECT_EQ(group.setStage(stage), FILTERS_ERR_UNKNOWN_STAGE);
}

TEST_P(UnknownCode, IsAnsweredAsAnUnknownType)
{
    const auto type = static_cast<filtersGroupType_t>(GetParam());
    const FiltersEntry entry;
    FiltersGroup group(1);
    EXPECT_EQ(group.groupStageValidation(GROUP_STAGE_0, type), FILTERS_ERR_TYPE_NOT_ALLOWED);
    EXPECT_EQ(group.groupMatchValidation(entry, type), FILTERS_ERR_INVALID);
    EXPECT_EQ(group.setType(type), FILTERS_ERR_TYPE_NOT_ALLOWED);
}

// ------------------------------------------------------------------------ widths, across the wire

TEST(FilterTypes, GroupPriority65535SurvivesTheWire)
{
    FiltersGroup group(1);
    group.setPriority(65535);
    std::string bytes;
    group.serialize(&bytes);
    EXPECT_EQ(FiltersGroup(bytes).getPriority(), 65535);
}

TEST(FilterTypes, GroupPriority65536FromTheWireBecomes0)
{
    FiltersGroupPB pb;
    pb.set_priority_(65536);
    FiltersGroup group(1);
    group.setPriority(5);
    group.convertFromFiltersGroupPB(&pb);
    EXPECT_EQ(group.getPriority(), 0);
}

TEST(FilterTypes, EntryPriorityIs32BitsWideUnlikeThatOfAGroup)
{
    FiltersEntry entry;
    entry.setPriority(0xFFFFFFFF);
    std::string bytes;
    entry.serialize(&bytes);
    EXPECT_EQ(FiltersEntry(bytes).getPriority(), 0xFFFFFFFF);
}

} // namespace
} // namespace FiltersCommon
