#include "wire_text.h"

#include <filter_groups.pb.h>
#include <google/protobuf/text_format.h>

namespace filterctl {

using namespace FiltersCommon;

namespace {

std::string fieldsOf(const google::protobuf::Message& message)
{
    google::protobuf::TextFormat::Printer printer;
    printer.SetSingleLineMode(true);
    std::string text;
    printer.PrintToString(message, &text);
    // The printer leaves a trailing blank.
    return text.substr(0, text.find_last_not_of(' ') + 1);
}

} // namespace

std::string wireTextOf(const Match& match)
{
    MatchPB message;
    match.convertToMatchPB(&message);
    return fieldsOf(message);
}

std::string wireTextOf(const Action& action)
{
    ActionPB message;
    action.convertToActionPB(&message);
    return fieldsOf(message);
}

std::string wireTextOf(const policer::Policer& policer)
{
    constexpr char DIGITS[] = "0123456789abcdef";
    std::string text = "bytes ";
    for (const char byte : policer.Serialize()) {
        text += DIGITS[static_cast<unsigned char>(byte) >> 4];
        text += DIGITS[byte & 0xF];
    }
    return text;
}

} // namespace filterctl
