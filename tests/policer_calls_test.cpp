// Over a policer library that sees what it is asked for: policers are constructed once each, and
// only from bytes that end up in an entry.

#include "policer_stand_in.h"
#include "wire_bytes.h"

#include "filter_refusals.h"

#include "filter_groups.pb.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace FiltersCommon::test {
namespace {

using namespace wire;
using Requests = std::vector<std::string>;

/** The fields of an entry in the order in which the library writes them. */
std::string entryBytes(std::uint32_t id, const std::string& policer)
{
    return number(1, id) + number(2, 7) + delimited(3, policer) +
           delimited(6, number(1, 0) + number(2, 0));
}

std::string groupBytes(const std::string& entries)
{
    return number(1, 1) + number(2, 0) + number(3, 2) + number(4, 3) + entries;
}

template <class T>
Requests requestsOf(const std::string& bytes)
{
    policer::takeRequests();
    T object(bytes);
    return policer::takeRequests();
}

TEST(PolicerCalls, OfAnEntryAsTheLibraryWritesIt)
{
    FiltersEntry entry(3);
    entry.setPolicer(policer::Policer(9, policer::STAGE_INGRESS, policer::Mode(), {}));
    std::string bytes;
    entry.serialize(&bytes);
    EXPECT_EQ(requestsOf<FiltersEntry>(bytes), Requests({"P:9 0"}));
    EXPECT_TRUE(FiltersEntry(bytes) == entry);

    FiltersEntryPB pb;
    entry.convertToFiltersEntryPB(&pb);
    policer::takeRequests();
    FiltersEntry(1).convertFromFiltersEntryPB(&pb);
    EXPECT_EQ(policer::takeRequests(), Requests({"P:9 0"}));
}

/** The bytes of a policer that nothing was ever set to are known without asking. */
TEST(PolicerCalls, OfAnEntryWithoutAPolicerAreNone)
{
    std::string bytes;
    FiltersEntry(3).serialize(&bytes);
    EXPECT_EQ(requestsOf<FiltersEntry>(bytes), Requests());
}

TEST(PolicerCalls, OfAnEntryThatOnlyTheParserUnderstands)
{
    const std::string id = number(1, 3);
    const std::string priority = number(2, 7);
    const std::string counter = delimited(6, number(1, 0) + number(2, 0));
    const std::string policer = delimited(3, "P:9 0");
    const std::string whole = entryBytes(3, "P:9 0");
    for (const std::string& bytes :
         {whole + number(UNKNOWN, 1), whole + fixed32(UNKNOWN), whole + "\x80", whole + "\x0b",
          id + priority + policer + counter + counter, id + priority + policer,
          id + priority + policer + delimited(4, number(1, 12) + number(9, 3, 2)) + counter,
          id + priority + policer + delimited(5, number(1, 5) + "\x18") + counter,
          number(1, 3, 2) + priority + policer + counter, counter + policer + priority + id,
          id + priority + policer + delimited(6, number(2, 0) + number(1, 0))})
        EXPECT_EQ(requestsOf<FiltersEntry>(bytes), Requests({"P:9 0"})) << bytes;
}

TEST(PolicerCalls, OfAFieldThatIsThereTwiceAreForTheLast)
{
    EXPECT_EQ(requestsOf<FiltersEntry>(entryBytes(3, "P:1 0") + delimited(3, "P:2 0")),
              Requests({"P:2 0"}));
    EXPECT_EQ(requestsOf<FiltersEntry>(number(1, 3) + number(2, 7) + delimited(3, "P:1 0") +
                                       delimited(3, "P:2 0")),
              Requests({"P:2 0"}));
}

TEST(PolicerCalls, OfMalformedBytesAreRefusedOnce)
{
    const std::size_t before = policer::refusals();
    for (const char* malformed : {"Q:9 0", "P:9", "P:9 0 and more", "\x08"}) {
        EXPECT_EQ(requestsOf<FiltersEntry>(entryBytes(3, malformed)), Requests({malformed}));
        EXPECT_EQ(requestsOf<FiltersEntry>(entryBytes(3, malformed) + number(UNKNOWN, 1)),
                  Requests({malformed}));
    }
    EXPECT_EQ(policer::refusals(), before + 8);
}

TEST(PolicerCalls, OfAGroupAreOneForEachEntry)
{
    const std::string first = delimited(5, entryBytes(1, "P:1 0"));
    const std::string refused = delimited(5, entryBytes(2, "P:2 1")); // of another stage
    const std::string replacing = delimited(5, entryBytes(1, "P:3 2"));
    const std::string broken = delimited(5, entryBytes(4, "P:4 0") + number(UNKNOWN, 1));
    const std::string cut = tag(5, DELIMITED) + varint(100) + entryBytes(5, "P:5 0");
    EXPECT_EQ(requestsOf<FiltersGroup>(groupBytes(first + refused + replacing)),
              Requests({"P:1 0", "P:2 1", "P:3 2"}));
    EXPECT_EQ(requestsOf<FiltersGroup>(groupBytes(first + refused + replacing + broken)),
              Requests({"P:1 0", "P:2 1", "P:3 2", "P:4 0"}));
    EXPECT_EQ(requestsOf<FiltersGroup>(groupBytes(first) + number(UNKNOWN, 1)),
              Requests({"P:1 0"}));
    // What the parser made of the entry before it gave up counts.
    const FiltersGroup group(groupBytes(first + cut));
    EXPECT_EQ(requestsOf<FiltersGroup>(groupBytes(first + cut)).size(),
              group.getEntriesRef().size());
}

TEST(PolicerCalls, OfTheRefusalsOfBytesAreThoseOfReadingThem)
{
    const std::string entry = entryBytes(1, "P:1 0");
    policer::takeRequests();
    readEntryRefusals(entry);
    EXPECT_EQ(policer::takeRequests(), Requests({"P:1 0"}));
    readGroupRefusals(groupBytes(delimited(5, entry)) + number(UNKNOWN, 1));
    EXPECT_EQ(policer::takeRequests(), Requests({"P:1 0"}));
}

} // namespace
} // namespace FiltersCommon::test
