/**
 * Writes docs/fields.md: the fields that each kind of match and action fills in its message.
 * scripts/regenerate-docs renews the page; a test compares it with what this program writes.
 */
#include "named_samples.h"

#include "filter_actions.pb.h"
#include "filter_matches.pb.h"

#include <google/protobuf/descriptor.h>

#include <iostream>
#include <map>
#include <string>
#include <vector>

namespace {

using namespace FiltersCommon;
using google::protobuf::FieldDescriptor;

void convert(const Match& match, MatchPB* pb) { match.convertToMatchPB(pb); }
void convert(const Action& action, ActionPB* pb) { action.convertToActionPB(pb); }

std::string typeOf(const FieldDescriptor& field)
{
    const std::string repeated = field.is_repeated() ? "repeated " : "";
    return repeated + field.type_name();
}

/** A row for each class: its code, and the fields besides the type that its samples fill. */
template <class Message, class Base>
void writeTable(const std::vector<test::Sample<Base>>& samples)
{
    struct Row {
        std::string className;
        std::map<int, const FieldDescriptor*> fields;
    };
    std::map<std::pair<std::uint32_t, std::string>, Row> rows;
    for (const auto& sample : samples) {
        Message pb;
        convert(*sample.object, &pb);
        Row& row = rows[{pb.type_(), sample.className()}];
        row.className = sample.className();
        std::vector<const FieldDescriptor*> set;
        pb.GetReflection()->ListFields(pb, &set);
        for (const FieldDescriptor* field : set)
            if (field->number() != Message::kTypeFieldNumber)
                row.fields[field->number()] = field;
    }

    std::cout << "| `type_` | class | fields |\n|---|---|---|\n";
    for (const auto& [key, row] : rows) {
        std::cout << "| " << key.first << " | `" << row.className << "` |";
        const char* separator = " ";
        for (const auto& [number, field] : row.fields) {
            std::cout << separator << "`" << field->name() << "` (" << number << ", "
                      << typeOf(*field) << ")";
            separator = ", ";
        }
        std::cout << (row.fields.empty() ? " none |\n" : " |\n");
    }
}

} // namespace

int main()
{
    std::cout << "<!-- Written by scripts/regenerate-docs; not edited by hand. -->\n\n"
                 "# Fields by kind\n\n"
                 "Each kind fills `type_`, which is field 1, and the fields listed here with their "
                 "numbers and types.\n[wire.md](wire.md) says how values are encoded.\n\n"
                 "## MatchPB\n\n";
    writeTable<MatchPB>(test::matchSamples());
    std::cout << "\n## ActionPB\n\n";
    writeTable<ActionPB>(test::actionSamples());
}
