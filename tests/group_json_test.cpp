#include "group_json.h"

#include "any_groups.h"
#include "description_text.h"
#include "group_json_support.h"

#include "filter_groups.pb.h"

#include <filter_names.h>
#include <google/protobuf/struct.pb.h>
#include <google/protobuf/util/json_util.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <set>
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
    EXPECT_TRUE(member(object, name).has_list_value()) << name;
    return member(object, name).list_value();
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
    for (const FiltersGroup& group : sampleGroups())
        for (const bool compact : {false, true})
            EXPECT_TRUE(rebuilt(parse(jsonOf(group, compact))) == group) << test::dump(group);
}

TEST(GroupJson, IsReadable)
{
    for (const FiltersGroup& group : sampleGroups()) {
        const Struct document = parse(jsonOf(group, true));
        const Struct& readable = member(document, "readable").struct_value();
        EXPECT_EQ(member(readable, "id").number_value(), group.getId());
        EXPECT_EQ(member(readable, "priority").number_value(), group.getPriority());
        EXPECT_EQ(text(readable, "stage"), filtersGroupStageName(group.getStage()));
        EXPECT_EQ(text(readable, "type"), filtersGroupTypeName(group.getType()));
        const ListValue& entries = list(readable, "entries");
        ASSERT_EQ(static_cast<std::size_t>(entries.values_size()), group.getEntriesRef().size());
        auto entry = entries.values().begin();
        for (const auto& element : group.getEntriesRef())
            ASSERT_NO_FATAL_FAILURE(expectReadable((entry++)->struct_value(), element.second));
    }
}

