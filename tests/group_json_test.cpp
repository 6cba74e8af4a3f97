#include "group_json.h"

#include "description_text.h"
#include "named_entries.h"

#include "filter_groups.pb.h"

#include <filter_names.h>
#include <google/protobuf/struct.pb.h>
#include <google/protobuf/timestamp.pb.h>
#include <google/protobuf/util/json_util.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <stdexcept>
#include <string>
#include <variant>
#include <vector>

namespace {

using namespace filterctl;
using namespace FiltersCommon;
using namespace FiltersCommon::test;
using google::protobuf::ListValue;
using google::protobuf::Struct;
using google::protobuf::Value;

/** A group of each sample, and one with an entry for all that it admits. */
std::vector<FiltersGroup> groups()
{
    std::vector<FiltersGroup> groups;
    for (const Named<FiltersGroup>& sample : groupSamples())
        groups.push_back(*sample.object);
    for (const auto& [type, kinds] : FiltersGroup::TypeDescription_) {
        FiltersGroup& group = groups.emplace_back(filtersGroupId_t{0});
        group.setType(type);
        filtersEntryId_t id = 0;
        for (const auto& samples : {entriesOfEachKind(), entrySamples()})
            for (const Named<FiltersEntry>& sample : samples) {
                FiltersEntry entry(*sample.object);
                entry.setId(id++);
                group.insertEntry(entry);
            }
        EXPECT_FALSE(group.getEntriesRef().empty());
    }
    return groups;
}

Struct parse(const std::string& json)
{
    Struct document;
    const auto status = google::protobuf::util::JsonStringToMessage(json, &document);
    if (!status.ok())
        throw std::invalid_argument(json);
    return document;
}

const Value& member(const Struct& object, const std::string& name)
{
    return object.fields().at(name);
}

std::string text(const Struct& object, const std::string& name)
{
    return member(object, name).string_value();
}

const ListValue& list(const Struct& object, const std::string& name)
{
    static const ListValue none;
    return object.fields().contains(name) ? member(object, name).list_value() : none;
}

/** What another program makes of the message in the member "group". */
FiltersGroup rebuilt(const Struct& document)
{
    std::string json;
    EXPECT_TRUE(google::protobuf::util::MessageToJsonString(member(document, "group"), &json).ok());
    FiltersGroupPB message;
    EXPECT_TRUE(google::protobuf::util::JsonStringToMessage(json, &message).ok());
    FiltersGroup group(0);
    group.convertFromFiltersGroupPB(&message);
    return group;
}

bool holds(const Struct& object, const FiltersDescription& fields);

/** Whether a value of JSON is the same, and of the same type. */
struct IsSame {
    const Value& value;

