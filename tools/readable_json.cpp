#include "readable_json.h"

#include "description_text.h"

#include <filter_names.h>

#include <algorithm>
#include <cstdint>
#include <string>
#include <type_traits>
#include <utility>

namespace filterctl {

using namespace FiltersCommon;

namespace {

// ---------------------------------------------------------------------------------- descriptions

constexpr char ENTRIES[] = "entries";

/** The members of a group but for its entries, which are many. */
FiltersDescription readableOf(const FiltersGroup& group)
{
    return {{"id", {std::int64_t{group.getId()}}},
            {"priority", {std::int64_t{group.getPriority()}}},
            {"stage", valueOf(group.getStage())},
            {"type", valueOf(group.getType())}};
}

template <class Map, class Name>
FiltersValue elementsOf(const Map& map, Name&& nameOfKind)
{
    std::vector<FiltersValue> elements;
    elements.reserve(map.size());
    for (const auto& [kind, object] : map) {
        FiltersDescription element;
        element.reserve(2);
        element.push_back({"kind", {std::string(nameOfKind(kind))}});
        if (FiltersDescription values = describe(*object); !values.empty())
            element.push_back({"values", {std::move(values)}});
        elements.push_back({std::move(element)});
    }
    return {std::move(elements)};
}

bool isNone(const policer::Policer& policer)
{
    const policer::Policer none;
    return policer.GetId() == none.GetId() && policer.GetStage() == none.GetStage() &&
           policer.GetMode() == none.GetMode() && policer.GetActions() == none.GetActions();
}

FiltersDescription readableOf(const FiltersEntry& entry)
{
    FiltersDescription fields;
    fields.reserve(6);
    fields.push_back({"id", {std::int64_t{entry.getId()}}});
    fields.push_back({"priority", {std::int64_t{entry.getPriority()}}});
    fields.push_back({"matches", elementsOf(entry.getMatchesRef(), filtersMatchName)});
    fields.push_back({"actions", elementsOf(entry.getActionsRef(), filtersActionName)});
    if (!isNone(entry.getPolicer()))
        fields.push_back({"policer", {describe(entry.getPolicer())}});
    if (entry.getCounter() != Counter())
        fields.push_back({"counter", {describe(entry.getCounter())}});
    return fields;
}

// ---------------------------------------------------------------------------------------- writing

struct ValueWriter {
    JsonWriter& json;

    void operator()(std::int64_t number) const { json.number(number); }
    void operator()(bool truth) const { json.truth(truth); }
    void operator()(const std::string& text) const { json.text(text); }
    void operator()(const std::vector<FiltersValue>& list) const
    {
        json.startList();
        for (const FiltersValue& element : list)
            std::visit(*this, element.value);
        json.endList();
    }
    void operator()(const FiltersDescription& fields) const
    {
        json.startObject();
        members(fields);
        json.endObject();
    }

    void members(const FiltersDescription& fields) const
    {
        for (const FiltersField& field : fields) {
            json.key(field.label);
            std::visit(*this, field.value.value);
        }
    }
};

} // namespace

void writeReadable(JsonWriter& json, const FiltersGroup& group)
{
    const ValueWriter writer{json};
    json.startObject();
    writer.members(readableOf(group));
    json.key(ENTRIES);
    json.startList();
    for (const auto& [id, entry] : group.getEntriesRef())
        writer(readableOf(entry));
    json.endList();
    json.endObject();
}

// --------------------------------------------------------------------------------------- checking

namespace {

constexpr char ADVICE[] = "; change \"group\", or leave \"readable\" out";

[[noreturn]] void refuse(const std::string& what, std::optional<std::size_t> place = std::nullopt)
{
    throw JsonRefusal{"\"readable\" " + what + ADVICE, place};
}

/** What a value is, for messages to the user. */
struct Shown {
    std::string operator()(std::int64_t number) const { return std::to_string(number); }
    std::string operator()(bool truth) const { return truth ? "true" : "false"; }
    std::string operator()(const std::string& text) const { return quoted(text); }
    std::string operator()(const std::vector<FiltersValue>&) const { return "a list"; }
    std::string operator()(const FiltersDescription&) const { return "an object"; }
};

/** Refuses what is not @p expected. */
[[noreturn]] void refuseFor(const FiltersValue& expected)
{
    refuse("differs from \"group\", which gives " + std::visit(Shown(), expected.value) + " here");
}

/** Whether a value of JSON is what would be written. */
struct IsSame {
    const JsonScalar& found;

