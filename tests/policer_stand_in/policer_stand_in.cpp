#include "policer_stand_in.h"

#include <policer_common.h>

#include <sstream>
#include <tuple>
#include <utility>

namespace policer {

namespace {

std::vector<std::string> requests;
std::size_t refused = 0;

} // namespace

std::vector<std::string> takeRequests() { return std::exchange(requests, {}); }

std::size_t refusals() { return refused; }

Mode::Mode() : Mode(NONE, Rates()) {}
Mode::Mode(Type type, const Rates& rates) : type_(type), rates_(rates) {}
bool Mode::operator==(const Mode& other) const
{
    return std::make_tuple(GetType(), GetCir(), GetCbs(), GetEbs()) ==
           std::make_tuple(other.GetType(), other.GetCir(), other.GetCbs(), other.GetEbs());
}

Action::Action(Color color, Type type, std::uint8_t value)
    : color_(color), type_(type), value_(value)
{}
bool Action::operator==(const Action& other) const { return !(*this < other || other < *this); }
bool Action::operator<(const Action& other) const
{
    return std::tie(color_, type_, value_) < std::tie(other.color_, other.type_, other.value_);
}

Policer::Policer() : Policer(INVALID_ID, STAGE_NONE, Mode(), {}) {}

Policer::Policer(std::uint32_t id, Stage stage, const Mode& mode, const std::set<Action>& actions)
    : id_(id), stage_(stage), mode_(mode), actions_(actions)
{}

/** "P:" and the identifier and the stage, and nothing else. */
Policer::Policer(const std::string& bytes) : Policer()
{
    requests.push_back(bytes);
    std::istringstream text(bytes);
    char p = 0;
    char colon = 0;
    std::uint32_t id = 0;
    std::uint32_t stage = 0;
    if (text >> p >> colon >> id >> stage && p == 'P' && colon == ':' && text.peek() == EOF) {
        id_ = id;
        stage_ = static_cast<Stage>(stage);
    } else {
        ++refused;
    }
}

std::string Policer::Serialize() const
{
    return "P:" + std::to_string(id_) + " " + std::to_string(stage_);
}

} // namespace policer
