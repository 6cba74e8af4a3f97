#include "group_json.h"

#include "fields.h"

#include "filter_groups.pb.h"
#include "group_json.pb.h"

#include <filter_names.h>
#include <google/protobuf/io/coded_stream.h>
#include <google/protobuf/io/zero_copy_stream_impl_lite.h>
#include <google/protobuf/util/json_util.h>
#include <google/protobuf/util/type_resolver.h>
#include <google/protobuf/util/type_resolver_util.h>

#include <memory>
#include <stdexcept>

namespace filterctl {

using namespace FiltersCommon;

namespace {

using Values = google::protobuf::Map<std::string, std::string>;

void add(Values* values, const Fields& fields)
{
    for (const Field& field : fields)
        (*values)[field.label] = field.value;
}

void fill(ReadableEntry& readable, const FiltersEntry& entry)
{
    readable.set_id(entry.getId());
    for (const auto& [kind, match] : entry.getMatchesRef()) {
        ReadableElement& element = *readable.add_matches();
        element.set_kind(filtersMatchName(kind));
        add(element.mutable_values(), fieldsOf(*match));
    }
    for (const auto& [kind, action] : entry.getActionsRef()) {
        ReadableElement& element = *readable.add_actions();
        element.set_kind(filtersActionName(kind));
        add(element.mutable_values(), fieldsOf(*action));
    }
    add(readable.mutable_policer(), fieldsOf(entry.getPolicer()));
    if (entry.getCounter().GetType() != COUNTER_TYPE_INVALID)
        add(readable.mutable_counter(), fieldsOf(entry.getCounter()));
}

void require(bool done, const std::string& why)
{
    if (!done)
        throw std::runtime_error("the group cannot be printed as JSON: " + why);
}

/** The bytes of the message; the same ones every time, which those of a map are not by default. */
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
    readable.set_stage(nameOf(group.getStage()));
    readable.set_type(nameOf(group.getType()));
    for (const auto& [id, entry] : group.getEntriesRef())
        fill(*readable.add_entries(), entry);
    return message;
}

} // namespace

std::string jsonOf(const FiltersGroup& group, bool compact)
{
    // The message needs far more memory than its bytes, and is freed before the text is made.
    const std::string bytes = bytesOf(messageOf(group));
    return jsonOf(*GroupJson::descriptor(), bytes, compact);
}

} // namespace filterctl