    bool operator()(std::int64_t number) const
    {
        return value.has_number_value() && value.number_value() == static_cast<double>(number);
    }
    bool operator()(bool truth) const
    {
        return value.has_bool_value() && value.bool_value() == truth;
    }
    bool operator()(const std::string& text) const
    {
        return value.has_string_value() && value.string_value() == text;
    }
    bool operator()(const std::vector<FiltersValue>& list) const
    {
        return value.has_list_value() &&
               std::equal(value.list_value().values().begin(), value.list_value().values().end(),
                          list.begin(), list.end(), [](const Value& a, const FiltersValue& b) {
                              return std::visit(IsSame{a}, b.value);
                          });
    }
    bool operator()(const FiltersDescription& fields) const
    {
        return value.has_struct_value() && holds(value.struct_value(), fields);
    }
};

/** Whether the object has these members and no others. */
bool holds(const Struct& object, const FiltersDescription& fields)
{
    return static_cast<std::size_t>(object.fields().size()) == fields.size() &&
           std::all_of(fields.begin(), fields.end(), [&](const FiltersField& field) {
               return std::visit(IsSame{member(object, field.label)}, field.value.value);
           });
}

/** The member is left out if there is nothing in it. */
void expectValues(const Struct& object, const std::string& name, const FiltersDescription& fields)
{
    ASSERT_EQ(object.fields().contains(name), !fields.empty());
    if (!fields.empty()) {
        EXPECT_TRUE(holds(member(object, name).struct_value(), fields)) << textOf(fields);
    }
}

template <class Map, class Name>
void expectElements(const ListValue& elements, const Map& map, Name&& nameOfKind)
{
    ASSERT_EQ(static_cast<std::size_t>(elements.values_size()), map.size());
    auto element = elements.values().begin();
    for (const auto& [kind, object] : map) {
        const Struct& readable = (element++)->struct_value();
        EXPECT_EQ(text(readable, "kind"), nameOfKind(kind));
        expectValues(readable, "values", describe(*object));
    }
}

void expectReadable(const Struct& readable, const FiltersEntry& entry)
{
    EXPECT_EQ(member(readable, "id").number_value(), entry.getId());
    EXPECT_EQ(member(readable, "priority").number_value(), entry.getPriority());
    expectElements(list(readable, "matches"), entry.getMatchesRef(), filtersMatchName);
    expectElements(list(readable, "actions"), entry.getActionsRef(), filtersActionName);
    const FiltersDescription none;
    const bool hasPolicer = entry.getPolicer().Serialize() != policer::Policer().Serialize();
    expectValues(readable, "policer", hasPolicer ? describe(entry.getPolicer()) : none);
    const bool hasCounter = entry.getCounter() != Counter();
    expectValues(readable, "counter", hasCounter ? describe(entry.getCounter()) : none);
}

TEST(GroupJson, HoldsTheGroup)
{
    for (const FiltersGroup& group : groups())
        for (const bool compact : {false, true})
            EXPECT_TRUE(rebuilt(parse(jsonOf(group, compact))) == group) << test::dump(group);
}

TEST(GroupJson, IsReadable)
{
    for (const FiltersGroup& group : groups()) {
        const Struct document = parse(jsonOf(group, true));
        const Struct& readable = member(document, "readable").struct_value();
        EXPECT_EQ(member(readable, "id").number_value(), group.getId());
        EXPECT_EQ(member(readable, "priority").number_value(), group.getPriority());
        EXPECT_EQ(text(readable, "stage"), nameOf(group.getStage()));
        EXPECT_EQ(text(readable, "type"), nameOf(group.getType()));
        const ListValue& entries = list(readable, "entries");
        ASSERT_EQ(static_cast<std::size_t>(entries.values_size()), group.getEntriesRef().size());
        auto entry = entries.values().begin();
        for (const auto& element : group.getEntriesRef())
            ASSERT_NO_FATAL_FAILURE(expectReadable((entry++)->struct_value(), element.second));
    }
}

TEST(GroupJson, IsTheSameEveryTime)
{
    for (const FiltersGroup& group : groups())
        for (int time = 0; time < 3; ++time)
            EXPECT_EQ(jsonOf(FiltersGroup(group), false), jsonOf(group, false));
}

TEST(GroupJson, Form)
{
    FiltersEntry entry(7);
    entry.setPriority(9);
    entry.setMatch(MatchSrcIPv4(ipv4("192.0.2.1"), ipv4("255.255.255.0")));
    entry.setMatch(MatchIngressPorts({limId(0, 1, 0, 7)}));
    entry.setAction(ActionDeny());
    entry.setCounter(Counter(12, COUNTER_TYPE_OCTETS));
    FiltersGroup group(1);
    group.setType(GROUP_TYPE_3);
    ASSERT_EQ(group.insertEntry(entry), FILTERS_OK);
    EXPECT_EQ(jsonOf(group, true),
              R"({"group":{"id":1,"priority":0,"stage":0,"type":3,"entries":[{"id":7,"priority":9,)"
              R"("policer":"CP////8PEAIaDggEEAAYACAAKAAwADgA",)"
              R"("matches":[{"type":1,"ports":[65543]},)"
              R"({"type":9,"ipv4":"wAACAQ==","ipv4Mask":"////AA=="}],"actions":[{"type":1}],)"
              R"("counter":{"id":12,"type":2}}]},)"
              R"("readable":{"id":1,"priority":0,"stage":"GROUP_STAGE_0","type":"GROUP_TYPE_3",)"
              R"("entries":[{"id":7,"priority":9,)"
              R"("matches":[{"kind":"MATCH_INGRESS_PORTS",)"
              R"("values":{"LIMIDs":["eth1/7"]}},)"
              R"({"kind":"MATCH_SRC_IPV4","values":{"IP":"192.0.2.1","Mask":"255.255.255.0"}}],)"
              R"("actions":[{"kind":"ACTION_DENY"}],)"
              R"("counter":{"ID":12,"Type":"Octets"}}]}})"
              "\n");
    const std::string lines = jsonOf(group, false);
    EXPECT_EQ(lines.substr(0, 24), "{\n \"group\": {\n  \"id\": 1,");
    EXPECT_EQ(lines.substr(lines.size() - 6), "\n }\n}\n");
}

TEST(GroupJson, WhatCannotBePrinted)
{
    google::protobuf::Timestamp never;
    never.set_seconds(-1000000000000);
    const std::string bytes = never.SerializeAsString();
    try {
        jsonOf(*never.GetDescriptor(), bytes, false);
        FAIL() << "printed";
    } catch (const std::runtime_error& error) {
        const std::string why = error.what();
        // The runtime's own words follow, INTERNAL or INVALID_ARGUMENT first.
        EXPECT_EQ(why.substr(0, why.find("IN")), "the group cannot be printed as JSON: ") << why;
    }
}

} // namespace
