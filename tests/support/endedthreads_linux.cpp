// SPDX-License-Identifier: MIT
// Lets threads that end with the program end wholly before it is searched for leaks. Whoever waits for a QThread goes on
// before the thread has given back its data; a search in that moment finds them with nobody who knows of them. Qt's
// network library has such threads.
#include <dirent.h>
#include <sys/syscall.h>
#include <time.h>
#include <unistd.h>

namespace {

constexpr int g_patience = 1000;               // rounds
constexpr timespec g_round = {0, 1000 * 1000}; // 1 ms

// How many threads this program has; 1 if that cannot be said.
int threadCount()
{
    DIR *const folder = opendir("/proc/self/task");
    if (folder == nullptr)
        return 1;
    int count = 0;
    while (const dirent *const entry = readdir(folder))
        count += entry->d_name[0] != '.' ? 1 : 0;
    closedir(folder);
    return count;
}

// Made before main(), so it goes after everything that threads belong to: the application and the libraries' globals.
class EndedThreads
{
public:
    EndedThreads() = default;
    EndedThreads(const EndedThreads &) = delete;
    EndedThreads &operator=(const EndedThreads &) = delete;
    ~EndedThreads()
    {
        // Not nanosleep(): a test's clock leaps over it.
        for (int i = 0; i < g_patience && threadCount() > 1; ++i)
            syscall(SYS_nanosleep, &g_round, nullptr);
    }
};

const EndedThreads g_endedThreads;

} // namespace
