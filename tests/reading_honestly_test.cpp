// The promise of the functions that say what reading loses, for any bytes: if nothing is lost, the
// object says what the bytes say.

#include "meaning.h"
#include "named_entries.h"
#include "refusals_support.h"
#include "wire_bytes.h"
#include "wire_support.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <optional>
#include <string>

namespace {

using namespace FiltersCommon;
using namespace FiltersCommon::test;

bool have(const Refusals& losses, filtersRefusalReason_t reason)
{
    return std::any_of(losses.begin(), losses.end(),
                       [=](const FiltersRefusal& loss) { return loss.reason == reason; });
}

/** @return whether nothing is lost */
template <class PB, class T>
bool expectHonest(const std::string& bytes, const T& object, const Refusals& losses)
{
    const std::string meaning = meaningOf<PB>(bytes);
    EXPECT_EQ(have(losses, REFUSAL_NOT_PARSED), meaning == UNREADABLE);
    if (meaning != UNREADABLE) {
        EXPECT_EQ(have(losses, REFUSAL_FIELD_UNKNOWN),
                  meaning.find("unknown:") != std::string::npos);
    }
    if (losses.empty()) {
        EXPECT_EQ(meaningOf<PB>(serialized(object)), meaning);
    }
    for (const FiltersRefusal& loss : losses)
        EXPECT_LE(loss.offset.value_or(0), bytes.size());
    return losses.empty();
}

bool expectHonestEntry(const std::string& bytes)
{
    return expectHonest<FiltersEntryPB>(bytes, FiltersEntry(bytes), readEntryRefusals(bytes));
}

bool expectHonestGroup(const std::string& bytes)
{
    Refusals losses = {FiltersRefusal(REFUSAL_UNKNOWN_STAGE)};
    const FiltersGroup group = groupFromBytes(bytes, &losses);
    EXPECT_TRUE(group == FiltersGroup(bytes));
    EXPECT_EQ(losses, readGroupRefusals(bytes));
    return expectHonest<FiltersGroupPB>(bytes, group, losses);
}

/** A group of all sorts of entry, most of which it admits. */
std::string richGroup()
{
    FiltersGroup group(1);
    place(group, GROUP_STAGE_2, GROUP_TYPE_3);
    FiltersGroupPB pb = written(group);
    for (const Named<FiltersEntry>& sample : entrySamples())
        sample.object->convertToFiltersEntryPB(pb.add_entries_());
    return bytesOf(pb);
}

TEST(ReadingHonestly, SaysNothingOfWhatTheLibraryWrote)
{
    for (const Named<FiltersEntry>& sample : entrySamples()) {
        EXPECT_TRUE(expectHonestEntry(serialized(*sample.object))) << sample.name;
        EXPECT_TRUE(expectHonestEntry(serialized(*sample.object) + '\0')) << sample.name;
    }
    for (const Named<FiltersGroup>& sample : groupSamples()) {
        EXPECT_TRUE(expectHonestGroup(serialized(*sample.object))) << sample.name;
        EXPECT_TRUE(expectHonestGroup(serialized(*sample.object) + '\0')) << sample.name;
    }
}

TEST(ReadingHonestly, OfAGroupWhoseLossesNobodyAsksFor)
{
    const std::string bytes = richGroup();
    EXPECT_EQ(stateOf(groupFromBytes(bytes, nullptr)), stateOf(FiltersGroup(bytes)));
}

TEST(ReadingHonestly, OfEveryBeginning)
{
    const QuietParser quiet;
    const std::string bytes = richGroup();
    for (std::size_t size = 0; size <= bytes.size(); ++size) {
        SCOPED_TRACE(size);
        expectHonestGroup(bytes.substr(0, size));
        expectHonestEntry(bytes.substr(0, size));
    }
}

/** Reads the bytes with each bit flipped in turn. @return how often nothing was lost */
template <class Read>
std::size_t flipEachBit(std::string bytes, Read read)
{
    std::size_t lossless = 0;
    for (std::size_t i = 0; i < 8 * bytes.size(); ++i) {
        SCOPED_TRACE(i);
        const auto bit = static_cast<char>(1 << i % 8);
        bytes[i / 8] = static_cast<char>(bytes[i / 8] ^ bit);
        lossless += read(bytes) ? 1 : 0;
        bytes[i / 8] = static_cast<char>(bytes[i / 8] ^ bit);
    }
    return lossless;
}

TEST(ReadingHonestly, OfEveryBitThatIsFlipped)
{
    const QuietParser quiet;
    std::size_t lossless = 0;
    for (const Named<FiltersGroup>& sample : groupSamples())
        if (sample.object->getEntriesRef().size() < 5)
            lossless += flipEachBit(serialized(*sample.object), expectHonestGroup);
    EXPECT_GT(lossless, 100u); // the value of a number, say, or the bytes of an address
    for (const Named<FiltersEntry>& sample : entrySamples())
        lossless += flipEachBit(serialized(*sample.object), expectHonestEntry);
    EXPECT_GT(lossless, 1000u);
}

TEST(ReadingHonestly, OfRandomBytes)
{
    const QuietParser quiet;
    RandomBytes random;
    const std::string bytes = richGroup();
    for (int i = 0; i < 1000; ++i) {
        SCOPED_TRACE(i);
        expectHonestGroup(random.mutated(bytes));
        const std::string any = random.any(64);
        expectHonestGroup(any);
        expectHonestEntry(any);
    }
}

// ----------------------------------------------------------------------------- where reading stops

/** Where the bytes of a group cannot be read any further. */
std::optional<std::uint64_t> stopIn(const std::string& bytes)
{
    expectHonestGroup(bytes);
    const Refusals losses = readGroupRefusals(bytes);
    if (!have(losses, REFUSAL_NOT_PARSED))
        return {};
    EXPECT_EQ(losses.front().reason, REFUSAL_NOT_PARSED);
    return losses.front().offset;
}

TEST(ReadingHonestly, SaysWhereTheBytesCannotBeRead)
{
    using namespace wire;
    const QuietParser quiet;
    const std::string head = number(1, 1) + number(2, 0) + number(3, 0) + number(4, 3); // 8 bytes
    EXPECT_EQ(stopIn("\x07"), 0u);
    EXPECT_EQ(stopIn("no group at all"), 0u);
    EXPECT_EQ(stopIn(head), std::nullopt);
    EXPECT_EQ(stopIn(head + '\0'), std::nullopt);
    EXPECT_EQ(stopIn(head + std::string(2, '\0')), 8u);
    EXPECT_EQ(stopIn(head + '\0' + head), 8u);
    EXPECT_EQ(stopIn(number(9, 1) + '\0' + head), 2u);
    EXPECT_EQ(stopIn(head + tag(5, END_GROUP)), 8u);
    EXPECT_EQ(stopIn(head + tag(9, GROUP) + number(1, 1)), 8u);
    EXPECT_EQ(stopIn(head + tag(9, GROUP) + tag(8, END_GROUP)), 8u);
    EXPECT_EQ(stopIn(head + fixed32(9).substr(0, 3)), 8u);
    EXPECT_EQ(stopIn(head + fixed64(9).substr(0, 8)), 8u);
    EXPECT_EQ(stopIn(head + delimited(9, "long").substr(0, 5)), 8u);
    EXPECT_EQ(stopIn(head + tag(1, VARINT) + std::string(10, '\xFF') + '\1'), 8u);
    EXPECT_EQ(stopIn(head + std::string(5, '\xFF') + '\1'), 8u);
    // In the entry that begins at 10: at its own end, in a field, in a match.
    EXPECT_EQ(stopIn(head + tag(5, DELIMITED) + varint(9) + number(1, 7)), 12u);
    EXPECT_EQ(stopIn(head + delimited(5, number(1, 7) + "\x07")), 12u);
    EXPECT_EQ(stopIn(head + delimited(5, number(1, 7) + delimited(4, number(1, 0) + '\0'))), 16u);
    EXPECT_EQ(stopIn(head + delimited(5, delimited(4, delimited(2, "\x80")))), 14u);
}

TEST(ReadingHonestly, FollowsGroupsAsDeepAsTheParser)
{
    const QuietParser quiet;
    std::string inner;
    for (int depth = 1; depth <= 103; ++depth) {
        inner = wire::group(9, inner);
        SCOPED_TRACE(depth);
        expectHonestGroup(inner);
        expectHonestEntry(inner);
        expectHonestGroup(wire::delimited(5, inner));
    }
}

TEST(ReadingHonestly, SaysNotWhatIsMissingBehindTheEnd)
{
    const std::string none;
    EXPECT_EQ(readGroupRefusals(none).size(), 4u); // an empty message lacks its required fields
    EXPECT_EQ(readGroupRefusals("\x07").size(), 1u);
}

} // namespace
