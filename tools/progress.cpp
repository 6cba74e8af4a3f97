#include "progress.h"

#include <atomic>
#include <cerrno>
#include <csignal>
#include <cstring>

#include <sys/time.h>
#include <unistd.h>

namespace filterctl {

namespace {

// What the handler of the timer's signal reads. It interrupts only this thread, so the parts need
// not fit each other: the worst is one picture that is out of date.
std::atomic<const char*> what{nullptr};
std::atomic<std::size_t> total{0};
std::atomic<std::size_t> done{0};
std::atomic<unsigned> ticks{0};
std::atomic<bool> isShown{false};

constexpr char WIPE[] = "\r\033[K";
constexpr std::size_t WIDTH = 40;

/** A line that is made without anything that a signal handler must not call. */
class Line {
public:
    void put(const char* text)
    {
        for (; *text != '\0' && size_ < sizeof text_; ++text)
            text_[size_++] = *text;
    }
    void put(char c)
    {
        const char text[] = {c, '\0'};
        put(text);
    }
    void write() const
    {
        [[maybe_unused]] const ssize_t count = ::write(STDERR_FILENO, text_, size_);
    }

private:
    char text_[160];
    std::size_t size_ = 0;
};

/** A bar that is as full as the work is done, or in which something moves. */
void draw(int)
{
    const int error = errno;
    const unsigned tick = ticks++;
    const char* const stage = what;
    if (stage != nullptr) {
        Line line;
        line.put(WIPE);
        line.put("filterctl: ");
        line.put(stage);
        line.put(" [");
        const std::size_t all = total;
        const std::size_t full = all == 0 ? tick % WIDTH : done * WIDTH / all;
        for (std::size_t place = 0; place < WIDTH; ++place)
            line.put((all == 0 ? place == full : place < full) ? '#' : ' ');
        line.put("]");
        line.write();
        isShown = true;
    }
    errno = error;
}

void wipe()
{
    if (!isShown.exchange(false))
        return;
    Line line;
    line.put(WIPE);
    line.write();
}

void setTimer(time_t firstSeconds, suseconds_t interval)
{
    const itimerval timer = {{0, interval}, {firstSeconds, 0}};
    ::setitimer(ITIMER_REAL, &timer, nullptr);
}

} // namespace

void startProgress()
{
    if (::isatty(STDERR_FILENO) != 1)
        return;
    struct sigaction action;
    std::memset(&action, 0, sizeof action);
    action.sa_handler = draw;
    action.sa_flags = SA_RESTART;
    ::sigaction(SIGALRM, &action, nullptr);
    setTimer(1, 100000);
}

void stopProgress()
{
    what = nullptr;
    setTimer(0, 0);
    wipe();
}

Stage::Stage(const char* newWhat, std::size_t newTotal)
    : outerWhat_(what), outerTotal_(total), outerDone_(done)
{
    done = 0;
    total = newTotal;
    what = newWhat;
    if (newWhat == nullptr)
        wipe();
}

Stage::~Stage()
{
    what = outerWhat_;
    done = outerDone_;
    total = outerTotal_;
}

void Stage::reach(std::size_t newDone) { done.store(newDone, std::memory_order_relaxed); }

} // namespace filterctl
