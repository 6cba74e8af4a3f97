/**
 * In which form a group is given, as its content tells.
 */
#ifndef FILTER_COMMON_TOOLS_RECOGNITION_H
#define FILTER_COMMON_TOOLS_RECOGNITION_H

#include <optional>
#include <string_view>

namespace filterctl {

enum class Form { BYTES, RULES, LIST, JSON };

struct FormName {
    Form form;
    const char* word;
    const char* plural; /**< for sentences */
};

constexpr FormName FORMS[] = {
    {Form::BYTES, "bytes", "the bytes of a group"},
    {Form::RULES, "rules", "rule text"},
    {Form::LIST, "list", "five-tuple access lists"},
    {Form::JSON, "json", "what 'filterctl json' prints"},
};

/** The form, or what the content is instead; neither if it is blank, or has only comments. */
struct Recognition {
    std::optional<Form> form;
    const char* stranger = nullptr; /**< "a gzip file" */
};

/** Looks at no more than it needs to tell. */
Recognition recognize(std::string_view content);

} // namespace filterctl

#endif // FILTER_COMMON_TOOLS_RECOGNITION_H
