#pragma once

#include <QtGlobal>

#include <csignal>
#include <sys/resource.h>

/// As long as it lives, no file of this process grows beyond `bytes`, as on a file system that has no more room.
class FullDisk
{
public:
    explicit FullDisk(rlim_t bytes)
        : m_pHandler(std::signal(SIGXFSZ, SIG_IGN))
    {
        getrlimit(RLIMIT_FSIZE, &m_oLimit);
        const struct rlimit limit = { bytes, m_oLimit.rlim_max };
        setrlimit(RLIMIT_FSIZE, &limit);
    }
    ~FullDisk()
    {
        setrlimit(RLIMIT_FSIZE, &m_oLimit);
        std::signal(SIGXFSZ, m_pHandler);
    }
    Q_DISABLE_COPY(FullDisk)

private:
    struct rlimit m_oLimit = {};
    void (*m_pHandler)(int) = nullptr;
};