TEST(GroupJson, IsTheSameEveryTime)
{
    for (const FiltersGroup& group : sampleGroups())
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

// ------------------------------------------------------------------------------------------ types

std::string typeOf(const Value& value)
{
    if (value.has_number_value())
        return "number";
    if (value.has_bool_value())
        return "truth";
    if (value.has_string_value())
        return "text";
    if (value.has_struct_value())
        return "object";
    const auto& elements = value.list_value().values();
    return elements.empty() ? "empty list" : "list of " + typeOf(elements[0]) + "s";
}

using Types = std::map<std::string, std::set<std::string>>;

void addTypes(Types& types, const std::string& of, const Struct& object)
{
    for (const auto& [name, value] : object.fields()) {
        types[of + "." + name].insert(typeOf(value));
        for (const Value& element : value.list_value().values())
            addTypes(types, of + "." + name, element.struct_value());
    }
}

/** By the kind of an element, and otherwise by where a member is. */
Types typesIn(const std::vector<FiltersGroup>& groups)
{
    Types types;
    for (const FiltersGroup& group : groups) {
        const Struct document = parse(jsonOf(group, true));
        Struct readable = member(document, "readable").struct_value();
        const ListValue entries = list(readable, "entries");
        readable.mutable_fields()->erase("entries");
        addTypes(types, "group", readable);
        for (const Value& element : entries.values()) {
            const Struct& entry = element.struct_value();
            for (const char* name : {"matches", "actions"})
                for (const Value& part : list(entry, name).values())
                    if (part.struct_value().fields().contains("values"))
                        addTypes(types, text(part.struct_value(), "kind"),
                                 member(part.struct_value(), "values").struct_value());
            for (const char* name : {"policer", "counter"})
                if (entry.fields().contains(name))
                    addTypes(types, name, member(entry, name).struct_value());
            types["entry.id"].insert(typeOf(member(entry, "id")));
            types["entry.priority"].insert(typeOf(member(entry, "priority")));
        }
    }
    return types;
}

TEST(GroupJson, TypesOfReadableValues)
{
    std::vector<FiltersGroup> groups = sampleGroups();
    AnyGroups any;
    for (int left = 300; left != 0; --left)
        groups.push_back(any.next());
    FiltersGroupPB pb;
    pb.set_stage_(57);
    pb.set_type_(58);
    groups.emplace_back(0).convertFromFiltersGroupPB(&pb);
    const Types expected = {
        {"ACTION_BLOCK_EGRESS_PORTS.LIMIDs", {"empty list", "list of texts"}},
        {"ACTION_COPY_TO_CPU_CANCEL.Cp2CPU Cancel type", {"number", "text"}},
        {"ACTION_L3_SWITCH.L3 Destination ID", {"number"}},
        {"ACTION_MAP_TO_COS_QUEUE.CoS Queue", {"number"}},
        {"ACTION_MAP_TO_CPU_COS_QUEUE.CPU CoS Queue", {"number"}},
        {"ACTION_REDIRECT.LIMIDs", {"empty list", "list of texts"}},
        {"ACTION_REPLACE_DST_MAC.Replace MAC", {"text"}},
        {"ACTION_REPLACE_SRC_MAC.Replace MAC", {"text"}},
        {"ACTION_SET_DSCP.DSCP", {"number"}},
        {"ACTION_SET_INNER_PCP.Inner PCP", {"number"}},
        {"ACTION_SET_PCP.PCP", {"number"}},
        {"ACTION_SET_PCP_AND_QUEUE.PCP_AND_QUEUE", {"number"}},
        {"MATCH_DROP.Match Drop", {"truth"}},
        {"MATCH_DST_IPV4.IP", {"text"}},
        {"MATCH_DST_IPV4.Mask", {"text"}},
        {"MATCH_DST_IPV6.IPv6", {"text"}},
        {"MATCH_DST_IPV6.Mask", {"text"}},
        {"MATCH_DST_L4_PORT.Mask", {"number"}},
        {"MATCH_DST_L4_PORT.Port", {"number"}},
        {"MATCH_DST_MAC.MAC", {"text"}},
        {"MATCH_DST_MAC.Mask", {"text"}},
        {"MATCH_EGRESS_PORTS.LIMIDs", {"empty list", "list of texts"}},
        {"MATCH_EXTERNAL_VLAN_ID.VLAN IDs", {"empty list", "list of numbers"}},
        {"MATCH_FORWARDING_TYPE.Forwarding Type", {"number"}},
        {"MATCH_INGRESS_PORTS.Excluded Port Types", {"list of numbers", "list of texts"}},
        {"MATCH_INGRESS_PORTS.LIMIDs", {"empty list", "list of texts"}},
        {"MATCH_INGRESS_STP_STATE.IngressStpState", {"number"}},
        {"MATCH_INTERNAL_PCP.PCP", {"number"}},
        {"MATCH_INTERNAL_VLAN_ID.VLAN IDs", {"empty list", "list of numbers"}},
        {"MATCH_IP_PROTOCOL.Ip Protocol", {"number"}},
        {"MATCH_L2_SRC_ENTRY_TYPE.L2 Src Entry Type", {"number"}},
        {"MATCH_MPLS_TERM.Mpls Terminated status", {"truth"}},
        {"MATCH_PACKET_RES.Pkt Resolution", {"number"}},
        {"MATCH_PCP.PCP", {"number"}},
        {"MATCH_SRC_IPV4.IP", {"text"}},
        {"MATCH_SRC_IPV4.Mask", {"text"}},
        {"MATCH_SRC_L4_PORT.Mask", {"number"}},
        {"MATCH_SRC_L4_PORT.Port", {"number"}},
        {"MATCH_SRC_MAC.MAC", {"text"}},
        {"MATCH_SRC_MAC.Mask", {"text"}},
        {"MATCH_SRC_PORT.LIMID", {"text"}},
        {"MATCH_TOS.ToS", {"number"}},
        {"MATCH_TPID.TPID", {"number"}},
        {"MATCH_TTL.TTL", {"number"}},
        {"MATCH_VIRTUAL_PORT.LIMID", {"text"}},
        {"MATCH_VLAN_INFO.SVC VLAN Type", {"number"}},
        {"MATCH_VRF_ID.Match VRF ID", {"number"}},
        {"counter.ID", {"number"}},
        {"counter.Type", {"number", "text"}},
        {"entry.id", {"number"}},
        {"entry.priority", {"number"}},
        {"group.id", {"number"}},
        {"group.priority", {"number"}},
        {"group.stage", {"number", "text"}},
        {"group.type", {"number", "text"}},
        {"policer.Actions", {"empty list", "list of objects"}},
        {"policer.Actions.Action", {"number", "text"}},
        {"policer.Actions.Color", {"number", "text"}},
        {"policer.Actions.DSCP", {"number"}},
        {"policer.Actions.PCP", {"number"}},
        {"policer.CBS", {"number"}},
        {"policer.CIR", {"number"}},
        {"policer.EBS", {"number"}},
        {"policer.EIR", {"number"}},
        {"policer.Mode", {"number", "text"}},
        {"policer.PBS", {"number"}},
        {"policer.PIR", {"number"}},
        {"policer.Policer Id", {"number", "text"}},
        {"policer.Stage", {"text"}},
    };
    const Types found = typesIn(groups);
    for (const auto& [name, types] : found)
        EXPECT_TRUE(expected.count(name) == 1 && expected.at(name) == types) << name;
    EXPECT_EQ(found.size(), expected.size());
}

} // namespace
