/**
 * The groups that commands read, in any form.
 */
#ifndef FILTER_COMMON_TOOLS_INPUTS_H
#define FILTER_COMMON_TOOLS_INPUTS_H

#include "group_import.h"
#include "problems.h"
#include "recognition.h"

#include <filter_groups.h>

#include <optional>
#include <string>
#include <vector>

namespace filterctl {

struct InputOptions {
    std::optional<Form> form;      /**< none for what the content tells */
    Form formOfBlank = Form::LIST; /**< what is taken if the content does not tell */
    bool allowEmpty = false;       /**< whether a group may hold no entry */
    bool keepsText = false;        /**< whether the text is wanted beside the group */
    ImportOptions list;            /**< for access lists */
    /** The name of an option that is for access lists only, if one is given. */
    const char* onlyForLists = nullptr;
};

struct Input {
    std::string name;
    std::string text;
    std::optional<Form> form;                         /**< none if it cannot be told */
    std::optional<FiltersCommon::FiltersGroup> group; /**< none if the input is refused */
    /** Why it is refused; or else what is lost by reading it. */
    std::vector<Problem> problems;
};

/** Throws only if the file cannot be read. */
Input readInput(const std::string& name, const InputOptions& options);

/** For commands that only look: what is lost is told by tellLosses. Throws Refused. */
Input readReadable(const std::string& name, const InputOptions& options);

/** For commands that write or compare: refuses also what loses something. Throws Refused. */
Input readWhole(const std::string& name, const InputOptions& options);

/** For commands that change a file in place: the group is whole, and its form can be kept. */
Input readChangeable(const std::string& name, InputOptions options);

/** Replaces a changeable input by the group; in rule text by @p text, which must mean the group. */
void writeChanged(const Input& input, const FiltersCommon::FiltersGroup& group,
                  const std::string& text);

/** Reports what is lost. @return the exit status for it */
int tellLosses(const Input& input);

/** Writes the group's bytes, but not to a terminal. */
void writeBytes(const std::string& name, const FiltersCommon::FiltersGroup& group);

} // namespace filterctl

#endif // FILTER_COMMON_TOOLS_INPUTS_H
