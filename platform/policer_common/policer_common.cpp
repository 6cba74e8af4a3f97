#include "policer_common.h"

#include "policer.pb.h"

#include <google/protobuf/arena.h>

#include <limits>
#include <tuple>

namespace policer {

namespace {

std::tuple<std::uint32_t, std::uint32_t, std::uint32_t, std::uint32_t, std::uint32_t, std::uint32_t,
           std::uint32_t>
fields(const Mode& mode)
{
    return {mode.GetType(), mode.GetCir(), mode.GetCbs(), mode.GetEbs(),
            mode.GetEir(),  mode.GetPbs(), mode.GetPir()};
}

} // namespace

// ------------------------------------------------------------------------------------------- Mode

Mode::Mode() : Mode(NONE, Rates()) {}

Mode::Mode(Type type, const Rates& rates) : type_(type), rates_(rates) {}

bool Mode::operator==(const Mode& other) const { return fields(*this) == fields(other); }

// ----------------------------------------------------------------------------------------- Action

Action::Action(Color color, Type type, std::uint8_t value)
    : color_(color), type_(type), value_(value)
{}

bool Action::operator==(const Action& other) const
{
    return std::tie(color_, type_, value_) == std::tie(other.color_, other.type_, other.value_);
}

bool Action::operator<(const Action& other) const
{
    return std::tie(color_, type_, value_) < std::tie(other.color_, other.type_, other.value_);
}

// ---------------------------------------------------------------------------------------- Policer

Policer::Policer() : Policer(INVALID_ID, STAGE_NONE, Mode(), {}) {}

Policer::Policer(std::uint32_t id, Stage stage, const Mode& mode, const std::set<Action>& actions)
    : id_(id), stage_(stage), mode_(mode), actions_(actions)
{}

Policer::Policer(const std::string& bytes) : Policer()
{
    if (bytes.size() > std::numeric_limits<int>::max()) // more than the runtime can count
        return;
    // A message that runs out of memory while it grows loses nothing if it is on an arena.
    google::protobuf::Arena arena;
    PolicerPB& message = *google::protobuf::Arena::CreateMessage<PolicerPB>(&arena);
    // Not ParseFromString, which would log what is not an error here.
    if (!message.ParsePartialFromString(bytes) || !message.IsInitialized())
        return;

    for (const PolicerPB::ActionPB& action : message.actions())
        actions_.emplace(static_cast<Action::Color>(action.color()),
                         static_cast<Action::Type>(action.type()),
                         static_cast<std::uint8_t>(action.value()));
    const PolicerPB::ModePB& mode = message.mode();
    mode_ = Mode(static_cast<Mode::Type>(mode.type()),
                 {mode.cir(), mode.cbs(), mode.ebs(), mode.eir(), mode.pbs(), mode.pir()});
    id_ = message.id();
    stage_ = static_cast<Stage>(message.stage());
}

std::string Policer::Serialize() const
{
    google::protobuf::Arena arena;
    PolicerPB& message = *google::protobuf::Arena::CreateMessage<PolicerPB>(&arena);
    message.set_id(id_);
    message.set_stage(stage_);

    PolicerPB::ModePB* mode = message.mutable_mode();
    mode->set_type(mode_.GetType());
    mode->set_cir(mode_.GetCir());
    mode->set_cbs(mode_.GetCbs());
    mode->set_ebs(mode_.GetEbs());
    mode->set_eir(mode_.GetEir());
    mode->set_pbs(mode_.GetPbs());
    mode->set_pir(mode_.GetPir());

    for (const Action& action : actions_) {
        PolicerPB::ActionPB* element = message.add_actions();
        element->set_color(action.color_);
        element->set_type(action.type_);
        element->set_value(action.value_);
    }
    return message.SerializeAsString();
}

} // namespace policer
