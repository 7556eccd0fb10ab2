#pragma once

#include <QByteArray>
#include <QFile>
#include <QString>

#include <cerrno>
#include <csignal>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#if defined(__SANITIZE_ADDRESS__)
#define TAGWRIGHT_TEST_ASAN 1
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
#define TAGWRIGHT_TEST_ASAN 1
#endif
#endif

/// Runs what might exhaust its process in a child, so that a fault of one row is a failed row and no more:
///
///     const auto result = limitedprocess::Run([&] { return QByteArray::number(ReadSchema(path)); });
///     QCOMPARE(result.m_sReason, QString());
///     QCOMPARE(result.m_sOutput, QByteArray("1"));
namespace limitedprocess {

struct Limits
{
    rlim_t m_iStackBytes = rlim_t(1024) * 1024;
    /// On top of what the test program has mapped already. Not set under ASan, which needs terabytes of addresses.
    rlim_t m_iMemoryBytes = rlim_t(512) * 1024 * 1024;
    /// Of computing time; a case that blocks is ended after four minutes, since the machine may be busy.
#ifdef TAGWRIGHT_TEST_ASAN
    unsigned m_iSeconds = 80;
#else
    unsigned m_iSeconds = 20;
#endif
};

struct Result
{
    /// Empty if the case came to its end; else how it ended.
    QString m_sReason;
    /// What the case returned.
    QByteArray m_sOutput;
};

namespace detail {

inline void SetLimit(int resource, rlim_t value)
{
    const struct rlimit limit = { value, value };
    setrlimit(static_cast<__rlimit_resource_t>(resource), &limit);
}

inline rlim_t MappedBytes()
{
    QFile file(QStringLiteral("/proc/self/statm"));
    if (!file.open(QIODevice::ReadOnly)) {
        return 0;
    }
    return file.readAll().split(' ').value(0).toULongLong() * static_cast<rlim_t>(sysconf(_SC_PAGESIZE));
}

inline void EnterLimits(const Limits &limits)
{
    // The handlers of QtTest and of the sanitizers would print a whole backtrace for what is a plain result here.
    for (const int signal : { SIGSEGV, SIGBUS, SIGABRT, SIGALRM, SIGXCPU }) {
        std::signal(signal, SIG_DFL);
    }
    SetLimit(RLIMIT_CORE, 0);
    SetLimit(RLIMIT_STACK, limits.m_iStackBytes);
    SetLimit(RLIMIT_CPU, limits.m_iSeconds);
    alarm(240);
#ifndef TAGWRIGHT_TEST_ASAN
    SetLimit(RLIMIT_AS, MappedBytes() + limits.m_iMemoryBytes);
#endif
}

template <typename Case>
[[noreturn]] void RunChild(Case &run, const Limits &limits, int pipeEnd)
{
    EnterLimits(limits);
    const QByteArray output = run();
    for (int done = 0; done < output.size();) {
        const ssize_t count = write(pipeEnd, output.constData() + done, static_cast<size_t>(output.size() - done));
        if (count <= 0) {
            _exit(1);
        }
        done += static_cast<int>(count);
    }
    _exit(0);
}

inline QByteArray ReadAll(int pipeEnd)
{
    QByteArray all;
    char buffer[4096];
    for (;;) {
        const ssize_t count = read(pipeEnd, buffer, sizeof buffer);
        if (count > 0) {
            all.append(buffer, static_cast<int>(count));
        } else if (count == 0 || errno != EINTR) {
            return all;
        }
    }
}

inline QString EndOf(pid_t child)
{
    int status = 0;
    while (waitpid(child, &status, 0) < 0 && errno == EINTR) { }
    if (WIFSIGNALED(status)) {
        return QStringLiteral("ended by signal %1").arg(WTERMSIG(status));
    }
    return WEXITSTATUS(status) == 0 ? QString() : QStringLiteral("ended with %1").arg(WEXITSTATUS(status));
}

} // namespace detail

/// Runs a callable that returns a QByteArray in a copy of this process. It sees all that the caller sees, and nothing
/// of what it changes comes back but its result. A leak in it isn't seen: leave that to rows that run in the test
/// itself.
template <typename Case>
Result Run(Case run, const Limits &limits = Limits())
{
    int ends[2] = { -1, -1 };
    if (pipe(ends) != 0) {
        return { QStringLiteral("no pipe"), QByteArray() };
    }
    const pid_t child = fork();
    if (child == 0) {
        close(ends[0]);
        detail::RunChild(run, limits, ends[1]);
    }
    close(ends[1]);
    Result result;
    result.m_sOutput = child < 0 ? QByteArray() : detail::ReadAll(ends[0]);
    close(ends[0]);
    result.m_sReason = child < 0 ? QStringLiteral("no child") : detail::EndOf(child);
    return result;
}

} // namespace limitedprocess
