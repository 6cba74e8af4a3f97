#include "group_json.h"

#include "description_text.h"

#include "filter_groups.pb.h"
#include "group_json.pb.h"

#include <filter_description.h>
#include <filter_names.h>
#include <google/protobuf/io/coded_stream.h>
#include <google/protobuf/io/zero_copy_stream_impl_lite.h>
#include <google/protobuf/util/json_util.h>
#include <google/protobuf/util/type_resolver.h>
#include <google/protobuf/util/type_resolver_util.h>

#include <cstdint>
#include <memory>
#include <stdexcept>
#include <variant>
#include <vector>

namespace filterctl {

using namespace FiltersCommon;

namespace {

google::protobuf::Struct structOf(const FiltersDescription& fields);

struct JsonValue {
    google::protobuf::Value& value;

    void operator()(std::int64_t number) const
    {
        value.set_number_value(static_cast<double>(number)); // exact: only 32 bits are used
    }
    void operator()(bool truth) const { value.set_bool_value(truth); }
    void operator()(const std::string& text) const { value.set_string_value(text); }
    void operator()(const std::vector<FiltersValue>& list) const
    {
        google::protobuf::ListValue& values = *value.mutable_list_value();
        for (const FiltersValue& element : list)
            std::visit(JsonValue{*values.add_values()}, element.value);
    }
    void operator()(const FiltersDescription& fields) const
    {
        *value.mutable_struct_value() = structOf(fields);
    }
};

google::protobuf::Struct structOf(const FiltersDescription& fields)
{
    google::protobuf::Struct values;
    for (const FiltersField& field : fields)
        std::visit(JsonValue{(*values.mutable_fields())[field.label]}, field.value.value);
    return values;
}

template <class Element, class Object>
void fill(Element& element, const char* kind, const Object& object)
{
    element.set_kind(kind);
    const FiltersDescription fields = describe(object);
    if (!fields.empty())
        *element.mutable_values() = structOf(fields);
}

bool isNone(const policer::Policer& policer)
{
    const policer::Policer none;
    return policer.GetId() == none.GetId() && policer.GetStage() == none.GetStage() &&
           policer.GetMode() == none.GetMode() && policer.GetActions() == none.GetActions();
}

void fill(ReadableEntry& readable, const FiltersEntry& entry)
{
    readable.set_id(entry.getId());
    readable.set_priority(entry.getPriority());
    for (const auto& [kind, match] : entry.getMatchesRef())
        fill(*readable.add_matches(), filtersMatchName(kind), *match);
    for (const auto& [kind, action] : entry.getActionsRef())
        fill(*readable.add_actions(), filtersActionName(kind), *action);
    if (!isNone(entry.getPolicer()))
        *readable.mutable_policer() = structOf(describe(entry.getPolicer()));
    if (entry.getCounter() != Counter())
        *readable.mutable_counter() = structOf(describe(entry.getCounter()));
}

void require(bool done, const std::string& why)
{
    if (!done)
        throw std::runtime_error("the group cannot be printed as JSON: " + why);
}

/** The bytes of the message, always in the same order, which maps do not have by default. */
std::string bytesOf(const google::protobuf::Message& message)
{
    std::string bytes;
    {
        google::protobuf::io::StringOutputStream stream(&bytes);
        google::protobuf::io::CodedOutputStream coded(&stream);
        coded.SetSerializationDeterministic(true);
        require(message.SerializeToCodedStream(&coded), "it is too large");
    }
    return bytes;
}

} // namespace

std::string jsonOf(const google::protobuf::Descriptor& type, const std::string& bytes, bool compact)
{
    namespace util = google::protobuf::util;
    constexpr char PREFIX[] = "type.googleapis.com";
    const std::unique_ptr<util::TypeResolver> types(
        util::NewTypeResolverForDescriptorPool(PREFIX, type.file()->pool()));
    util::JsonPrintOptions options;
    options.add_whitespace = !compact;
    std::string json;
    const auto status = util::BinaryToJsonString(types.get(), PREFIX + ("/" + type.full_name()),
                                                 bytes, &json, options);
    require(status.ok(), status.ToString());
    if (compact)
        json += '\n';
    return json;
}

namespace {

GroupJson messageOf(const FiltersGroup& group)
{
    GroupJson message;
    *message.mutable_group() = group.convertToFiltersGroupPB();
    ReadableGroup& readable = *message.mutable_readable();
    readable.set_id(group.getId());
    readable.set_priority(group.getPriority());
    readable.set_stage(nameOf(group.getStage()));
    readable.set_type(nameOf(group.getType()));
    for (const auto& [id, entry] : group.getEntriesRef())
        fill(*readable.add_entries(), entry);
    return message;
}

} // namespace

std::string jsonOf(const FiltersGroup& group, bool compact)
{
    // The message needs far more memory than its bytes, so it is freed before the text is made.
    const std::string bytes = bytesOf(messageOf(group));
    return jsonOf(*GroupJson::descriptor(), bytes, compact);
}

} // namespace filterctl
