#include "description_text.h"

#include <filter_names.h>

#include <cstdint>
#include <string_view>

namespace filterctl {

using namespace FiltersCommon;

namespace {

struct TextOfValue {
    std::string operator()(std::int64_t number) const { return std::to_string(number); }
    std::string operator()(bool truth) const { return truth ? "true" : "false"; }
    std::string operator()(const std::string& text) const { return text; }
    std::string operator()(const std::vector<FiltersValue>& list) const
    {
        std::string text;
        for (const FiltersValue& element : list)
            text += (text.empty() ? "" : ", ") + std::visit(*this, element.value);
        return "[" + text + "]";
    }
    std::string operator()(const FiltersDescription& fields) const
    {
        return "{" + textOf(fields) + "}";
    }
};

/** A name from filter_names.h, or the number if there is no name. */
FiltersValue nameOrNumber(const char* name, std::int32_t code)
{
    if (name == std::string_view("unknown"))
        return {std::int64_t{code}};
    return {std::string(name)};
}

} // namespace

std::string textOf(const FiltersDescription& fields)
{
    std::string text;
    for (const FiltersField& field : fields)
        text += (text.empty() ? "" : ", ") + field.label + ": " +
                std::visit(TextOfValue(), field.value.value);
    return text;
}

FiltersValue valueOf(filtersGroupStage_t stage)
{
    return nameOrNumber(filtersGroupStageName(stage), stage);
}

FiltersValue valueOf(filtersGroupType_t type)
{
    return nameOrNumber(filtersGroupTypeName(type), type);
}

std::string nameOf(filtersGroupStage_t stage)
{
    return std::visit(TextOfValue(), valueOf(stage).value);
}

std::string nameOf(filtersGroupType_t type)
{
    return std::visit(TextOfValue(), valueOf(type).value);
}

} // namespace filterctl
