/**
 * The words for policer values in dumps and descriptions. Policers come from another library.
 */
#ifndef FILTER_COMMON_SRC_POLICER_TABLES_H
#define FILTER_COMMON_SRC_POLICER_TABLES_H

#include <policer_common.h>

#include <array>
#include <cstddef>
#include <cstdint>

namespace FiltersCommon {

/** A rate or a size of a policer's mode. */
struct PolicerRate {
    const char* name = nullptr;
    const char* unit = nullptr;
    std::uint32_t (*get)(const policer::Mode& mode) = nullptr;
};

// clang-format off
inline constexpr PolicerRate POLICER_CIR =
    {"CIR", " kbits/s", [](const policer::Mode& mode) -> std::uint32_t { return mode.GetCir(); }};
inline constexpr PolicerRate POLICER_CBS =
    {"CBS", " bytes", [](const policer::Mode& mode) -> std::uint32_t { return mode.GetCbs(); }};
inline constexpr PolicerRate POLICER_EBS =
    {"EBS", " bytes", [](const policer::Mode& mode) -> std::uint32_t { return mode.GetEbs(); }};
inline constexpr PolicerRate POLICER_EIR =
    {"EIR", " kbits/s", [](const policer::Mode& mode) -> std::uint32_t { return mode.GetEir(); }};
inline constexpr PolicerRate POLICER_PBS =
    {"PBS", " bytes", [](const policer::Mode& mode) -> std::uint32_t { return mode.GetPbs(); }};
inline constexpr PolicerRate POLICER_PIR =
    {"PIR", " kbits/s", [](const policer::Mode& mode) -> std::uint32_t { return mode.GetPir(); }};

inline constexpr PolicerRate POLICER_RATES[] =
    {POLICER_CIR, POLICER_CBS, POLICER_EBS, POLICER_EIR, POLICER_PBS, POLICER_PIR};

/** A mode and the rates that it uses, in dump order; unused places at the end are empty. */
struct PolicerMode {
    policer::Mode::Type type;
    const char* name;
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
    {policer::Mode::SR_TCM,    "SrTcm",   {POLICER_CIR, POLICER_CBS, POLICER_EBS}},
    {policer::Mode::TR_TCM,    "TrTcm",   {POLICER_CIR, POLICER_CBS, POLICER_PIR, POLICER_PBS}},
    {policer::Mode::TR_TCM_DS, "TrTcmDs", {POLICER_CIR, POLICER_CBS, POLICER_EIR, POLICER_EBS}},
    {policer::Mode::FLOW,      "Flow",    {POLICER_CIR, POLICER_CBS}},
    {policer::Mode::NONE,      "None",    {}},
};
// clang-format on

/** The mode with that type, or null. */
inline const PolicerMode* findPolicerMode(policer::Mode::Type type)
{
    for (const PolicerMode& mode : POLICER_MODES)
        if (mode.type == type)
            return &mode;
    return nullptr;
}

inline constexpr const char* POLICER_STAGES[] = {"Ingress", "Egress", "None"};
inline constexpr const char* POLICER_COLORS[] = {"Red", "Yellow", "Green"};
inline constexpr const char* POLICER_ACTIONS[] = {"Drop", "Set PCP", "Set DSCP"};

/** The word for a code, or null. Codes are treated as unsigned. */
template <class Code, std::size_t N>
constexpr const char* findWord(const char* const (&words)[N], Code code)
{
    const auto index = static_cast<std::uint32_t>(code);
    return index < N ? words[index] : nullptr;
}

} // namespace FiltersCommon

#endif // FILTER_COMMON_SRC_POLICER_TABLES_H
