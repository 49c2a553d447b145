// SPDX-License-Identifier: MIT
#pragma once

#include <QtGlobal>

#ifdef Q_OS_UNIX
#include <csignal>
#include <sys/resource.h>

/*! Lets every file of the process grow to a limit only, as a disk that is nearly full does. */
class FileSizeLimit
{
public:
    explicit FileSizeLimit(int bytes)
        : m_oldHandler(std::signal(SIGXFSZ, SIG_IGN))
    {
        getrlimit(RLIMIT_FSIZE, &m_oldLimit);
        rlimit limit = m_oldLimit;
        limit.rlim_cur = static_cast<rlim_t>(bytes);
        setrlimit(RLIMIT_FSIZE, &limit);
    }
    ~FileSizeLimit()
    {
        setrlimit(RLIMIT_FSIZE, &m_oldLimit);
        std::signal(SIGXFSZ, m_oldHandler);
    }
    Q_DISABLE_COPY(FileSizeLimit)

private:
    void (*m_oldHandler)(int);
    rlimit m_oldLimit = {};
};
#endif
