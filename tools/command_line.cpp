#include "command_line.h"

#include <algorithm>
#include <charconv>
#include <cstring>
#include <limits>
#include <string_view>
#include <system_error>

#include <getopt.h>

namespace filterctl {

using namespace FiltersCommon;

template <class T>
std::optional<T> numberOf(const std::string& text)
{
    T number{};
    const char* const end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, number);
    if (error != std::errc() || stop != end)
        return std::nullopt;
    return number;
}
template std::optional<std::uint16_t> numberOf(const std::string& text);

namespace {

template <class T>
T readNumber(const char* option, const char* argument)
{
    if (const auto number = numberOf<T>(argument))
        return *number;
    throw UsageError(std::string("--") + option + " takes a number from " +
                     std::to_string(std::numeric_limits<T>::min()) + " to " +
                     std::to_string(std::numeric_limits<T>::max()));
}

// -------------------------------------------------------------------------- what the options do

void takeForm(CommandLine& line, const char* argument)
{
    for (const FormName& each : FORMS)
        if (std::strcmp(argument, each.word) == 0)
            line.input.form = each.form;
    if (!line.input.form)
        throw UsageError("--from takes bytes, rules, list or json");
}

void takeGroup(CommandLine& line, const char* argument)
{
    line.input.list.group = readNumber<filtersGroupId_t>("group", argument);
    line.input.onlyForLists = "group";
}

void takePriority(CommandLine& line, const char* argument)
{
    line.input.list.priority = readNumber<filtersGroupPriority_t>("priority", argument);
    line.input.onlyForLists = "priority";
}

void takeStage(CommandLine& line, const char* argument)
{
    line.stage = static_cast<filtersGroupStage_t>(readNumber<std::int32_t>("stage", argument));
    line.input.list.stage = *line.stage;
    line.input.onlyForLists = "stage";
}

void takeType(CommandLine& line, const char* argument)
{
    line.type = static_cast<filtersGroupType_t>(readNumber<std::int32_t>("type", argument));
    line.input.list.type = *line.type;
    line.input.onlyForLists = "type";
}

void takeAction(CommandLine& line, const char* argument)
{
    const std::string_view word = argument;
    if (word != "permit" && word != "deny")
        throw UsageError("--action takes permit or deny");
    line.input.list.action = word == "deny" ? AccessAction::DENY : AccessAction::PERMIT;
    line.input.onlyForLists = "action";
}

void takeShift(CommandLine& line, Shift shift)
{
    if (line.merge.shift != Shift::NONE && line.merge.shift != shift)
        throw UsageError("--above and --below exclude each other");
    line.merge.shift = shift;
}

void takeMatch(CommandLine& line, const char* word) { line.matchWords.emplace_back(word); }

} // namespace

// ---------------------------------------------------------------------------------------- rows

const Option OUTPUT_OPTION = {
    'o', nullptr, "FILE", "write to FILE, which is replaced in one step",
    [](CommandLine& line, const char* argument) { line.output = argument; }};
const Option FROM_OPTION = {0, "from", "FORM",
                            "take the input for bytes, rules, list or json, whatever it\n"
                            "looks like",
                            takeForm};
const Option EMPTY_OPTION = {0, "allow-empty", nullptr, "take an input without any rule, too",
                             [](CommandLine& line, const char*) { line.input.allowEmpty = true; }};
const Option HELP_OPTION = {'h', "help", nullptr, "print this text",
                            [](CommandLine& line, const char*) { line.help = true; }};

const Option GROUP_OPTION = {0, "group", "N", "of an access list: identifier of the group (0)",
                             takeGroup};
const Option PRIORITY_OPTION = {0, "priority", "N", "of an access list: priority of the group (0)",
                                takePriority};
const Option STAGE_OPTION = {0, "stage", "N", "of an access list: stage of the group (0)",
                             takeStage};
const Option TYPE_OPTION = {0, "type", "N", "of an access list: type of the group (3)", takeType};
const Option ACTION_OPTION = {0, "action", "ACTION",
                              "of an access list: permit or deny, for rules that do not\n"
                              "say (permit)",
                              takeAction};

const Option CONTENT_OPTION = {0, "content", nullptr,
                               "compare what entries match and do, whatever their\n"
                               "identifiers and priorities",
                               [](CommandLine& line, const char*) { line.byContent = true; }};
const Option BRIEF_OPTION = {'q', "brief", nullptr, "print only the line that counts",
                             [](CommandLine& line, const char*) { line.brief = true; }};
const Option COMPACT_OPTION = {0, "compact", nullptr, "print all on one line",
                               [](CommandLine& line, const char*) { line.compact = true; }};

const Option ID_OPTION = {0, "id", "N", "only the entry N; may be given again for more",
                          [](CommandLine& line, const char* argument) {
                              line.ids.insert(readNumber<filtersEntryId_t>("id", argument));
                          }};
