#include "kind_codes.h"

#include "filter_groups.h"
#include "filter_names.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <fstream>
#include <limits>
#include <map>
#include <regex>
#include <set>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

namespace FiltersCommon {
namespace {

std::string read(const char* path)
{
    std::ifstream file(path);
    std::ostringstream text;
    text << file.rdbuf();
    if (!file || text.str().empty())
        throw std::runtime_error(path);
    return text.str();
}

/** The enumerators of an enumeration by their numbers, as the header declares them. */
std::map<std::int64_t, std::string> declaredIn(const char* header, const std::string& enumeration)
{
    const std::string text = read(header);
    std::smatch body;
    if (!std::regex_search(text, body,
                           std::regex("enum " + enumeration + "\\b[^{;]*\\{([^}]*)\\}")))
        throw std::runtime_error(enumeration);
    const std::string enumerators = body[1];
    const std::regex one("(\\w+) = (-?\\d+)");
    std::map<std::int64_t, std::string> declared;
    for (std::sregex_iterator it(enumerators.begin(), enumerators.end(), one), end; it != end; ++it)
        declared[std::stoll((*it)[2])] = (*it)[1];
    return declared;
}

/** An enumeration that has names, and the function that tells them. */
struct Named {
    const char* header;
    const char* enumeration;
    std::size_t size;
    const char* (*name)(std::int32_t code);
};

void PrintTo(const Named& named, std::ostream* out) { *out << named.enumeration; }

/** The function for a plain number. */
template <class Code, const char* (*NAME)(Code)>
const char* byNumber(std::int32_t code)
{
    return NAME(static_cast<Code>(code));
}

const Named NAMED[] = {
    {FILTER_TYPES_HEADER, "filtersErr_t", 9, byNumber<filtersErr_t, filtersErrName>},
    {FILTER_TYPES_HEADER, "filtersMatch_t", test::MATCH_KINDS,
     byNumber<filtersMatch_t, filtersMatchName>},
    {FILTER_TYPES_HEADER, "filtersAction_t", test::ACTION_KINDS,
     byNumber<filtersAction_t, filtersActionName>},
    {FILTER_TYPES_HEADER, "filtersGroupStage_t", 4,
     byNumber<filtersGroupStage_t, filtersGroupStageName>},
    {FILTER_TYPES_HEADER, "filtersGroupType_t", 10,
     byNumber<filtersGroupType_t, filtersGroupTypeName>},
    {FILTER_TYPES_HEADER, "filtersRefusalReason_t", 26,
     byNumber<filtersRefusalReason_t, filtersRefusalReasonName>},
    {FILTER_TYPES_HEADER, "filtersPart_t", 5, byNumber<filtersPart_t, filtersPartName>},
#ifdef POLICER_COMMON_HEADER
    {POLICER_COMMON_HEADER, "Stage", 3, byNumber<std::uint32_t, filtersPolicerStageName>},
#endif
};

/** Every code near the enumerators, and the ends of what an enumeration can hold. */
std::vector<std::int32_t> codes()
{
    std::vector<std::int32_t> codes = {std::numeric_limits<std::int32_t>::min(),
                                       std::numeric_limits<std::int32_t>::max(), -256, 256, 65536};
    for (std::int32_t code = -100; code <= 100; ++code)
        codes.push_back(code);
    return codes;
}

class FilterNames : public testing::TestWithParam<Named> {};

TEST_P(FilterNames, AreTheEnumerators)
{
    const auto declared = declaredIn(GetParam().header, GetParam().enumeration);
    EXPECT_EQ(declared.size(), GetParam().size);
    for (const auto& [code, enumerator] : declared)
        EXPECT_EQ(GetParam().name(static_cast<std::int32_t>(code)), enumerator);
}

TEST_P(FilterNames, AnyOtherCodeIsUnknown)
{
    const auto declared = declaredIn(GetParam().header, GetParam().enumeration);
    std::size_t unknown = 0;
    for (const std::int32_t code : codes())
        if (declared.count(code) == 0) {
            EXPECT_STREQ(GetParam().name(code), "unknown") << code;
            ++unknown;
        }
    EXPECT_EQ(unknown, codes().size() - GetParam().size);
}

TEST_P(FilterNames, AreConstant)
{
    for (const std::int32_t code : codes())
        EXPECT_EQ(GetParam().name(code), GetParam().name(code));
}

INSTANTIATE_TEST_SUITE_P(Every, FilterNames, testing::ValuesIn(NAMED),
                         [](const auto& row) { return std::string(row.param.enumeration); });

TEST(PolicerStageNames, AreTheEnumerators)
{
    EXPECT_STREQ(filtersPolicerStageName(policer::STAGE_INGRESS), "STAGE_INGRESS");
    EXPECT_STREQ(filtersPolicerStageName(policer::STAGE_EGRESS), "STAGE_EGRESS");
    EXPECT_STREQ(filtersPolicerStageName(policer::STAGE_NONE), "STAGE_NONE");
    EXPECT_STREQ(filtersPolicerStageName(3), "unknown");
    EXPECT_STREQ(filtersPolicerStageName(0xFFFFFFFF), "unknown");
}

} // namespace
} // namespace FiltersCommon
