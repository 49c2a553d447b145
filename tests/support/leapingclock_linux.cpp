// SPDX-License-Identifier: MIT
// A clock of the test's own. Linked into a test program, this file takes the place of the C library's functions that
// tell the time or wait, for the main thread: when the program has nothing to do but wait, its clock leaps to the end of
// the waiting. So a test with time-outs gives the same result on a machine of any speed and load, and takes no longer
// than its own work; what must not happen within a second does not happen, however busy the machine is.
//
// For programs whose whole world is the main thread and threads that work for it: the clock stands while one of them runs
// or reads a file. A program that waits for a thread that waits itself, as an HTTP request of Qt does, or for a server
// would leap past the other's answer; it lives in real time: REAL_TIME in overview_add_test(). While the program has a
// child process, its waiting is real.
//
// Other threads see the real time, so the watchdog of Qt Test still ends a test that hangs. The date is the real one.
// Where the main thread waits for another one after all, as Qt does for its own when the application ends, it waits as
// long as it says in real time.
#include <algorithm>
#include <cerrno>
#include <chrono>
#include <ctime>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <dirent.h>
#include <dlfcn.h>
#include <fcntl.h>
#include <poll.h>
#include <pthread.h>
#include <sys/eventfd.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/timerfd.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

using Time = std::chrono::nanoseconds;

// Looking at the clock takes a moment, and so does a turn of an event loop, so that a loop that waits by looking or by
// turning ends, too.
constexpr Time oneLook{100};
constexpr Time oneTurn{10000};

Time now = std::chrono::hours(1);

/*! A descriptor that becomes readable at a time, as a timerfd does. */
struct Alarm
{
    int descriptor;
    std::optional<Time> due; // empty: not set
};
std::vector<Alarm>
    *alarms; // made when used first, and never deleted: destructors of static objects close files, too

bool isMainThread()
{
    static const long process = syscall(SYS_getpid);
    thread_local const bool isMain = syscall(SYS_gettid) == process;
    return isMain;
}

Time timeFrom(const timespec &time)
{
    return std::chrono::seconds(time.tv_sec) + Time(time.tv_nsec);
}

timespec timespecFrom(Time time)
{
    constexpr Time::rep second = 1000000000;
    return {static_cast<time_t>(time.count() / second), static_cast<long>(time.count() % second)};
}

Alarm *findAlarm(int descriptor)
{
    if (alarms == nullptr)
        return nullptr;
    const auto alarm = std::find_if(alarms->begin(), alarms->end(),
                                    [descriptor](const Alarm &one) { return one.descriptor == descriptor; });
    return alarm != alarms->end() ? &*alarm : nullptr;
}

/*! The earlier of \a end and the next alarm; empty when there is neither. */
std::optional<Time> nextEvent(std::optional<Time> end)
{
    if (alarms == nullptr)
        return end;
    for (const Alarm &alarm : *alarms) {
        if (alarm.due && (!end || *alarm.due < *end))
            end = alarm.due;
    }
    return end;
}

void ringAlarms()
{
    if (alarms == nullptr)
        return;
    for (Alarm &alarm : *alarms) {
        if (!alarm.due || *alarm.due > now)
            continue;
        alarm.due.reset();
        eventfd_write(alarm.descriptor, 1);
    }
}

int pollReally(pollfd *files, nfds_t count, const timespec *patience, const sigset_t *signals)
{
    timespec rest = patience != nullptr ? *patience : timespec{}; // the kernel writes into it
    constexpr int signalSetBytes = 8;                             // the kernel's, not the C library's
    return static_cast<int>(
        syscall(SYS_ppoll, files, count, patience != nullptr ? &rest : nullptr, signals, signalSetBytes));
}

Time realTime()
{
    timespec time{};
    syscall(SYS_clock_gettime, CLOCK_MONOTONIC, &time);
    return timeFrom(time);
}

bool hasChildren()
{
    siginfo_t info{};
    return waitid(P_ALL, 0, &info, WEXITED | WNOHANG | WNOWAIT) == 0;
}

