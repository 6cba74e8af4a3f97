/**
 * Groups with random values, the same in every run.
 */
#ifndef FILTER_COMMON_TESTS_ANY_GROUPS_H
#define FILTER_COMMON_TESTS_ANY_GROUPS_H

#include "filter_groups.h"

#include "filter_groups.pb.h"

#include <google/protobuf/message.h>

#include <cstdint>
#include <random>
#include <set>
#include <string>

namespace FiltersCommon::test {

/** All that the wire may bring, and that its group admits. */
class AnyGroups {
public:
    FiltersGroup next()
    {
        FiltersGroupPB pb;
        const auto type = static_cast<filtersGroupType_t>(below(10));
        pb.set_id_(number());
        pb.set_priority_(number());
        pb.set_stage_(below(4));
        pb.set_type_(static_cast<std::uint32_t>(type));
        for (std::uint32_t left = below(6); left != 0; --left)
            fill(*pb.add_entries_(), type, static_cast<filtersGroupStage_t>(pb.stage_()));
        FiltersGroup group(0);
        group.convertFromFiltersGroupPB(&pb);
        return group;
    }

private:
    void fill(FiltersEntryPB& pb, filtersGroupType_t type, filtersGroupStage_t stage)
    {
        pb.set_id_(number());
        pb.set_priority_(number());
        pb.mutable_counter_()->set_id(static_cast<std::int32_t>(number()));
        pb.mutable_counter_()->set_type(static_cast<std::int32_t>(number()));
        pb.set_policer_(below(2) == 0 ? policer::Policer().Serialize() : policer().Serialize());
        for (const filtersMatch_t kind : FiltersGroup::TypeDescription_.at(type))
            if (below(3) == 0)
                fill(*pb.add_matches_(), kind);
        for (const filtersAction_t kind : FiltersGroup::StageActionsDescription_.at(stage))
            if (below(4) == 0)
                fill(*pb.add_actions_(), kind);
    }

    /** Fills every field, also those that the kind does not have. */
    template <class Message, class Code>
    void fill(Message& pb, Code kind)
    {
        const google::protobuf::Reflection& reflection = *Message::GetReflection();
        for (int i = 0; i < Message::descriptor()->field_count(); ++i) {
            const google::protobuf::FieldDescriptor* field = Message::descriptor()->field(i);
            using Type = google::protobuf::FieldDescriptor;
            if (field->is_repeated())
                for (std::uint32_t left = below(4); left != 0; --left)
                    reflection.AddUInt32(&pb, field, number());
            else if (field->cpp_type() == Type::CPPTYPE_STRING)
                reflection.SetString(&pb, field, bytes());
            else if (field->cpp_type() == Type::CPPTYPE_BOOL)
                reflection.SetBool(&pb, field, below(2) == 0);
            else
                reflection.SetUInt32(&pb, field, number());
        }
        pb.set_type_(static_cast<std::uint32_t>(kind));
    }

    policer::Policer policer()
    {
        using policer::Action;
        std::set<Action> actions;
        for (std::uint32_t left = below(4); left != 0; --left)
            actions.emplace(static_cast<Action::Color>(below(4)),
                            static_cast<Action::Type>(below(4)),
                            static_cast<std::uint8_t>(below(3)));
        return {number(), static_cast<policer::Stage>(below(3)),
                policer::Mode(static_cast<policer::Mode::Type>(below(6)),
                              {number(), number(), number(), number(), number(), number()}),
                actions};
    }

    std::string bytes()
    {
        std::string bytes(below(20), '\0');
        for (char& byte : bytes)
            byte = static_cast<char>(below(3) == 0 ? 0xFF : number());
        return bytes;
    }

    /** Often a small number, or one at a limit. */
    std::uint32_t number()
    {
        const std::uint32_t form = below(4);
        return form == 0   ? below(5)
               : form == 1 ? 0 - below(3)
                           : static_cast<std::uint32_t>(random_());
    }

    std::uint32_t below(std::uint32_t bound)
    {
        return static_cast<std::uint32_t>(random_()) % bound;
    }

    std::mt19937 random_{20240607};
};

} // namespace FiltersCommon::test

#endif // FILTER_COMMON_TESTS_ANY_GROUPS_H