    template <class T>
    bool operator()(const T& expected) const
    {
        if constexpr (std::is_same_v<T, bool> || std::is_same_v<T, std::int64_t>) {
            const T* value = std::get_if<T>(&found);
            return value != nullptr && *value == expected;
        } else if constexpr (std::is_same_v<T, std::string>) {
            const auto* text = std::get_if<std::string_view>(&found);
            return text != nullptr && (*text == expected || quoted(*text) == quoted(expected));
        } else {
            return false;
        }
    }
};

FiltersValue expectedOf(const FiltersGroup& group)
{
    FiltersDescription fields = readableOf(group);
    fields.push_back({ENTRIES, {std::vector<FiltersValue>()}});
    return {std::move(fields)};
}

const FiltersDescription& fieldsOf(const FiltersValue& value)
{
    return *std::get_if<FiltersDescription>(&value.value);
}

} // namespace

ReadableJsonCheck::ReadableJsonCheck(const FiltersGroup& group)
    : group_(expectedOf(group)), nextEntry_(group.getEntriesRef().begin()),
      endOfEntries_(group.getEntriesRef().end())
{}

/** What is expected of the value that begins. */
const FiltersValue& ReadableJsonCheck::next()
{
    if (levels_.empty())
        return group_;
    Level& level = levels_.back();
    if (const auto* fields = std::get_if<FiltersDescription>(&level.expected->value))
        return (*fields)[level.next].value;
    if (isAmongEntries() && nextEntry_ != endOfEntries_) {
        entry_ = {readableOf((nextEntry_++)->second)};
        return entry_;
    }
    const auto& list = *std::get_if<std::vector<FiltersValue>>(&level.expected->value);
    if (level.next == list.size())
        refuse("has more elements than \"group\" gives");
    return list[level.next++];
}

void ReadableJsonCheck::key(std::string_view name)
{
    Level& level = levels_.back();
    const FiltersDescription& fields = fieldsOf(*level.expected);
    const auto field = std::find_if(fields.begin(), fields.end(),
                                    [&](const FiltersField& each) { return each.label == name; });
    if (field == fields.end())
        refuse("has a member that \"group\" does not give");
    level.next = static_cast<std::size_t>(field - fields.begin());
    if (level.members[level.next])
        throw JsonRefusal{"the member " + quoted(field->label) + " is given twice"};
    level.members[level.next] = true;
}

void ReadableJsonCheck::value(const JsonScalar& value)
{
    const FiltersValue& expected = next();
    if (!std::visit(IsSame{value}, expected.value))
        refuseFor(expected);
}

void ReadableJsonCheck::startObject(std::size_t place)
{
    const FiltersValue& expected = next();
    if (!std::holds_alternative<FiltersDescription>(expected.value))
        refuseFor(expected);
    levels_.push_back({&expected, place});
}

void ReadableJsonCheck::endObject()
{
    const Level& level = levels_.back();
    const FiltersDescription& fields = fieldsOf(*level.expected);
    for (std::size_t i = 0; i < fields.size(); ++i)
        if (!level.members[i])
            refuse("lacks the member " + quoted(fields[i].label), level.place);
    levels_.pop_back();
}

void ReadableJsonCheck::startList(std::size_t place)
{
    const FiltersValue& expected = next();
    if (!std::holds_alternative<std::vector<FiltersValue>>(expected.value))
        refuseFor(expected);
    levels_.push_back({&expected, place});
}

void ReadableJsonCheck::endList()
{
    const Level& level = levels_.back();
    const auto& list = *std::get_if<std::vector<FiltersValue>>(&level.expected->value);
    if (level.next != list.size() || (isAmongEntries() && nextEntry_ != endOfEntries_))
        refuse("lacks elements that \"group\" gives", level.place);
    levels_.pop_back();
}

} // namespace filterctl
