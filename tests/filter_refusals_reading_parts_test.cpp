// What reading loses of the fields of each message, of whole entries and of policers.

#include "reading_support.h"
#include "wire_support.h"

#include <google/protobuf/descriptor.h>

#include <gtest/gtest.h>

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace {

using namespace FiltersCommon;
using namespace FiltersCommon::test;
using google::protobuf::Descriptor;
using google::protobuf::FieldDescriptor;

constexpr std::uint64_t ALL_ONES = 0xFFFFFFFF;

// ------------------------------------------------------------------------------------- each part

/** A message by its fields, and the bytes of an entry or a group around them. */
struct Around {
    filtersPart_t part;
    const Descriptor& message;
    std::string (*wrap)(const std::string& fields);
    std::vector<std::string> fields; ///< the required ones, in the order of their numbers

    /** All required fields, but @p left. */
    std::string required(std::size_t left = ~std::size_t{0}) const
    {
        std::string bytes;
        for (std::size_t i = 0; i < fields.size(); ++i)
            if (i != left)
                bytes += fields[i];
        return bytes;
    }

    Refusals losses(const std::string& content) const
    {
        const std::string bytes = wrap(content);
        return part == PART_GROUP ? readGroupRefusals(bytes) : readEntryRefusals(bytes);
    }
};

const std::vector<Around>& parts()
{
    using namespace wire;
    static const std::vector<Around> parts = {
        {PART_GROUP,
         *FiltersGroupPB::descriptor(),
         [](const std::string& fields) { return fields; },
         {number(1, 5), number(2, 5), number(3, 0), number(4, 3)}},
        {PART_ENTRY,
         *FiltersEntryPB::descriptor(),
         [](const std::string& fields) { return fields; },
         {number(1, 7), number(2, 5), delimited(3, ""), COUNTER}},
        {PART_COUNTER,
         *CounterPB::descriptor(),
         [](const std::string& fields) { return ENTRY_HEAD + delimited(6, fields); },
         {number(1, 5), number(2, 1)}},
        {PART_MATCH,
         *MatchPB::descriptor(),
         [](const std::string& fields) { return entryOf(delimited(4, fields)); },
         {number(1, MATCH_VLAN_UNTAGGED)}},
        {PART_ACTION,
         *ActionPB::descriptor(),
         [](const std::string& fields) { return entryOf(delimited(5, fields)); },
         {number(1, ACTION_DENY)}},
    };
    return parts;
}

/** The loss with the kind that the elements of parts() have. */
FiltersRefusal ofItsKind(FiltersRefusal loss, std::uint32_t match = MATCH_VLAN_UNTAGGED,
                         std::uint32_t action = ACTION_DENY)
{
    if (loss.part == PART_MATCH)
        loss.match = static_cast<filtersMatch_t>(match);
    if (loss.part == PART_ACTION)
        loss.action = static_cast<filtersAction_t>(action);
    return loss;
}

TEST(ReadingLoses, NothingOfThePartsBelow)
{
    for (const Around& part : parts())
        EXPECT_EQ(part.losses(part.required()), Refusals()) << part.message.name();
}

TEST(ReadingLoses, RequiredFieldsThatAreMissing)
{
    for (const Around& part : parts()) {
        std::size_t index = 0;
        for (int i = 0; i < part.message.field_count(); ++i) {
            const FieldDescriptor& field = *part.message.field(i);
            if (!field.is_required())
                continue;
            SCOPED_TRACE(field.full_name());
            FiltersRefusal loss = ofItsKind(lossIn(REFUSAL_FIELD_MISSING, part.part,
                                                   static_cast<std::uint32_t>(field.number())),
                                            0, 0);
            if (part.part == PART_ENTRY && field.number() == 1)
                loss.entry = filtersEntryId_t{0};
            EXPECT_EQ(part.losses(part.required(index++)), Refusals{loss});
        }
        EXPECT_EQ(index, part.fields.size());
    }
}

TEST(ReadingLoses, FieldsThatTheSchemaDoesNotHave)
{
    using namespace wire;
    for (const Around& part : parts())
        for (const std::uint32_t field : {27u, 100u, UNKNOWN})
            for (const std::string& unknown :
                 {number(field, 1), fixed32(field), fixed64(field), delimited(field, "any"),
                  group(field, number(1, 1) + group(2, fixed32(3)))}) {
                SCOPED_TRACE(part.message.name() + " " + std::to_string(field));
                FiltersRefusal loss = ofItsKind(lossIn(REFUSAL_FIELD_UNKNOWN, part.part, field));
                const Refusals losses = part.losses(part.required() + unknown);
                EXPECT_EQ(withoutOffsets(losses), Refusals{loss});
                const std::string whole = part.wrap(part.required() + unknown);
                EXPECT_EQ(whole.substr(static_cast<std::size_t>(losses.at(0).offset.value()),
                                       unknown.size()),
                          unknown);
            }
}

TEST(ReadingLoses, FieldsWhoseValueHasAnotherForm)
{
    using namespace wire;
    for (const Around& part : parts())
        for (int i = 0; i < part.message.field_count(); ++i) {
            const FieldDescriptor& field = *part.message.field(i);
            SCOPED_TRACE(field.full_name());
            const auto at = static_cast<std::uint32_t>(field.number());
            const bool isNumber = field.cpp_type() != FieldDescriptor::CPPTYPE_STRING &&
                                  field.cpp_type() != FieldDescriptor::CPPTYPE_MESSAGE;
            std::vector<std::string> others = {fixed32(at), fixed64(at), wire::group(at, "")};
            if (!isNumber)
                others.push_back(number(at, 1));
            else if (!field.is_repeated())
                others.push_back(delimited(at, "\1"));
            for (const std::string& other : others)
                EXPECT_EQ(withoutOffsets(part.losses(part.required() + other)),
                          Refusals{ofItsKind(lossIn(REFUSAL_FIELD_UNKNOWN, part.part, at))});
        }
}

TEST(ReadingLoses, BitsOfNumbersThatNoFieldCanHold)
{
    for (const Around& part : parts())
        for (std::size_t i = 0; i < part.fields.size(); ++i) {
            if ((part.fields[i][0] & 7) != wire::VARINT)
                continue;
            const auto at = static_cast<std::uint32_t>(part.fields[i][0]) >> 3;
            SCOPED_TRACE(part.message.name() + " " + std::to_string(at));
            const auto value = static_cast<std::uint64_t>(part.fields[i][1]);
            const std::uint64_t wide = value | std::uint64_t{1} << 35;
            EXPECT_EQ(
                withoutOffsets(part.losses(part.required(i) + wire::number(at, wide))),
                Refusals{ofItsKind(changeIn(REFUSAL_NUMBER_CUT, part.part, at, wide, value))});
        }
}

TEST(ReadingLoses, TheFirstOfTwoValuesOfAField)
{
    for (const Around& part : parts())
        for (const std::string& field : part.fields) {
            if ((field[0] & 7) != wire::VARINT)
                continue;
            const auto at = static_cast<std::uint32_t>(field[0]) >> 3;
            SCOPED_TRACE(part.message.name() + " " + std::to_string(at));
            const auto value = static_cast<std::uint64_t>(field[1]);
            EXPECT_EQ(part.losses(part.required() + field), Refusals()) << "the same again";
            const std::string both = part.required() + wire::number(at, 0) + field;
            if (value == 0)
                continue;
            EXPECT_EQ(
                withoutOffsets(part.losses(both)),
                (Refusals{ofItsKind(changeIn(REFUSAL_FIELD_REPLACED, part.part, at, value, 0)),
                          ofItsKind(changeIn(REFUSAL_FIELD_REPLACED, part.part, at, 0, value))}));
        }
    const Refusals ofBytes = readEntryRefusals(entryOf("") + wire::delimited(3, "other"));
    ASSERT_EQ(ofBytes.size(), 2u);
    EXPECT_EQ(ofBytes[0].reason, REFUSAL_POLICER_NOT_PARSED);
    EXPECT_EQ(withoutOffsets({ofBytes[1]}),
              Refusals{lossIn(REFUSAL_FIELD_REPLACED, PART_ENTRY, 3)});
}

TEST(ReadingLoses, OfACounterThatIsThereTwiceWhatIsInBoth)
{
    using namespace wire;
    const auto losses = [](const std::string& first, const std::string& second) {
        return withoutOffsets(
            readEntryRefusals(ENTRY_HEAD + delimited(6, first) + delimited(6, second)));
    };
    EXPECT_EQ(losses(number(1, 5), number(2, 1)), Refusals());
    EXPECT_EQ(losses(number(1, 5) + number(2, 1), number(1, 6)),
              Refusals{changeIn(REFUSAL_FIELD_REPLACED, PART_COUNTER, 1, 5, 6)});
    EXPECT_EQ(losses(number(1, 5), ""), Refusals{lossIn(REFUSAL_FIELD_MISSING, PART_COUNTER, 2)});
}

TEST(ReadingLoses, NumbersOfGroupsEntriesAndCountersThatAreTooWide)
{
    using namespace wire;
    const auto cut = [](filtersPart_t part, std::uint32_t field, std::uint64_t was,
                        std::uint64_t became) {
        return Refusals{changeIn(REFUSAL_NUMBER_CUT, part, field, was, became)};
    };
    EXPECT_EQ(readGroupRefusals(number(1, 65537) + number(2, 0) + number(3, 0) + number(4, 0)),
              cut(PART_GROUP, 1, 65537, 1));
    EXPECT_EQ(readGroupRefusals(number(1, 1) + number(2, ALL_ONES) + number(3, 0) + number(4, 0)),
              cut(PART_GROUP, 2, ALL_ONES, 65535));
    EXPECT_EQ(readGroupRefusals(number(1, 1) + number(2, 0) + number(3, 99) + number(4, ALL_ONES)),
              Refusals());
    EXPECT_EQ(
        readEntryRefusals(number(1, 65543) + number(2, ALL_ONES) + delimited(3, "") + COUNTER),
        cut(PART_ENTRY, 1, 65543, 7));
    const auto counter = [](std::uint64_t id) {
        return readEntryRefusals(ENTRY_HEAD +
                                 delimited(6, number(1, id) + number(2, ~std::uint64_t{0})));
    };
    EXPECT_EQ(counter(70000), cut(PART_COUNTER, 1, 70000, 4464));
    EXPECT_EQ(counter(~std::uint64_t{0}), cut(PART_COUNTER, 1, ~std::uint64_t{0}, 65535));
    EXPECT_EQ(counter(65535), Refusals());
}

// -------------------------------------------------------------------------- entries and policers

TEST(ReadingLoses, TheFirstOfTwoEntriesWithAnIdentifier)
{
    using namespace wire;
    const auto entry = [](std::uint64_t id, std::uint32_t priority) {
        return delimited(5, number(1, id) + number(2, priority) + delimited(3, "") + COUNTER);
    };
    const FiltersRefusal loss =
        refusal(REFUSAL_ENTRY_REPLACED, [](FiltersRefusal& r) { r.entry = filtersEntryId_t{7}; });
    for (const std::string& more : {std::string(), number(3, 0)}) { // regular, and not
        EXPECT_EQ(readGroupRefusals(groupOf(entry(7, 1) + entry(8, 1) + entry(7, 2)) + more),
                  Refusals{loss});
        EXPECT_EQ(readGroupRefusals(groupOf(entry(9, 1) + entry(7, 1) + entry(7, 1)) + more),
                  Refusals{loss})
            << "also if they are equal";
        EXPECT_EQ(readGroupRefusals(groupOf(entry(9, 1) + entry(8, 1) + entry(7, 1)) + more),
                  Refusals());
    }
    // The identifiers are the same only once they are cut.
    const Refusals losses = readGroupRefusals(groupOf(entry(7, 1) + entry(65543, 1)));
    EXPECT_EQ(losses, (Refusals{changeIn(REFUSAL_NUMBER_CUT, PART_ENTRY, 1, 65543, 7), loss}));
    // One that is not admitted replaces nothing.
    const std::string notAdmitted = delimited(4, number(1, MATCH_VLAN_UNTAGGED));
    const std::string refused =
        delimited(5, number(1, 7) + number(2, 1) + delimited(3, "") + notAdmitted + COUNTER);
    for (const FiltersRefusal& other : readGroupRefusals(groupOf(entry(7, 1) + refused)))
        EXPECT_EQ(other.reason, REFUSAL_MATCH_NOT_IN_TYPE);
}

TEST(ReadingLoses, WhatAPolicerDoesNotHold)
{
    const auto losses = [](const std::string& policer) {
        return readEntryRefusals(wire::number(1, 7) + wire::number(2, 0) +
                                 wire::delimited(3, policer) + COUNTER);
    };
    const auto expected = [](filtersRefusalReason_t reason) {
        return Refusals{refusal(reason, [](FiltersRefusal& r) { r.entry = filtersEntryId_t{7}; })};
    };
    const std::string written = policerAt(policer::STAGE_INGRESS).Serialize();
    EXPECT_EQ(losses(written), Refusals());
    EXPECT_EQ(losses(""), Refusals());
    EXPECT_EQ(losses(policer::Policer().Serialize()), Refusals());
    EXPECT_EQ(losses("\x08"), expected(REFUSAL_POLICER_NOT_PARSED));
    EXPECT_EQ(losses(written.substr(0, 2)), expected(REFUSAL_POLICER_NOT_PARSED));
    EXPECT_EQ(losses(written + wire::number(99, 1)), expected(REFUSAL_POLICER_CHANGED));
}

// ---------------------------------------------------------------------------------- their order

TEST(ReadingLoses, InTheOrderOfTheEntries)
{
    using namespace wire;
    const std::string first = delimited(5, entryOf(delimited(4, number(1, 99))) + number(30, 1));
    const std::string second = delimited(5, entryOf("") + number(31, 1));
    const Refusals losses =
        readGroupRefusals(number(1, 65537) + number(2, 0) + number(3, 0) + number(4, 3) + first +
                          second + number(32, 1) + "\x80");
    std::vector<filtersRefusalReason_t> reasons;
    std::vector<std::optional<std::uint32_t>> fields;
    for (const FiltersRefusal& loss : losses) {
        reasons.push_back(loss.reason);
        fields.push_back(loss.field);
    }
    EXPECT_EQ(reasons, (std::vector<filtersRefusalReason_t>{
                           REFUSAL_NOT_PARSED, REFUSAL_NUMBER_CUT, REFUSAL_FIELD_UNKNOWN,
                           REFUSAL_UNKNOWN_MATCH_KIND, REFUSAL_FIELD_UNKNOWN, REFUSAL_FIELD_UNKNOWN,
                           REFUSAL_ENTRY_REPLACED}));
    EXPECT_EQ(fields, (std::vector<std::optional<std::uint32_t>>{{}, 1, 32, {}, 30, 31, {}}));
}

} // namespace
