/**
 * How far a long piece of work is, on a terminal and nowhere else, from its second second on.
 */
#ifndef FILTER_COMMON_TOOLS_PROGRESS_H
#define FILTER_COMMON_TOOLS_PROGRESS_H

#include <cstddef>

namespace filterctl {

/** From now on progress is shown, if standard error is a terminal. */
void startProgress();

/** Wipes what is shown, and shows nothing from now on. */
void stopProgress();

/** What is being done now; as long as there is none, nothing is shown. */
class Stage {
public:
    /** @p total is 0 if nobody knows it. No @p what is for waiting, which is no work. */
    explicit Stage(const char* what, std::size_t total = 0);
    Stage(const Stage&) = delete;
    Stage& operator=(const Stage&) = delete;
    /** Goes on with the stage in which this one was made. */
    ~Stage();

    /** Costs next to nothing, so that loops can tell of each step. */
    void reach(std::size_t done);

private:
    const char* outerWhat_;
    std::size_t outerTotal_;
    std::size_t outerDone_;
};

} // namespace filterctl

#endif // FILTER_COMMON_TOOLS_PROGRESS_H
