/**
 * The codes and rates of policers: their names in dumps and descriptions, and their words in rule
 * text. Policers come from another library.
 */
#ifndef FILTER_COMMON_SRC_POLICER_TABLES_H
#define FILTER_COMMON_SRC_POLICER_TABLES_H

#include "code_rows.h"

#include <policer_common.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace FiltersCommon {

/** A rate or a size of a policer's mode. */
struct PolicerRate {
    const char* name = nullptr;
    std::string_view word;
    const char* unit = nullptr;
    std::uint32_t (policer::Mode::*get)() const = nullptr;
    std::uint32_t policer::Mode::Rates::*rate = nullptr; /**< what a mode is made of */

    std::uint32_t of(const policer::Mode& mode) const { return (mode.*get)(); }
};

// clang-format off
inline constexpr PolicerRate POLICER_CIR =
    {"CIR", "cir", " kbits/s", &policer::Mode::GetCir, &policer::Mode::Rates::cir};
inline constexpr PolicerRate POLICER_CBS =
    {"CBS", "cbs", " bytes",   &policer::Mode::GetCbs, &policer::Mode::Rates::cbs};
inline constexpr PolicerRate POLICER_EBS =
    {"EBS", "ebs", " bytes",   &policer::Mode::GetEbs, &policer::Mode::Rates::ebs};
inline constexpr PolicerRate POLICER_EIR =
    {"EIR", "eir", " kbits/s", &policer::Mode::GetEir, &policer::Mode::Rates::eir};
inline constexpr PolicerRate POLICER_PBS =
    {"PBS", "pbs", " bytes",   &policer::Mode::GetPbs, &policer::Mode::Rates::pbs};
inline constexpr PolicerRate POLICER_PIR =
    {"PIR", "pir", " kbits/s", &policer::Mode::GetPir, &policer::Mode::Rates::pir};

inline constexpr PolicerRate POLICER_RATES[] =
    {POLICER_CIR, POLICER_CBS, POLICER_EBS, POLICER_EIR, POLICER_PBS, POLICER_PIR};

/** A mode and the rates that it uses, in dump order; unused places at the end are empty. */
struct PolicerMode {
    std::uint32_t code;
    const char* name;
    std::string_view word;
    std::array<PolicerRate, 4> rates;

    bool uses(const PolicerRate& rate) const
    {
        for (const PolicerRate& used : rates)
            if (used.get == rate.get)
                return true;
        return false;
    }
};

inline constexpr PolicerMode POLICER_MODES[] = {
    {policer::Mode::SR_TCM, "SrTcm", "sr_tcm",
        {POLICER_CIR, POLICER_CBS, POLICER_EBS}},
    {policer::Mode::TR_TCM, "TrTcm", "tr_tcm",
        {POLICER_CIR, POLICER_CBS, POLICER_PIR, POLICER_PBS}},
    {policer::Mode::TR_TCM_DS, "TrTcmDs", "tr_tcm_ds",
        {POLICER_CIR, POLICER_CBS, POLICER_EIR, POLICER_EBS}},
    {policer::Mode::FLOW, "Flow", "flow",
        {POLICER_CIR, POLICER_CBS}},
    {policer::Mode::NONE, "None", "none", {}},
};
// clang-format on

/** Another code of a policer. */
struct PolicerCode {
    std::uint32_t code;
    const char* name;
    std::string_view word;
};

inline constexpr PolicerCode POLICER_STAGES[] = {
    {policer::STAGE_INGRESS, "Ingress", "ingress"},
    {policer::STAGE_EGRESS, "Egress", "egress"},
    {policer::STAGE_NONE, "None", "none"},
};
inline constexpr PolicerCode POLICER_COLORS[] = {
    {policer::Action::RED, "Red", "red"},
    {policer::Action::YELLOW, "Yellow", "yellow"},
    {policer::Action::GREEN, "Green", "green"},
};
inline constexpr PolicerCode POLICER_ACTIONS[] = {
    {policer::Action::DROP, "Drop", "drop"},
    {policer::Action::SET_PCP, "Set PCP", "set_pcp"},
    {policer::Action::SET_DSCP, "Set DSCP", "set_dscp"},
};

/** The name of a code, or null. */
template <class Row, std::size_t N, class Code>
constexpr const char* nameIn(const Row (&rows)[N], Code code)
{
    const Row* row = findRow(rows, code);
    return row == nullptr ? nullptr : row->name;
}

} // namespace FiltersCommon

#endif // FILTER_COMMON_SRC_POLICER_TABLES_H
