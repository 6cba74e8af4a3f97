#include "samples.h"

#include "filter_counter.pb.h"

#include <gtest/gtest.h>

#include <iomanip>
#include <limits>
#include <sstream>
#include <string>
#include <type_traits>
#include <utility>

namespace FiltersCommon {
namespace {

counter_type_t counterType(std::int32_t number) { return static_cast<counter_type_t>(number); }

Counter read(std::int32_t id, std::int32_t type)
{
    CounterPB pb;
    pb.set_id(id);
    pb.set_type(type);
    return Counter(pb);
}

// ------------------------------------------------------------------------------------------ model

static_assert(!std::is_polymorphic_v<Counter>);
static_assert(std::is_trivially_copyable_v<Counter>);
static_assert(std::is_same_v<decltype(std::declval<const Counter&>().GetId()), unsigned short>);
static_assert(std::is_same_v<decltype(std::declval<const Counter&>().GetType()), counter_type_t>);

TEST(FilterCounter, DefaultCountsNothing)
{
    EXPECT_EQ(Counter().GetId(), 0);
    EXPECT_EQ(Counter().GetType(), COUNTER_TYPE_INVALID);
    EXPECT_TRUE(Counter() == Counter(0, COUNTER_TYPE_INVALID));
    EXPECT_FALSE(Counter() != Counter(0, COUNTER_TYPE_INVALID));
}

TEST(FilterCounter, KeepsAnyIdentifierAndAnyType)
{
    for (const std::int32_t type : {0, 1, 2, 3, 7, -1, 0x12345678}) {
        const Counter counter(65535, counterType(type));
        EXPECT_EQ(counter.GetId(), 65535);
        EXPECT_EQ(static_cast<std::int32_t>(counter.GetType()), type);
    }
}

TEST(FilterCounter, ComparesIdentifierAndType)
{
    const Counter counter(5, COUNTER_TYPE_PACKETS);
    EXPECT_TRUE(counter == Counter(5, COUNTER_TYPE_PACKETS));
    EXPECT_FALSE(counter != Counter(5, COUNTER_TYPE_PACKETS));
    EXPECT_TRUE(counter != Counter(5, COUNTER_TYPE_OCTETS));
    EXPECT_FALSE(counter == Counter(5, COUNTER_TYPE_OCTETS));
    EXPECT_TRUE(counter != Counter(6, COUNTER_TYPE_PACKETS));
    EXPECT_FALSE(counter == Counter(6, COUNTER_TYPE_PACKETS));
    EXPECT_FALSE(counter == Counter(0x0105, COUNTER_TYPE_PACKETS));
    EXPECT_FALSE(counter == Counter(5, counterType(0x01000001)));
}

TEST(FilterCounter, IdentifierStandsBeforeTheType)
{
    const Counter counter(0xA5B6, counterType(0x11223344));
    EXPECT_EQ(test::positionIn(counter, std::uint16_t{0xA5B6}), 0u);
    EXPECT_EQ(test::positionIn(counter, std::int32_t{0x11223344}), sizeof(Counter) - 4);
}

// ------------------------------------------------------------------------------------------- wire

TEST(FilterCounter, SerializeSetsBothFields)
{
    CounterPB pb;
    Counter(65535, counterType(7)).Serialize(&pb);
    EXPECT_EQ(pb.id(), 65535);
    EXPECT_EQ(pb.type(), 7);

    pb.Clear();
    Counter().Serialize(&pb);
    EXPECT_TRUE(pb.IsInitialized());
    EXPECT_EQ(pb.id(), 0);
    EXPECT_EQ(pb.type(), 0);
}

TEST(FilterCounter, SurvivesTheWire)
{
    for (const std::int32_t type : {0, 1, 2, 3, -1}) {
        const Counter counter(65535, counterType(type));
        CounterPB pb;
        counter.Serialize(&pb);
        EXPECT_TRUE(Counter(pb) == counter);
    }
}

TEST(FilterCounter, KeepsTheLow16BitsOfTheIdentifierFromTheWire)
{
    EXPECT_EQ(read(65535, 1).GetId(), 65535);
    EXPECT_EQ(read(65536, 1).GetId(), 0);
    EXPECT_EQ(read(70000, 1).GetId(), 4464);
    EXPECT_EQ(read(-1, 1).GetId(), 65535);
    EXPECT_EQ(read(std::numeric_limits<std::int32_t>::min(), 1).GetId(), 0);
}

TEST(FilterCounter, KeepsTheWholeTypeFromTheWire)
{
    for (const std::int32_t type : {0, 1, 2, 3, 65536, -1})
        EXPECT_EQ(static_cast<std::int32_t>(read(1, type).GetType()), type);
}

TEST(FilterCounter, MissingFieldsReadAsZero) { EXPECT_TRUE(Counter(CounterPB()) == Counter()); }

// ------------------------------------------------------------------------------------------- text

TEST(FilterCounter, PrintsTwoLinesWithoutAFinalLineEnd)
{
    EXPECT_EQ(test::dump(Counter(12, COUNTER_TYPE_OCTETS)), "ID: 12\nType: Octets");
    EXPECT_EQ(test::dump(Counter(65535, COUNTER_TYPE_PACKETS)), "ID: 65535\nType: Packets");
    EXPECT_EQ(test::dump(Counter()), "ID: 0\nType: Invalid");
}

TEST(FilterCounter, PrintsUnknownForAnyOtherType)
{
    for (const std::int32_t type : {3, 7, -1})
        EXPECT_EQ(test::dump(Counter(1, counterType(type))), "ID: 1\nType: Unknown");
}

TEST(FilterCounter, AppliesTheWidthOfTheStreamToBothLabels)
{
    std::ostringstream out;
    out << std::setfill('.') << std::setw(8) << Counter(12, COUNTER_TYPE_OCTETS);
    EXPECT_EQ(out.str(), "....ID: 12\n..Type: Octets");
}

} // namespace
} // namespace FiltersCommon
