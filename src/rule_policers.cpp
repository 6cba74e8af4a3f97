#include "rule_policers.h"

#include "policer_tables.h"
#include "policers.h"
#include "rule_numbers.h"

#include <cstdint>
#include <set>

namespace FiltersCommon {

namespace {

constexpr bool takesValue(policer::Action::Type type)
{
    return type == policer::Action::SET_PCP || type == policer::Action::SET_DSCP;
}

std::uint8_t valueOf(const policer::Action& action)
{
    return action.GetType() == policer::Action::SET_PCP ? action.GetPcp() : action.GetDscp();
}

template <class Row, std::size_t N, class Code>
bool readNamed(const Row (&rows)[N], std::string_view text, Code& code)
{
    std::uint32_t number = 0;
    if (const auto known = codeOf(rows, text))
        number = *known;
    else if (!readNumber(text, number))
        return false;
    code = static_cast<Code>(number);
    return true;
}

/** Writes the elements of the list, with the name of each unless it is as in policer::Policer. */
class PolicerWriter {
public:
    explicit PolicerWriter(std::string& out) : out_(out) {}

    void write(const policer::Policer& policer)
    {
        const policer::Policer none;
        if (policer.GetId() != none.GetId()) {
            begin("id");
            putNumber(out_, policer.GetId());
        }
        if (policer.GetStage() != none.GetStage()) {
            begin("stage");
            putNamed(out_, POLICER_STAGES, policer.GetStage());
        }
        const policer::Mode& mode = policer.GetMode();
        if (mode.GetType() != none.GetMode().GetType()) {
            begin("mode");
            putNamed(out_, POLICER_MODES, mode.GetType());
        }
        for (const PolicerRate& each : POLICER_RATES)
            if (each.of(mode) != 0) {
                begin(each.word);
                putNumber(out_, each.of(mode));
            }
        for (const policer::Action& action : policer.GetActions())
            write(action);
    }

private:
    void write(const policer::Action& action)
    {
        putSeparator(out_);
        putNamed(out_, POLICER_COLORS, action.GetColor());
        out_ += ':';
        putNamed(out_, POLICER_ACTIONS, action.GetType());
        if (takesValue(action.GetType())) {
            out_ += ':';
            putNumber(out_, valueOf(action));
        }
    }

    void begin(std::string_view name)
    {
        putSeparator(out_);
        out_ += name;
        out_ += ':';
    }

    std::string& out_;
};

/** Collects the elements of the list; each name may be given once. */
class PolicerReader {
public:
    /** What was expected, or null if all was as expected. */
    const char* read(std::string_view text)
    {
        bool isExpected = !text.empty();
        while (isExpected) {
            if (const char* wrong = readElement(takeUntil(text, ",")))
                return wrong;
            isExpected = take(text, ",");
        }
        return nullptr;
    }

    policer::Policer policer() const { return {id_, stage_, {mode_, rates_}, actions_}; }

private:
    const char* readElement(std::string_view text)
    {
        const std::string_view name = takeUntil(text, ":");
        if (!take(text, ":"))
            return "NAME:VALUE with commas between them, such as id:7,stage:ingress,red:drop";
        if (name == "id")
            return once(ID) && readNumber(text, id_) ? nullptr : "id:NUMBER, once";
        if (name == "stage")
            return once(STAGE) && readNamed(POLICER_STAGES, text, stage_)
                       ? nullptr
                       : "stage:ingress, stage:egress or stage:none, once";
        if (name == "mode")
            return once(MODE) && readNamed(POLICER_MODES, text, mode_)
                       ? nullptr
                       : "mode:sr_tcm, mode:tr_tcm, mode:tr_tcm_ds, mode:flow or mode:none, once";
        for (const PolicerRate& each : POLICER_RATES)
            if (name == each.word)
                return once(FIRST_RATE + static_cast<unsigned>(&each - POLICER_RATES)) &&
                               readNumber(text, rates_.*each.rate)
                           ? nullptr
                           : "each of the rates cir, cbs, ebs, eir, pbs and pir as a number, once";
        return readAction(name, text)
                   ? nullptr
                   : "id, stage, mode, cir, cbs, ebs, eir, pbs, pir, or an action such as red:drop "
                     "or yellow:set_dscp:10, once";
    }

    bool readAction(std::string_view colorText, std::string_view text)
    {
        policer::Action::Color color{};
        policer::Action::Type type{};
        std::uint8_t value = 0;
        if (!readNamed(POLICER_COLORS, colorText, color) ||
            !readNamed(POLICER_ACTIONS, takeUntil(text, ":"), type))
            return false;
        if (takesValue(type) && !(take(text, ":") && readNumber(text, value)))
            return false;
        if (!takesValue(type) && !text.empty())
            return false;
        return actions_.emplace(color, type, value).second;
    }

    bool once(unsigned name)
    {
        const unsigned before = given_;
        given_ |= 1U << name;
        return before != given_;
    }

    enum : unsigned { ID, STAGE, MODE, FIRST_RATE };

    unsigned given_ = 0;
    std::uint32_t id_ = policer::Policer::INVALID_ID;
    policer::Stage stage_ = policer::STAGE_NONE;
    policer::Mode::Type mode_ = policer::Mode::NONE;
    policer::Mode::Rates rates_;
    std::set<policer::Action> actions_;
};

constexpr std::string_view BYTES = "bytes:";

bool readBytes(std::string_view digits, std::string& bytes)
{
    if (digits.size() % 2 != 0)
        return false;
    for (; !digits.empty(); digits.remove_prefix(2)) {
        std::uint64_t byte = 0;
        if (!readDigits(digits.substr(0, 2), 16, 0xFF, byte))
            return false;
        bytes += static_cast<char>(byte);
    }
    return true;
}

/** Whether the policer was made of the bytes, and not of nothing because they are of none. */
bool isPolicer(const policer::Policer& policer, const std::string& bytes)
{
    const NoPolicer& none = NoPolicer::get();
    return !samePolicer(policer, none.policer) || bytes == none.bytes;
}

} // namespace

void putPolicer(std::string& out, const policer::Policer& policer)
{
    std::set<policer::Action> actions;
    for (const policer::Action& action : policer.GetActions())
        actions.emplace(action.GetColor(), action.GetType(), valueOf(action));
    const policer::Policer told(policer.GetId(), policer.GetStage(), policer.GetMode(), actions);
    const std::string bytes = policer.Serialize();
    if (told.Serialize() == bytes) {
        PolicerWriter(out).write(policer);
    } else { // holds something that no accessor tells
        out += BYTES;
        for (const char byte : bytes)
            putHexadecimal(out, static_cast<std::uint8_t>(byte), 2);
    }
}

std::optional<policer::Policer> readPolicer(std::string_view text, std::string& expected)
{
    if (take(text, BYTES)) {
        std::string bytes;
        if (readBytes(text, bytes))
            if (const policer::Policer policer(bytes); isPolicer(policer, bytes))
                return policer;
        expected = "the bytes of a policer, two hexadecimal digits for each";
        return std::nullopt;
    }
    PolicerReader reader;
    if (const char* what = reader.read(text)) {
        expected = what;
        return std::nullopt;
    }
    return reader.policer();
}

} // namespace FiltersCommon