const Option WITH_ACTION_OPTION = {
    0, "action", "WORD", "only entries with this action, such as deny or set_dscp=10",
    [](CommandLine& line, const char* argument) { line.actionWords.emplace_back(argument); }};
const Option MATCH_OPTION = {0,
                             "match",
                             "WORD...",
                             "only entries with all these matches, such as src_ipv4 or\n"
                             "dst_l4_port=53; FILE stands in front",
                             takeMatch,
                             takeMatch};

const Option RENUMBER_OPTION = {0, "renumber", nullptr, "give all entries new identifiers, from 0",
                                [](CommandLine& line, const char*) { line.merge.renumber = true; }};
const Option ABOVE_OPTION = {0, "above", nullptr,
                             "shift the priorities of A so that it wins over the others",
                             [](CommandLine& line, const char*) { takeShift(line, Shift::ABOVE); }};
const Option BELOW_OPTION = {0, "below", nullptr,
                             "shift those of the others so that they win over A",
                             [](CommandLine& line, const char*) { takeShift(line, Shift::BELOW); }};

// ------------------------------------------------------------------------------------- reading

void CommandLine::expectOneStandardInput() const
{
    if (std::count(operands.begin(), operands.end(), "-") > 1)
        throw UsageError("only one of the files can be read from standard input");
}

namespace {

/** What getopt_long returns for options without a letter, counting up; and for operands. */
constexpr int FIRST_LONG = 256;
constexpr int OPERAND = 1;

/** A command's options as getopt_long wants them. */
class Getopt {
public:
    explicit Getopt(const OptionList& options) : options_(options)
    {
        for (const Option* const& each : options) {
            const int index = FIRST_LONG + static_cast<int>(&each - options.data());
            const bool takesArgument = each->argument != nullptr;
            if (each->letter != 0)
                (letters_ += each->letter) += takesArgument ? ":" : "";
            if (each->name != nullptr)
                rows_.push_back({each->name, takesArgument, nullptr, index});
        }
        rows_.push_back({});
    }

    /** The next option, or null for an operand; nothing at the end. */
    std::optional<const Option*> next(int argc, char** argv)
    {
        opterr = 0;
        const int code = getopt_long(argc, argv, letters_.c_str(), rows_.data(), nullptr);
        if (code == -1)
            return std::nullopt;
        if (code == OPERAND)
            return nullptr;
        if (code == '?' || code == ':')
            refuse(code, argv[optind - 1]);
        return optionOf(code);
    }

private:
    const Option* optionOf(int code) const
    {
        if (code >= FIRST_LONG)
            return options_[static_cast<std::size_t>(code - FIRST_LONG)];
        return *std::find_if(options_.begin(), options_.end(),
                             [code](const Option* each) { return each->letter == code; });
    }

    [[noreturn]] static void refuse(int code, const std::string& word)
    {
        const bool isLong = word.substr(0, 2) == "--";
        const std::string name = !isLong && optopt != 0
                                     ? std::string("-") + static_cast<char>(optopt)
                                     : word.substr(0, word.find('='));
        if (code == ':')
            throw UsageError("the option '" + name + "' needs an argument");
        if (isLong && optopt != 0)
            throw UsageError("the option '" + name + "' takes no argument");
        throw UsageError("there is no option '" + name + "'");
    }

    const OptionList& options_;
    std::string letters_ = "-:"; // operands in order; a missing argument is told apart
    std::vector<option> rows_;
};

} // namespace

CommandLine readCommandLine(int argc, char** argv, const OptionList& options)
{
    CommandLine line;
    Getopt getopt(options);
    const Option* last = nullptr;
    while (const auto next = getopt.next(argc, argv)) {
        if (const Option* const each = *next) {
            each->take(line, optarg);
            last = each;
        } else if (last != nullptr && last->takeMore != nullptr) {
            last->takeMore(line, optarg);
        } else {
            line.operands.emplace_back(optarg);
        }
    }
    line.operands.insert(line.operands.end(), argv + optind, argv + argc);
    return line;
}

// ---------------------------------------------------------------------------------------- help

namespace {

/** "  -q, --brief", "      --stage N", "  -o FILE" */
std::string headOf(const Option& option)
{
    std::string head = option.letter == 0 ? "    " : std::string("  -") + option.letter;
    if (option.name != nullptr)
        head += (option.letter == 0 ? "  --" : ", --") + std::string(option.name);
    return option.argument == nullptr ? head : head + " " + option.argument;
}

} // namespace

std::string helpOf(const OptionList& options)
{
    std::size_t width = 0;
    for (const Option* each : options)
        width = std::max(width, headOf(*each).size() + 2);
    std::string help;
    for (const Option* each : options) {
        std::string head = headOf(*each);
        std::string_view text = each->text;
        while (!text.empty()) {
            const std::string_view part = text.substr(0, text.find('\n'));
            head.resize(width, ' ');
            (help += head) += std::string(part) + "\n";
            head.clear();
            text.remove_prefix(std::min(part.size() + 1, text.size()));
        }
    }
    return help;
}

} // namespace filterctl
