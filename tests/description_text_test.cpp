#include "description_text.h"

#include <gtest/gtest.h>

namespace {

using namespace filterctl;
using namespace FiltersCommon;

TEST(DescriptionText, OfEachTypeOfValue)
{
    const FiltersDescription part = {{"Color", {std::string("Red")}}, {"PCP", {std::int64_t{3}}}};
    EXPECT_EQ(textOf({{"Number", {std::int64_t{-7}}},
                      {"Truth", {true}},
                      {"Other", {false}},
                      {"Text", {std::string("eth0/1")}},
                      {"None", {std::vector<FiltersValue>()}},
                      {"List", {std::vector<FiltersValue>{{std::int64_t{5}}, {part}}}}}),
              "Number: -7, Truth: true, Other: false, Text: eth0/1, None: [], "
              "List: [5, {Color: Red, PCP: 3}]");
    EXPECT_EQ(textOf({}), "");
}

TEST(DescriptionText, NamesOfStagesAndTypes)
{
    EXPECT_EQ(nameOf(GROUP_STAGE_3), "GROUP_STAGE_3");
    EXPECT_EQ(nameOf(static_cast<filtersGroupStage_t>(4)), "4");
    EXPECT_EQ(nameOf(GROUP_TYPE_9), "GROUP_TYPE_9");
    EXPECT_EQ(nameOf(static_cast<filtersGroupType_t>(-1)), "-1");
}

} // namespace
