// Entries and groups are written and read without a message where that is possible. What this gives
// is held here against the message, at every width that a number or a length can have.

#include "named_entries.h"
#include "wire_bytes.h"
#include "wire_support.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <list>
#include <string>
#include <utility>
#include <vector>

namespace {

using namespace FiltersCommon;
using namespace FiltersCommon::test;

/** Both ways of writing give the same bytes, and both ways of reading these the same object. */
template <class Message, class T>
void expectAsByMessage(const T& object)
{
    const std::string bytes = serialized(object);
    ASSERT_EQ(bytes, written(object).SerializeAsString());
    EXPECT_EQ(T(bytes), object);
    // In front of a field that the library does not know, the bytes go through a message.
    const std::string unknownField = "\xF8\x07\x01";
    EXPECT_EQ(T(bytes + unknownField), object);
}

void expectAsByMessage(const FiltersEntry& entry) { expectAsByMessage<FiltersEntryPB>(entry); }

/** The least and the greatest number of each width, in steps of so many bits. */
std::vector<std::uint32_t> numbersOfEachWidth(unsigned bits)
{
    std::vector<std::uint32_t> numbers = {0, 1};
    for (unsigned shift = bits; shift < 32; shift += bits) {
        numbers.push_back((std::uint32_t{1} << shift) - 1);
        numbers.push_back(std::uint32_t{1} << shift);
    }
    numbers.push_back(0xFFFFFFFF);
    return numbers;
}

TEST(DirectBytes, OfEachKindAreThoseOfTheMessage)
{
    for (const Named<FiltersEntry>& sample : entriesOfEachKind()) {
        SCOPED_TRACE(sample.name);
        expectAsByMessage(*sample.object);
    }
}

TEST(DirectBytes, OfEachSampleAreThoseOfTheMessage)
{
    for (const Named<FiltersEntry>& sample : entrySamples()) {
        SCOPED_TRACE(sample.name);
        if (sample.name == "dscp") // read back as another class
            EXPECT_EQ(serialized(*sample.object), written(*sample.object).SerializeAsString());
        else
            expectAsByMessage(*sample.object);
    }
    for (const Named<FiltersGroup>& sample : groupSamples()) {
        SCOPED_TRACE(sample.name);
        expectAsByMessage<FiltersGroupPB>(*sample.object);
    }
}

TEST(DirectBytes, HoldNumbersOfEachWidth)
{
    for (const std::uint32_t number : numbersOfEachWidth(7)) {
        SCOPED_TRACE(number);
        FiltersEntry entry(static_cast<filtersEntryId_t>(number));
        entry.setPriority(number);
        entry.setAction(ActionL3Switch(number));
        entry.setMatch(MatchVirtualPort(
            limId(number >> 24, (number >> 16) & 0xFF, (number >> 8) & 0xFF, number & 0xFF)));
        entry.setCounter(Counter(static_cast<unsigned short>(number), COUNTER_TYPE_PACKETS));
        expectAsByMessage(entry);
    }
}

TEST(DirectBytes, HoldSignedNumbersOfEachWidth)
{
    for (const std::uint32_t number : numbersOfEachWidth(7)) {
        SCOPED_TRACE(number);
        FiltersEntryPB pb = written(FiltersEntry(1));
        pb.mutable_counter_()->set_type(static_cast<std::int32_t>(number));
        FiltersEntry entry;
        entry.convertFromFiltersEntryPB(&pb);
        expectAsByMessage(entry);
    }
}

/** Ports that take so many bytes; there are none that take one. */
std::list<limid_t> portsOf(std::size_t bytes)
{
    const limid_t of2 = limId(0, 0, 0, 1);
    const limid_t of3 = limId(0, 0, 1, 0);
    const limid_t of6 = limId(255, 0, 0, 0);
    std::list<limid_t> ports;
    for (; bytes >= 8; bytes -= 6)
        ports.push_back(of6);
    if (bytes % 2 != 0 && bytes >= 3) {
        ports.push_back(of3);
        bytes -= 3;
    }
    for (; bytes >= 2; bytes -= 2)
        ports.push_back(of2);
    return ports;
}

/** Past every length at which the length of the match, or of the entry, takes a byte more. */
TEST(DirectBytes, HoldPartsOfEachLength)
{
    std::vector<std::size_t> lengths;
    for (std::size_t length = 2; length < 200; ++length)
        lengths.push_back(length);
    for (std::size_t length = 16384 - 60; length < 16384 + 10; ++length)
        lengths.push_back(length);
    for (const std::size_t length : {2097148u, 2097149u, 2097150u, 2097151u})
        lengths.push_back(length);

    for (const std::size_t length : lengths) {
        SCOPED_TRACE(length);
        FiltersGroup group(1);
        group.setType(GROUP_TYPE_3);
        FiltersEntry entry(1);
        entry.setMatch(MatchIngressPorts(portsOf(length)));
        entry.setAction(ActionPermit());
        ASSERT_EQ(group.insertEntry(entry), FILTERS_OK);
        ASSERT_EQ(group.insertEntry(FiltersEntry(2)), FILTERS_OK);
        expectAsByMessage(entry);
        expectAsByMessage<FiltersGroupPB>(group);
    }
}

/** What is not in the shortest form, or not whole, is the parser's. */
TEST(DirectBytes, AreLeftToTheParserWhereTheyAreNotAsWritten)
{
    const QuietParser quiet;
    const std::string bytes = serialized(*entriesOfEachKind().back().object);
    const std::vector<std::string> ends = {
        std::string("\0", 1),                         // the end of an envelope
        std::string("\0\0", 2),                       // and more behind it
        std::string("\0\x08\x02", 3),                 // which is not read
        std::string("\x08\x02", 2),                   // the identifier again
        std::string("\x10\x80", 2),                   // cut in a number
        std::string("\x10\x80\0", 3),                 // longer than it must be
        std::string("\x10\xFF\xFF\xFF\xFF\x7F", 6),   // more than 32 bits
        std::string("\x0B\x0C", 2),                   // a group
        std::string("\x0C", 1),                       // the end of a group that never began
        std::string("\x22\x80\x80\x80\x80\x80\0", 7), // a length that is too long
        std::string("\x22\x7F", 2),                   // more promised than there is
    };
    for (const std::string& end : ends) {
        SCOPED_TRACE(testing::PrintToString(end));
        FiltersEntry expected;
        const FiltersEntryPB left = parsed<FiltersEntryPB>(bytes + end);
        expected.convertFromFiltersEntryPB(&left);
        EXPECT_EQ(FiltersEntry(bytes + end), expected);
    }
}

/** Numbers and lengths in more bytes than they must have, and in more than the parser takes. */
TEST(DirectBytes, AreLeftToTheParserWhereANumberIsLongerThanItMustBe)
{
    const QuietParser quiet;
    const std::string policer = "\x1A\x01?";
    const std::string counter = "\x32\x04\x08\x03\x10\x01";
    const std::pair<std::string, std::string> around[] = {
        {"\x08", "\x10\x02" + policer + counter}, // the identifier
        {"\x08\x01\x10", policer + counter},      // the priority
        {"\x08\x01\x10\x02\x1A", counter},        // the length of the policer
    };
    for (const auto& [before, after] : around)
        for (std::size_t more = 1; more <= 11; ++more)
            for (const char last : {'\0', '\1'}) {
                const std::string bytes = before + std::string(more, '\x80') + last + after;
                SCOPED_TRACE(testing::PrintToString(bytes));
                FiltersEntry expected;
                const FiltersEntryPB left = parsed<FiltersEntryPB>(bytes);
                expected.convertFromFiltersEntryPB(&left);
                EXPECT_EQ(FiltersEntry(bytes), expected);
            }
}

/** A truth is any number but 0, of all 64 bits. */
TEST(DirectBytes, AreLeftToTheParserWhereATruthIsWide)
{
    const std::pair<filtersMatch_t, std::uint32_t> fields[] = {
        {MATCH_DROP, MatchPB::kDropFlagFieldNumber},
        {MATCH_MPLS_TERM, MatchPB::kMplsTerminatedFieldNumber}};
    for (const auto& [kind, field] : fields)
        for (unsigned bit = 0; bit <= 64; ++bit) {
            SCOPED_TRACE(bit);
            const std::uint64_t number = bit == 64 ? 0 : std::uint64_t{1} << bit;
            const std::string match =
                wire::number(1, static_cast<std::uint32_t>(kind)) + wire::number(field, number);
            const std::string counter = wire::number(1, 3) + wire::number(2, COUNTER_TYPE_PACKETS);
            const FiltersEntry entry(wire::number(1, 7) + wire::number(2, 8) +
                                     wire::delimited(3, "?") + wire::delimited(4, match) +
                                     wire::delimited(6, counter));
            FiltersEntry expected(7);
            expected.setPriority(8);
            expected.setCounter(Counter(3, COUNTER_TYPE_PACKETS));
            if (kind == MATCH_DROP)
                expected.setMatch(MatchDrop(number != 0));
            else
                expected.setMatch(MatchMplsTerm(number != 0));
            EXPECT_EQ(entry, expected);
        }
}

/** An address whose length promises more than there is, in each kind that has one. */
TEST(DirectBytes, AreLeftToTheParserWhereAnAddressIsCut)
{
    const QuietParser quiet;
    for (const char* address : {"\x04\x2A", "\x04\x3A", "\x07\x2A", "\x09\x42", "\x09\x52",
                                "\x0A\x42", "\x0E\x5A", "\x0F\x62"}) {
        const std::string bytes = "\x08\x01\x10\x02\x1A\x01?\x22\x04\x08" + std::string(address) +
                                  "\x7F\x32\x04\x08\x03\x10\x01";
        SCOPED_TRACE(testing::PrintToString(bytes));
        FiltersEntry expected;
        const FiltersEntryPB left = parsed<FiltersEntryPB>(bytes);
        expected.convertFromFiltersEntryPB(&left);
        EXPECT_EQ(FiltersEntry(bytes), expected);
    }
}

} // namespace
