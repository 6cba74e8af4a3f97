#include "wire/filter_groups_rows.h"
#include "wire_support.h"

#include "filter_groups.pb.h"

#include <google/protobuf/descriptor.h>
#include <google/protobuf/descriptor.pb.h>

#include <gtest/gtest.h>

#include <iterator>
#include <set>
#include <string>
#include <vector>

namespace {

using namespace FiltersCommon;
using google::protobuf::Descriptor;
using google::protobuf::FieldDescriptor;
using google::protobuf::FieldDescriptorProto;
using google::protobuf::FileDescriptorProto;

constexpr auto OPTIONAL = FieldDescriptor::LABEL_OPTIONAL;
constexpr auto REQUIRED = FieldDescriptor::LABEL_REQUIRED;
constexpr auto REPEATED = FieldDescriptor::LABEL_REPEATED;
constexpr auto UINT32 = FieldDescriptor::TYPE_UINT32;
constexpr auto INT32 = FieldDescriptor::TYPE_INT32;
constexpr auto BYTES = FieldDescriptor::TYPE_BYTES;
constexpr auto BOOL = FieldDescriptor::TYPE_BOOL;
constexpr auto MESSAGE = FieldDescriptor::TYPE_MESSAGE;

struct Field {
    int number;
    FieldDescriptor::Label label;
    FieldDescriptor::Type type;
    std::string name;
    std::string messageType = "";
    bool hasDefault = false;
};

void expectFields(const Descriptor& message, const std::vector<Field>& fields)
{
    std::set<std::string> unexpected;
    for (int index = 0; index < message.field_count(); ++index)
        unexpected.insert(message.field(index)->name());
    for (const Field& expected : fields) {
        SCOPED_TRACE(expected.name);
        unexpected.erase(expected.name);
        const FieldDescriptor* field = message.FindFieldByNumber(expected.number);
        ASSERT_NE(field, nullptr);
        EXPECT_EQ(field->name(), expected.name);
        EXPECT_EQ(field->label(), expected.label);
        EXPECT_EQ(field->type(), expected.type);
        EXPECT_EQ(field->has_default_value(), expected.hasDefault);
        EXPECT_FALSE(field->is_packed());
        EXPECT_EQ(field->options().ByteSizeLong(), 0u);
        FieldDescriptorProto declaration;
        field->CopyTo(&declaration);
        EXPECT_EQ(declaration.type_name(), expected.messageType);
        EXPECT_EQ(declaration.default_value(), expected.hasDefault ? "0" : "");
    }
    EXPECT_EQ(unexpected, std::set<std::string>());
}

/** The file has this name and these imports, no other message, and no options. */
void expectFile(const Descriptor& message, const std::string& name,
                const std::vector<std::string>& imports)
{
    FileDescriptorProto file;
    message.file()->CopyTo(&file);
    EXPECT_EQ(file.name(), name);
    EXPECT_EQ(file.package(), "FiltersCommon");
    EXPECT_EQ(file.syntax(), "");
    EXPECT_EQ((std::vector<std::string>(file.dependency().begin(), file.dependency().end())),
              imports);

    // Nothing else is set: no options, enumerations, extensions or ranges.
    ASSERT_EQ(file.message_type_size(), 1);
    EXPECT_EQ(file.message_type(0).name(), message.name());
    file.mutable_message_type(0)->clear_name();
    file.mutable_message_type(0)->clear_field();
    EXPECT_EQ(file.message_type(0).ByteSizeLong(), 0u);
    file.clear_name();
    file.clear_package();
    file.clear_dependency();
    file.clear_message_type();
    EXPECT_EQ(file.ByteSizeLong(), 0u) << file.DebugString();
}

const Field TYPE = {1, REQUIRED, UINT32, "type_", "", true};

TEST(Schema, OfAMatch)
{
    const Descriptor& message = *MatchPB::descriptor();
    EXPECT_EQ(message.full_name(), "FiltersCommon.MatchPB");
    expectFile(message, "filter_matches.proto", {});
    expectFields(message, {
                              TYPE,
                              {2, REPEATED, UINT32, "ports_"},
                              {3, REPEATED, UINT32, "vlan_id_"},
                              {4, OPTIONAL, UINT32, "tpid_"},
                              {5, OPTIONAL, BYTES, "mac_"},
                              {6, OPTIONAL, UINT32, "l4port_"},
                              {7, OPTIONAL, BYTES, "mac_mask_"},
                              {8, OPTIONAL, BYTES, "ipv4_"},
                              {9, OPTIONAL, UINT32, "pcp_"},
                              {10, OPTIONAL, BYTES, "ipv4_mask_"},
                              {11, OPTIONAL, BYTES, "ipv6_"},
                              {12, OPTIONAL, BYTES, "ipv6_mask_"},
                              {13, OPTIONAL, UINT32, "l2_src_"},
                              {14, OPTIONAL, UINT32, "ipprotocol_"},
                              {15, OPTIONAL, UINT32, "packet_resolution_"},
                              {16, OPTIONAL, UINT32, "tos_"},
                              {17, OPTIONAL, UINT32, "limid_"},
                              {18, OPTIONAL, UINT32, "l4port_mask_"},
                              {19, OPTIONAL, UINT32, "ingress_stp_state_"},
                              {20, REPEATED, UINT32, "excluded_port_types_"},
                              {21, OPTIONAL, UINT32, "vlan_info_svc_vlan_type_"},
                              {22, OPTIONAL, UINT32, "ttl_"},
                              {23, OPTIONAL, UINT32, "vrf_id_"},
                              {24, OPTIONAL, BOOL, "drop_flag_"},
                              {25, OPTIONAL, UINT32, "fwd_type_"},
                              {26, OPTIONAL, BOOL, "mpls_terminated_"},
                          });
}

TEST(Schema, OfAnAction)
{
    const Descriptor& message = *ActionPB::descriptor();
    EXPECT_EQ(message.full_name(), "FiltersCommon.ActionPB");
    expectFile(message, "filter_actions.proto", {});
    expectFields(message, {
                              TYPE,
                              {2, REPEATED, UINT32, "ports_"},
                              {3, OPTIONAL, UINT32, "pcp_"},
                              {4, OPTIONAL, UINT32, "pcp_and_queue_"},
                              {5, OPTIONAL, UINT32, "dscp_"},
                              {6, OPTIONAL, UINT32, "cosq_"},
                              {7, OPTIONAL, UINT32, "cp2cpu_cancel_type_"},
                              {8, OPTIONAL, BYTES, "mac_"},
                              {9, OPTIONAL, UINT32, "l3_dest_id_"},
                          });
}

TEST(Schema, OfACounterIsSignedAndHasNoTrailingUnderscores)
{
    const Descriptor& message = *CounterPB::descriptor();
    EXPECT_EQ(message.full_name(), "FiltersCommon.CounterPB");
    expectFile(message, "filter_counter.proto", {});
    expectFields(message, {{1, REQUIRED, INT32, "id"}, {2, REQUIRED, INT32, "type"}});
}

TEST(Schema, OfAnEntry)
{
    const Descriptor& message = *FiltersEntryPB::descriptor();
    EXPECT_EQ(message.full_name(), "FiltersCommon.FiltersEntryPB");
    expectFile(message, "filter_entries.proto",
               {"filter_matches.proto", "filter_actions.proto", "filter_counter.proto"});
    expectFields(message, {
                              {1, REQUIRED, UINT32, "id_"},
                              {2, REQUIRED, UINT32, "priority_"},
                              {3, REQUIRED, BYTES, "policer_"},
                              {4, REPEATED, MESSAGE, "matches_", ".FiltersCommon.MatchPB"},
                              {5, REPEATED, MESSAGE, "actions_", ".FiltersCommon.ActionPB"},
                              {6, REQUIRED, MESSAGE, "counter_", ".FiltersCommon.CounterPB"},
                          });
}

TEST(Schema, OfAGroup)
{
    const Descriptor& message = *FiltersGroupPB::descriptor();
    EXPECT_EQ(message.full_name(), "FiltersCommon.FiltersGroupPB");
    expectFile(message, "filter_groups.proto", {"filter_entries.proto"});
    expectFields(message, {
                              {1, REQUIRED, UINT32, "id_"},
                              {2, REQUIRED, UINT32, "priority_"},
                              {3, REQUIRED, UINT32, "stage_"},
                              {4, REQUIRED, UINT32, "type_"},
                              {5, REPEATED, MESSAGE, "entries_", ".FiltersCommon.FiltersEntryPB"},
                          });
}

// ------------------------------------------------------------------------ what the library knows

template <class Message>
void expectKnown()
{
    const Descriptor& message = *Message::descriptor();
    const MessageSchema& schema = SCHEMA_OF<Message>;
    EXPECT_EQ(std::distance(schema.begin(), schema.end()), message.field_count());
    for (const FieldSchema& known : schema) {
        SCOPED_TRACE(known.name);
        const FieldDescriptor* field = message.FindFieldByNumber(static_cast<int>(known.number));
        ASSERT_NE(field, nullptr);
        EXPECT_EQ(field->name(), known.name);
        EXPECT_EQ(field->is_required(), known.label == Label::REQUIRED);
        EXPECT_EQ(field->is_repeated(), known.label == Label::REPEATED);
        const FieldDescriptor::Type types[] = {UINT32, INT32, BOOL, BYTES, MESSAGE};
        EXPECT_EQ(field->type(), types[known.form]);
        EXPECT_EQ(field->type() == MESSAGE, known.message != nullptr);
    }
}

TEST(Schema, IsThatOfTheTablesOfFields)
{
    expectKnown<MatchPB>();
    expectKnown<ActionPB>();
    expectKnown<CounterPB>();
    expectKnown<FiltersEntryPB>();
    expectKnown<FiltersGroupPB>();
    EXPECT_EQ(SCHEMA_OF<FiltersGroupPB>.find(5)->message, &SCHEMA_OF<FiltersEntryPB>);
    EXPECT_EQ(SCHEMA_OF<FiltersEntryPB>.find(4)->message, &SCHEMA_OF<MatchPB>);
    EXPECT_EQ(SCHEMA_OF<FiltersEntryPB>.find(5)->message, &SCHEMA_OF<ActionPB>);
    EXPECT_EQ(SCHEMA_OF<FiltersEntryPB>.find(6)->message, &SCHEMA_OF<CounterPB>);
}

// -------------------------------------------------------------------------------- required fields

class RequiredFields : public testing::Test {
    test::QuietParser quiet_;
};

/** The message is complete, and becomes incomplete without any one of the given fields.
 */
template <class Message>
void expectRequired(const Message& complete, const std::vector<int>& numbers)
{
    EXPECT_TRUE(complete.IsInitialized());
    EXPECT_TRUE(Message().ParseFromString(complete.SerializeAsString()));
    for (const int number : numbers) {
        Message lacking(complete);
        lacking.GetReflection()->ClearField(&lacking,
                                            Message::descriptor()->FindFieldByNumber(number));
        EXPECT_FALSE(lacking.IsInitialized()) << number;
        EXPECT_FALSE(Message().ParseFromString(lacking.SerializePartialAsString())) << number;
    }
}

FiltersEntryPB completeEntry()
{
    FiltersEntryPB entry;
    entry.set_id_(0);
    entry.set_priority_(0);
    entry.set_policer_("");
    entry.mutable_counter_()->set_id(0);
    entry.mutable_counter_()->set_type(0);
    return entry;
}

TEST_F(RequiredFields, OfMatchActionAndCounter)
{
    MatchPB match;
    match.set_type_(0);
    expectRequired(match, {1});
    ActionPB action;
    action.set_type_(0);
    expectRequired(action, {1});
    expectRequired(completeEntry().counter_(), {1, 2});
}

TEST_F(RequiredFields, OfAnEntry) { expectRequired(completeEntry(), {1, 2, 3, 6}); }

TEST_F(RequiredFields, OfAGroup)
{
    FiltersGroupPB group;
    group.set_id_(0);
    group.set_priority_(0);
    group.set_stage_(0);
    group.set_type_(0);
    expectRequired(group, {1, 2, 3, 4});
}

TEST_F(RequiredFields, OfTheElementsOfAnEntryToo)
{
    FiltersEntryPB counter = completeEntry();
    counter.mutable_counter_()->clear_type();
    EXPECT_FALSE(FiltersEntryPB().ParseFromString(counter.SerializePartialAsString()));

    FiltersEntryPB match = completeEntry();
    match.add_matches_();
    EXPECT_FALSE(FiltersEntryPB().ParseFromString(match.SerializePartialAsString()));

    FiltersEntryPB action = completeEntry();
    action.add_actions_();
    EXPECT_FALSE(FiltersEntryPB().ParseFromString(action.SerializePartialAsString()));
}

TEST_F(RequiredFields, OfTheEntriesOfAGroupToo)
{
    FiltersGroupPB group;
    group.set_id_(0);
    group.set_priority_(0);
    group.set_stage_(0);
    group.set_type_(0);
    *group.add_entries_() = completeEntry();
    ASSERT_TRUE(FiltersGroupPB().ParseFromString(group.SerializeAsString()));
    group.mutable_entries_(0)->clear_policer_();
    EXPECT_FALSE(FiltersGroupPB().ParseFromString(group.SerializePartialAsString()));
}

// --------------------------------------------------------------------------------------- encoding

TEST(Encoding, GivesEachElementOfARepeatedNumberATagOfItsOwn)
{
    MatchPB match;
    match.set_type_(2);
    match.add_vlan_id_(10);
    match.add_vlan_id_(20);
    EXPECT_EQ(match.SerializeAsString(), "\x08\x02\x18\x0a\x18\x14");
}

TEST(Encoding, LeavesARepeatedFieldWithoutElementsOut)
{
    MatchPB match;
    match.set_type_(22);
    match.mutable_ports_()->Reserve(4);
    EXPECT_EQ(match.SerializeAsString(), "\x08\x16");
    ActionPB action;
    action.set_type_(3);
    action.mutable_ports_()->Reserve(4);
    EXPECT_EQ(action.SerializeAsString(), "\x08\x03");
}

TEST(Encoding, OfAnActionWithoutParametersIsItsTypeAlone)
{
    ActionPB action;
    action.set_type_(16);
    EXPECT_TRUE(action.IsInitialized());
    EXPECT_EQ(action.SerializeAsString(), "\x08\x10");
}

TEST(Encoding, OfACounterIsThatOfSignedNumbers)
{
    CounterPB counter;
    counter.set_id(-1);
    counter.set_type(1);
    EXPECT_EQ(counter.SerializeAsString(), "\x08\xff\xff\xff\xff\xff\xff\xff\xff\xff\x01\x10\x01");
}

} // namespace
