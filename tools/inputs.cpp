#include "inputs.h"

#include "files.h"
#include "group_json.h"
#include "status.h"

#include <filter_refusals.h>

#include <iterator>
#include <stdexcept>
#include <string_view>
#include <utility>

#include <unistd.h>

namespace filterctl {

using namespace FiltersCommon;

namespace {

/** Whether the bytes are no group at all, rather than one of which something is lost. */
bool isNoGroup(const FiltersRefusal& loss)
{
    return loss.reason == REFUSAL_NOT_PARSED || loss.reason == REFUSAL_FIELD_MISSING;
}

/** The group in the bytes, and what is lost by reading it; none if the bytes are no group. */
std::optional<FiltersGroup> readBytes(const std::string& bytes, std::vector<Problem>& problems)
{
    std::vector<FiltersRefusal> losses;
    std::optional<FiltersGroup> group(groupFromBytes(bytes, &losses));
    for (const FiltersRefusal& loss : losses)
        if (isNoGroup(loss)) {
            problems.push_back({0, 0, "holds no group: " + loss.sentence()});
            return std::nullopt;
        }
    for (const FiltersRefusal& loss : losses)
        problems.push_back({0, 0, loss.sentence()});
    return group;
}

std::optional<FiltersGroup> readJson(std::string_view text, std::vector<Problem>& problems)
{
    Problem why;
    std::optional<FiltersGroup> group = groupFromJson(text, why);
    if (!group)
        problems.push_back(why);
    return group;
}

std::string takenForms()
{
    std::string text;
    for (const FormName& each : FORMS) {
        const bool isLast = each.form == std::end(FORMS)[-1].form;
        text += (text.empty() ? "" : isLast ? " and " : ", ") + std::string(each.plural);
    }
    return text;
}

std::optional<Form> formOf(const Input& input, const InputOptions& options,
                           std::vector<Problem>& problems)
{
    if (options.form)
        return options.form;
    const Recognition told = recognize(input.text);
    if (told.stranger != nullptr) {
        problems.push_back(
            {0, 0, std::string("looks like ") + told.stranger + "; taken are " + takenForms()});
        return std::nullopt;
    }
    return told.form ? told.form : options.formOfBlank;
}

std::optional<FiltersGroup> groupOf(const Input& input, const InputOptions& options,
                                    std::vector<Problem>& problems)
{
    switch (*input.form) {
    case Form::BYTES:
        return readBytes(input.text, problems);
    case Form::RULES:
        return groupFromRuleText(input.text, &problems);
    case Form::LIST:
        return groupFromAccessList(input.text, options.list, problems);
    case Form::JSON:
        return readJson(input.text, problems);
    }
    return std::nullopt;
}

/** Adds why a group that could be read is refused all the same. */
bool isTaken(const Input& input, const InputOptions& options, std::vector<Problem>& problems)
{
    const std::size_t before = problems.size();
    if (options.onlyForLists != nullptr && input.form != Form::LIST)
        problems.push_back({0, 0,
                            std::string("--") + options.onlyForLists +
                                " is for access lists; this group says it itself"});
    if (input.group->getEntriesRef().empty() && !options.allowEmpty)
        problems.push_back({0, 0, "holds no rule; --allow-empty takes it all the same"});
    return problems.size() == before;
}

} // namespace

Input readInput(const std::string& name, const InputOptions& options)
{
    Input input;
    input.name = name;
    input.text = readFile(name);
    input.form = formOf(input, options, input.problems);
    if (input.form)
        input.group = groupOf(input, options, input.problems);
    if (input.group && !isTaken(input, options, input.problems))
        input.group.reset();
    return input;
}

Input readReadable(const std::string& name, const InputOptions& options)
{
    Input input = readInput(name, options);
    if (!input.group)
        throw Refused(std::move(input.name), std::move(input.problems), std::move(input.text));
    if (!options.keepsText)
        std::string().swap(input.text);
    return input;
}

Input readWhole(const std::string& name, const InputOptions& options)
{
    Input input = readReadable(name, options);
    if (!input.problems.empty())
        throw Refused(std::move(input.name), std::move(input.problems));
    return input;
}

Input readChangeable(const std::string& name, InputOptions options)
{
    options.formOfBlank = Form::RULES;
    options.keepsText = true;
    Input input = readWhole(name, options);
    if (name == "-")
        throw Refused(name, {{0, 0, "standard input cannot be changed in place"}});
    if (input.form != Form::BYTES && input.form != Form::RULES)
        throw Refused(name, {{0, 0,
                              "only bytes and rule text can be changed in place; 'filterctl list' "
                              "makes rule text of other forms"}});
    return input;
}

void writeChanged(const Input& input, const FiltersGroup& group, const std::string& text)
{
    if (input.form == Form::BYTES)
        return writeBytes(input.name, group);
    if (groupFromRuleText(text) != group)
        throw std::logic_error("the lines cannot be changed without changing others");
    writeFile(input.name, text);
}

int tellLosses(const Input& input)
{
    report(input.name, input.problems, {});
    return input.problems.empty() ? DONE : REFUSED;
}

void writeBytes(const std::string& name, const FiltersGroup& group)
{
    if (name == "-" && ::isatty(STDOUT_FILENO) == 1)
        throw std::runtime_error("the bytes of a group are nothing for a terminal; "
                                 "-o FILE writes them to a file");
    std::string bytes;
    group.serialize(&bytes);
    writeFile(name, bytes);
}

} // namespace filterctl
