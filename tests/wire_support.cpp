#include "wire_support.h"

#include <google/protobuf/text_format.h>
#include <google/protobuf/util/message_differencer.h>

#include <stdexcept>

namespace FiltersCommon::test {

void parseText(const std::string& text, google::protobuf::Message* pb)
{
    google::protobuf::TextFormat::Parser parser;
    parser.AllowPartialMessage(true);
    if (!parser.ParseFromString(text, pb))
        throw std::invalid_argument(text);
}

testing::AssertionResult isMessage(const google::protobuf::Message& actual,
                                   const google::protobuf::Message& expected)
{
    std::string difference;
    google::protobuf::util::MessageDifferencer differencer;
    differencer.ReportDifferencesToString(&difference);
    if (differencer.Compare(expected, actual))
        return testing::AssertionSuccess();
    return testing::AssertionFailure() << "from expected to actual:\n" << difference;
}

testing::AssertionResult isMessage(const google::protobuf::Message& actual,
                                   const std::string& expectedText)
{
    const std::unique_ptr<google::protobuf::Message> expected(actual.New());
    parseText(expectedText, expected.get());
    return isMessage(actual, *expected);
}

} // namespace FiltersCommon::test
