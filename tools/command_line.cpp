#include "command_line.h"

#include <charconv>
#include <cstdint>
#include <cstring>
#include <limits>
#include <system_error>

namespace filterctl {

using namespace FiltersCommon;

namespace {

template <class T>
T readNumber(const char* option)
{
    T number{};
    const char* const end = optarg + std::strlen(optarg);
    const auto [stop, error] = std::from_chars(optarg, end, number);
    if (error != std::errc() || stop != end)
        throw UsageError(std::string("--") + option + " takes a number from " +
                         std::to_string(std::numeric_limits<T>::min()) + " to " +
                         std::to_string(std::numeric_limits<T>::max()));
    return number;
}

bool readIsDeny()
{
    const bool deny = std::strcmp(optarg, "deny") == 0;
    if (!deny && std::strcmp(optarg, "permit") != 0)
        throw UsageError("--action takes permit or deny");
    return deny;
}

/** Handles one option, whose argument is in optarg, or one operand, which is in optarg too. */
void takeOption(int code, CommandLine& line)
{
    switch (code) {
    case OPERAND:
        line.operands.emplace_back(optarg);
        break;
    case OPTION_HELP:
        line.help = true;
        break;
    case OPTION_OUTPUT:
        line.output = optarg;
        break;
    case OPTION_BRIEF:
        line.brief = true;
        break;
    case OPTION_CONTENT:
        line.byContent = true;
        break;
    case OPTION_COMPACT:
        line.compact = true;
        break;
    case OPTION_GROUP:
        line.import.group = readNumber<filtersGroupId_t>("group");
        break;
    case OPTION_PRIORITY:
        line.import.priority = readNumber<filtersGroupPriority_t>("priority");
        break;
    case OPTION_STAGE:
        line.stage = static_cast<filtersGroupStage_t>(readNumber<std::int32_t>("stage"));
        break;
    case OPTION_TYPE:
        line.type = static_cast<filtersGroupType_t>(readNumber<std::int32_t>("type"));
        break;
    case OPTION_ACTION:
        line.import.deny = readIsDeny();
        break;
    default:
        throw UsageError("");
    }
}

} // namespace

ImportOptions CommandLine::importOptions() const
{
    ImportOptions options = import;
    options.stage = stage.value_or(options.stage);
    options.type = type.value_or(options.type);
    return options;
}

CommandLine readCommandLine(int argc, char** argv, const char* shortOptions,
                            const option* longOptions)
{
    // The messages of getopt_long begin with argv[0].
    char name[] = "filterctl";
    argv[0] = name;
    CommandLine line;
    for (int code; (code = getopt_long(argc, argv, shortOptions, longOptions, nullptr)) != -1;)
        takeOption(code, line);
    line.operands.insert(line.operands.end(), argv + optind, argv + argc);
    return line;
}

} // namespace filterctl
