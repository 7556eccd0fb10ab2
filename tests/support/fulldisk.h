#pragma once

#include <QtGlobal>

#include <csignal>
#include <sys/resource.h>

/// As long as it lives, no file of this process grows beyond `bytes`, as on a file system that has no more room.
class FullDisk
{
public:
    explicit FullDisk(rlim_t bytes) { SetLimit(bytes); }
    ~FullDisk() { SetLimit(RLIM_INFINITY); }
    Q_DISABLE_COPY(FullDisk)

private:
    static void SetLimit(rlim_t bytes)
    {
        std::signal(SIGXFSZ, SIG_IGN);
        struct rlimit limit = {};
        getrlimit(RLIMIT_FSIZE, &limit);
        limit.rlim_cur = qMin(bytes, limit.rlim_max);
        setrlimit(RLIMIT_FSIZE, &limit);
    }
};
