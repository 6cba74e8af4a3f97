/**
 * Policers as entries use them. Most entries have none; the bytes of no policer are always the
 * same, so they are computed once.
 */
#ifndef FILTER_COMMON_SRC_POLICERS_H
#define FILTER_COMMON_SRC_POLICERS_H

#include <policer_common.h>

#include <string>
#include <string_view>

namespace FiltersCommon {

inline bool samePolicer(const policer::Policer& a, const policer::Policer& b)
{
    return a.GetId() == b.GetId() && a.GetStage() == b.GetStage() && a.GetMode() == b.GetMode() &&
           a.GetActions() == b.GetActions();
}

/** What an entry without a policer holds, and its bytes. */
struct NoPolicer {
    const policer::Policer policer;
    const std::string bytes = policer.Serialize();

    static const NoPolicer& get()
    {
        static const NoPolicer none;
        return none;
    }
};

template <class Field, class Writer>
void writePolicer(Writer& writer, const policer::Policer& policer)
{
    const NoPolicer& none = NoPolicer::get();
    if (samePolicer(policer, none.policer))
        writer.bytes(Field(), none.bytes);
    else
        writer.bytes(Field(), policer.Serialize());
}

/** Whether @p bytes are those of no policer. */
inline bool isNoPolicer(std::string_view bytes) { return bytes == NoPolicer::get().bytes; }

} // namespace FiltersCommon

#endif // FILTER_COMMON_SRC_POLICERS_H