constexpr char tasks[] = "/proc/self/task";

/*! False as long as the program has one thread only. */
bool hasThreads()
{
    constexpr nlink_t onlyOne = 3; // with "." and ".."
    struct stat folder
    {
    };
    return stat(tasks, &folder) == 0 && folder.st_nlink > onlyOne;
}

/*! True for a thread that runs or waits for a disk. */
bool isWorking(int folder, const char *thread)
{
    char text[512]; // "1234 (name) R ..."
    const int file = openat(folder, (std::string(thread) + "/stat").c_str(), O_RDONLY | O_CLOEXEC);
    if (file < 0)
        return false; // it has ended
    const ssize_t size = read(file, text, sizeof text);
    syscall(SYS_close, file);
    const std::string_view line(text, size > 0 ? static_cast<size_t>(size) : 0);
    const size_t nameEnd = line.rfind(") ");
    return nameEnd != line.npos && nameEnd + 2 < line.size()
           && (line[nameEnd + 2] == 'R' || line[nameEnd + 2] == 'D');
}

/*! True when another thread is seen to work. One after the other is looked at. */
bool isAnotherSeen()
{
    DIR *const folder = hasThreads() ? opendir(tasks) : nullptr;
    if (folder == nullptr)
        return false;
    const std::string own = std::to_string(syscall(SYS_gettid));
    bool isAny = false;
    while (const dirent *thread = readdir(folder))
        isAny = isAny
                || (thread->d_name[0] != '.' && own != thread->d_name
                    && isWorking(dirfd(folder), thread->d_name));
    closedir(folder);
    return isAny;
}

/*! True while another thread works. Of two that hand their work to each other a look can miss both. */
bool othersWork()
{
    return isAnotherSeen() || isAnotherSeen();
}

/*! What this file took the place of. */
template<typename Function>
Function *replaced(const char *name)
{
    return reinterpret_cast<Function *>(dlsym(RTLD_NEXT, name));
}

/*! True for a time of the monotonic clock: one in the date's clock is in another century. */
bool isMonotonic(const timespec &time)
{
    constexpr time_t thirtyYears = 946080000;
    return time.tv_sec < thirtyYears;
}

/*! Calls \a wait, a function that waits until a time of the monotonic clock, with the real time for \a end. */
template<typename Wait>
int waitReally(const timespec &end, Wait wait)
{
    const Time begin = realTime();
    const timespec realEnd = timespecFrom(begin + std::max(timeFrom(end) - now, Time(0)));
    const int result = wait(&realEnd);
    now += realTime() - begin;
    return result;
}

/*! Polls while other threads work; the clock stands. One that works without end is waited for ten seconds. */
int pollBesideOthers(pollfd *files, nfds_t count, const sigset_t *signals)
{
    constexpr Time longest = std::chrono::seconds(10);
    const timespec moment = timespecFrom(std::chrono::microseconds(200));
    const Time begin = realTime();
    int ready = 0;
    while (ready == 0 && othersWork() && realTime() - begin < longest)
        ready = pollReally(files, count, &moment, signals);
    // What the last one has done at its end.
    const timespec atOnce{};
    return ready != 0 ? ready : pollReally(files, count, &atOnce, signals);
}

/*! Polls until \a next in real time; for ever when that is empty. */
int pollUntil(std::optional<Time> next, pollfd *files, nfds_t count, const sigset_t *signals)
{
    const Time begin = realTime();
    const timespec patience = timespecFrom(next.value_or(now) - now);
    const int ready = pollReally(files, count, next ? &patience : nullptr, signals);
    now += realTime() - begin;
    return ready;
}

} // namespace

#define REPLACES_C_LIBRARY extern "C" __attribute__((visibility("default")))

REPLACES_C_LIBRARY int clock_gettime(clockid_t clock, timespec *time) noexcept
{
    if (clock != CLOCK_MONOTONIC || !isMainThread())
        return static_cast<int>(syscall(SYS_clock_gettime, clock, time));
    now += oneLook;
    *time = timespecFrom(now);
    return 0;
}

