// SPDX-License-Identifier: MIT
#include "vehicles.h"

#include <archive/archive.h>

#include <QCoreApplication>

#include <atomic>
#include <csignal>
#include <cstdio>
#include <cstdlib>

#include <dlfcn.h>
#include <sys/socket.h>
#include <unistd.h>

/*! \file
 *  Keeps visits in an archive, for tests of two writers and of one that is killed:
 *
 *      archivewriter ARCHIVE FIRST COUNT [KILL]
 *
 *  keeps the visits number FIRST and those after it, and says "kept N" after each. With KILL it dies in the middle of its
 *  operation of that number, counted from the first visit on: half of the bytes are written then, to the file or to the
 *  server. The functions of the system that databases write with are these here.
 */

namespace {

std::atomic<int> operationsLeft{0}; // 0: lives for ever

/*! Counts an operation; whether it is the last one. */
bool isLastOperation()
{
    return operationsLeft > 0 && --operationsLeft == 0;
}

[[noreturn]] void die()
{
    kill(getpid(), SIGKILL);
    std::abort();
}

template<typename Function>
Function next(const char *name)
{
    return reinterpret_cast<Function>(dlsym(RTLD_NEXT, name));
}

} // namespace

#pragma GCC visibility push(default)
extern "C" {

ssize_t pwrite64(int file, const void *bytes, size_t count, off64_t place)
{
    static const auto real = next<ssize_t (*)(int, const void *, size_t, off64_t)>("pwrite64");
    if (!isLastOperation())
        return real(file, bytes, count, place);
    real(file, bytes, count / 2, place);
    die();
}

ssize_t send(int socket, const void *bytes, size_t count, int flags)
{
    static const auto real = next<ssize_t (*)(int, const void *, size_t, int)>("send");
    if (!isLastOperation())
        return real(socket, bytes, count, flags);
    real(socket, bytes, count / 2, flags);
    die();
}

int fdatasync(int file)
{
    static const auto real = next<int (*)(int)>("fdatasync");
    if (isLastOperation())
        die();
    return real(file);
}

int fsync(int file)
{
    static const auto real = next<int (*)(int)>("fsync");
    if (isLastOperation())
        die();
    return real(file);
}

int unlink(const char *name) noexcept
{
    static const auto real = next<int (*)(const char *)>("unlink");
    if (isLastOperation())
        die();
    return real(name);
}
}
#pragma GCC visibility pop

int main(int argc, char *argv[])
{
    QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    const int first = arguments.value(2).toInt();
    const int count = arguments.value(3).toInt();

    QString error;
    Archive archive;
    const auto address = ArchiveAddress::parse(arguments.value(1), &error);
    if (!address || !archive.open(*address, Archive::Missing::Make, &error)) {
        std::fprintf(stderr, "%s\n", qPrintable(error));
        return 1;
    }
    operationsLeft = arguments.value(4).toInt();
    for (int n = first; n < first + count; ++n) {
        if (!archive.add(Vehicles::numbered(n), std::nullopt, &error)) {
            std::fprintf(stderr, "%s\n", qPrintable(error));
            return 1;
        }
        std::printf("kept %d\n", n);
        std::fflush(stdout);
    }
    return 0;
}
