#include "samples.h"
#include "wire_support.h"

#include <gtest/gtest.h>

#include <functional>
#include <stdexcept>
#include <string>
#include <type_traits>
#include <typeinfo>
#include <utility>
#include <vector>

namespace {

using namespace FiltersCommon;
using namespace FiltersCommon::test;

/** The bytes of the buffer, including its terminating zero. */
std::string contents(const FiltersSerialized& buffer)
{
    return buffer.data() == nullptr ? std::string() : std::string(buffer.data(), buffer.size());
}

const std::string WITH_ZEROS("a\0b\0", 4);

// ---------------------------------------------------------------------------------------- filling

TEST(FiltersSerialized, IsEmptyAtFirst)
{
    const FiltersSerialized buffer;
    EXPECT_EQ(buffer.size(), 0u);
    EXPECT_EQ(buffer.data(), nullptr);
}

TEST(FiltersSerialized, HoldsTheBytesAndATerminatingZeroThatItsSizeCounts)
{
    for (const std::string& bytes : {std::string(), std::string("a"), std::string("filters"),
                                     WITH_ZEROS, std::string(100000, 'x')}) {
        FiltersSerialized filled;
        filled.setData(bytes);
        FiltersSerialized copied;
        copied.copyData(bytes);
        const FiltersSerialized built(bytes);
        for (const auto& buffer : {std::cref<FiltersSerialized>(filled),
                                   std::cref<FiltersSerialized>(copied), std::cref(built)}) {
            EXPECT_EQ(buffer.get().size(), bytes.size() + 1);
            EXPECT_EQ(contents(buffer), bytes + '\0');
        }
    }
}

TEST(FiltersSerialized, OwnsItsBytes)
{
    std::string bytes = "filters";
    const FiltersSerialized buffer(bytes);
    bytes = "changed";
    EXPECT_STREQ(buffer.data(), "filters");
}

TEST(FiltersSerialized, MayBeFilledAgainByCopyData)
{
    FiltersSerialized buffer("a long string that takes some room");
    buffer.copyData("short");
    EXPECT_EQ(contents(buffer), std::string("short\0", 6));
    buffer.copyData("");
    EXPECT_EQ(contents(buffer), std::string("\0", 1));
}

constexpr char SECOND_FILL[] = "filter_serialized[^:]*:40: virtual void "
                               "FiltersCommon::FiltersSerialized::setData\\(const string&\\): "
                               "Assertion `data_ == nullptr' failed\\.";

TEST(FiltersSerializedDeathTest, DiesWhenSetDataFillsItASecondTime)
{
    FiltersSerialized set;
    set.setData("a");
    EXPECT_DEATH(set.setData("b"), SECOND_FILL);
    FiltersSerialized built("a");
    EXPECT_DEATH(built.setData("b"), SECOND_FILL);
    FiltersSerialized copied;
    copied.copyData("");
    EXPECT_DEATH(copied.setData(""), SECOND_FILL);
}

TEST(FiltersSerializedDeathTest, DiesWhenASecondEntryOrGroupIsWrittenIntoIt)
{
    FiltersSerialized buffer;
    FiltersEntry().serialize(&buffer);
    EXPECT_DEATH(FiltersEntry().serialize(&buffer), SECOND_FILL);
    EXPECT_DEATH(FiltersGroup(0).serialize(&buffer), SECOND_FILL);
}

TEST(FiltersSerializedDeathTest, NamesTheBareSourceFile)
{
    FiltersSerialized buffer("a");
    EXPECT_DEATH(buffer.setData("b"), "(^|: )filter_serialized\\.cpp:40: ");
}

// ----------------------------------------------------------------------------- copying and moving

TEST(FiltersSerialized, IsCopiedWithBytesOfItsOwn)
{
    FiltersSerialized original(WITH_ZEROS);
    const FiltersSerialized copy(original);
    EXPECT_NE(copy.data(), original.data());
    original.copyData("changed");
    EXPECT_EQ(contents(copy), WITH_ZEROS + '\0');
}

TEST(FiltersSerialized, IsAssignedWithBytesOfItsOwn)
{
    FiltersSerialized original(WITH_ZEROS);
    FiltersSerialized copy("what was there before");
    copy = original;
    EXPECT_NE(copy.data(), original.data());
    original.copyData("changed");
    EXPECT_EQ(contents(copy), WITH_ZEROS + '\0');
}

TEST(FiltersSerialized, MayBeAssignedToItself)
{
    FiltersSerialized buffer("filters");
    const FiltersSerialized& same = buffer;
    buffer = same;
    EXPECT_EQ(contents(buffer), std::string("filters\0", 8));
}

TEST(FiltersSerialized, CopiesEmptinessToo)
{
    const FiltersSerialized empty;
    FiltersSerialized copy(empty);
    EXPECT_EQ(copy.size(), 0u);
    EXPECT_EQ(copy.data(), nullptr);
    copy.setData("a");
    copy = empty;
    EXPECT_EQ(copy.size(), 0u);
    EXPECT_EQ(copy.data(), nullptr);
}

TEST(FiltersSerialized, IsEmptyWhenMovedFromAndMayBeFilledAgain)
{
    FiltersSerialized original("filters");
    const char* bytes = original.data();
    FiltersSerialized moved(std::move(original));
    EXPECT_EQ(moved.data(), bytes);
    EXPECT_EQ(moved.size(), 8u);
    EXPECT_EQ(original.size(), 0u);
    EXPECT_EQ(original.data(), nullptr);
    original.setData("again");

    FiltersSerialized assigned("what was there before");
    assigned = std::move(moved);
    EXPECT_EQ(assigned.data(), bytes);
    EXPECT_EQ(moved.size(), 0u);
    EXPECT_EQ(moved.data(), nullptr);
}

// ----------------------------------------------------------------------------- virtual operations

static_assert(std::has_virtual_destructor_v<FiltersSerialized>);
static_assert(std::is_same_v<decltype(FiltersSerialized().size()), std::uint32_t>);
static_assert(std::is_nothrow_move_constructible_v<FiltersSerialized>);

// The two constructors differ deliberately.
static_assert(std::is_constructible_v<FiltersEntry, const FiltersSerialized&>);
static_assert(std::is_constructible_v<FiltersGroup, FiltersSerialized&>);
static_assert(!std::is_constructible_v<FiltersGroup, const FiltersSerialized&>);

TEST(FiltersSerialized, KeepsItsVirtualFunctionsInTheirSlots)
{
    EXPECT_EQ(slotOf(&FiltersSerialized::size), 2);
    EXPECT_EQ(slotOf(&FiltersSerialized::setData), 3);
    EXPECT_EQ(slotOf(&FiltersSerialized::copyData), -1);
    EXPECT_EQ(slotOf(&FiltersSerialized::data), -1);
}

/** Keeps what it is given beside the buffer. */
class Recorder : public FiltersSerialized {
public:
    void setData(const std::string& s) override { given_.push_back(s); }