REPLACES_C_LIBRARY int nanosleep(const timespec *duration, timespec *rest)
{
    if (!isMainThread())
        return static_cast<int>(syscall(SYS_nanosleep, duration, rest));
    pollBesideOthers(nullptr, 0, nullptr);
    now += timeFrom(*duration);
    return hasChildren() ? static_cast<int>(syscall(SYS_nanosleep, duration, rest)) : 0;
}

REPLACES_C_LIBRARY int ppoll(pollfd *files, nfds_t count, const timespec *patience, const sigset_t *signals)
{
    if (!isMainThread())
        return pollReally(files, count, patience, signals);
    now += oneTurn;
    const timespec atOnce{};
    std::optional<Time> end;
    if (patience != nullptr)
        end = now + timeFrom(*patience);
    for (;;) {
        ringAlarms();
        const int ready = pollReally(files, count, &atOnce, signals);
        if (ready != 0 || (end && *end <= now))
            return ready;
        const std::optional<Time> next = nextEvent(end);
        if (next && !hasChildren()) {
            if (const int changed = pollBesideOthers(files, count, signals))
                return changed;
            now = std::max(now, *next);
        } else if (const int changed = pollUntil(next, files, count, signals))
            return changed;
    }
}

REPLACES_C_LIBRARY int poll(pollfd *files, nfds_t count, int milliseconds)
{
    const timespec patience = timespecFrom(std::chrono::milliseconds(std::max(milliseconds, 0)));
    return ppoll(files, count, milliseconds >= 0 ? &patience : nullptr, nullptr);
}

REPLACES_C_LIBRARY int pthread_cond_timedwait(pthread_cond_t *condition, pthread_mutex_t *mutex,
                                              const timespec *end)
{
    static const auto wait = replaced<decltype(pthread_cond_timedwait)>("pthread_cond_timedwait");
    if (!isMainThread() || !isMonotonic(*end))
        return wait(condition, mutex, end);
    return waitReally(*end, [=](const timespec *realEnd) { return wait(condition, mutex, realEnd); });
}

REPLACES_C_LIBRARY int pthread_cond_clockwait(pthread_cond_t *condition, pthread_mutex_t *mutex,
                                              clockid_t clock, const timespec *end)
{
    static const auto wait = replaced<decltype(pthread_cond_clockwait)>("pthread_cond_clockwait");
    if (!isMainThread() || clock != CLOCK_MONOTONIC)
        return wait(condition, mutex, clock, end);
    return waitReally(*end, [=](const timespec *realEnd) { return wait(condition, mutex, clock, realEnd); });
}

REPLACES_C_LIBRARY int timerfd_create(clockid_t /*clock*/, int flags) noexcept
{
    const int descriptor = eventfd(0, EFD_NONBLOCK | ((flags & TFD_CLOEXEC) != 0 ? EFD_CLOEXEC : 0));
    if (descriptor < 0)
        return descriptor;
    if (alarms == nullptr)
        alarms = new std::vector<Alarm>;
    alarms->push_back({descriptor, {}});
    return descriptor;
}

REPLACES_C_LIBRARY int timerfd_settime(int descriptor, int flags, const itimerspec *setting,
                                       itimerspec * /*old*/) noexcept
{
    Alarm *const alarm = findAlarm(descriptor);
    if (alarm == nullptr) {
        errno = EBADF;
        return -1;
    }
    eventfd_t expirations = 0;
    eventfd_read(descriptor, &expirations); // what has rung before no longer counts
    const Time time = timeFrom(setting->it_value);
    alarm->due.reset();
    if (time > Time(0))
        alarm->due = (flags & TFD_TIMER_ABSTIME) != 0 ? time : now + time;
    return 0;
}

REPLACES_C_LIBRARY int close(int descriptor)
{
    if (Alarm *const alarm = isMainThread() ? findAlarm(descriptor) : nullptr)
        alarms->erase(alarms->begin() + (alarm - alarms->data()));
    return static_cast<int>(syscall(SYS_close, descriptor));
}