    const std::vector<std::string>& given() const { return given_; }

private:
    std::vector<std::string> given_;
};

TEST(FiltersSerialized, IsHandedTheBytesThroughTheVirtualSetData)
{
    const FiltersEntry entry(7);
    const FiltersGroup group(8);
    Recorder recorder;
    entry.serialize(&recorder);
    group.serialize(&recorder);
    EXPECT_EQ(recorder.given(), (std::vector<std::string>{serialized(entry), serialized(group)}));
    EXPECT_EQ(recorder.data(), nullptr);
}

/** Claims a size that does not depend on what it holds. */
class Claiming : public FiltersSerialized {
public:
    explicit Claiming(std::uint32_t size) : claimed_(size) {}

    std::uint32_t size() const override { return claimed_; }

private:
    std::uint32_t claimed_;
};

TEST(FiltersSerialized, IsReadAsFarAsTheVirtualSizeSays)
{
    const QuietParser quiet;
    FiltersGroup group(7);
    const auto one = static_cast<std::uint32_t>(serialized(group).size());
    group.insertEntry(FiltersEntry(5));
    Claiming shortened(one);
    shortened.copyData(serialized(group));
    EXPECT_TRUE(FiltersGroup(shortened) == FiltersGroup(7));

    Claiming nothing(0);
    nothing.copyData(serialized(group));
    EXPECT_TRUE(FiltersGroup(nothing) == FiltersGroup(0));

    // Only an identifier: the tag and one byte.
    Claiming identifier(2);
    identifier.copyData(serialized(FiltersEntry(7)));
    EXPECT_TRUE(FiltersEntry(identifier) == FiltersEntry(7));
}

/** The exception from building a T from the buffer. */
template <class T>
std::string errorOf(FiltersSerialized& buffer)
{
    try {
        T object(buffer);
        return "none";
    } catch (const std::logic_error& error) {
        EXPECT_EQ(typeid(error), typeid(std::logic_error));
        return error.what();
    }
}

TEST(FiltersSerialized, RaisesALogicErrorWhereItHasASizeButNoData)
{
    for (const std::uint32_t size : {1u, 8u, 0xFFFFFFFFu}) {
        Claiming buffer(size);
        EXPECT_EQ(errorOf<FiltersEntry>(buffer), "basic_string::_M_construct null not valid");
        EXPECT_EQ(errorOf<FiltersGroup>(buffer), "basic_string::_M_construct null not valid");
    }
}

TEST(FiltersSerialized, GivesAnEmptyEntryAndGroupWhereItIsEmpty)
{
    const QuietParser quiet;
    FiltersSerialized buffer;
    EXPECT_TRUE(FiltersEntry(buffer) == FiltersEntry());
    EXPECT_TRUE(FiltersGroup(buffer) == FiltersGroup(0));
}

// ----------------------------------------------------------------------------------- entry, group

TEST(FiltersSerialized, HoldsOneByteMoreThanTheBytesOfAnEntryOrGroup)
{
    const FiltersEntry entry;
    FiltersSerialized ofEntry;
    entry.serialize(&ofEntry);
    EXPECT_EQ(contents(ofEntry), serialized(entry) + '\0');

    const FiltersGroup group(7);
    FiltersSerialized ofGroup;
    group.serialize(&ofGroup);
    EXPECT_EQ(contents(ofGroup), serialized(group) + '\0');
}

TEST(FiltersSerialized, MayBeReadAnyNumberOfTimes)
{
    const FiltersEntry entry(7);
    FiltersSerialized buffer;
    entry.serialize(&buffer);
    EXPECT_TRUE(FiltersEntry(buffer) == entry);
    EXPECT_TRUE(FiltersEntry(buffer) == entry);
}

} // namespace
