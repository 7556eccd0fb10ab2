#pragma once

#include <QTemporaryFile>

#include <csignal>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

/// Runs what might exhaust its process in a child, so that a fault of one row is a failed row and no more:
///
///     const auto result = limitedprocess::Run([&] { return QByteArray::number(ReadSchema(path)); });
///     QCOMPARE(result.m_sReason, QString());
///     QCOMPARE(result.m_sOutput, QByteArray("1"));
namespace limitedprocess {

#if defined(__SANITIZE_ADDRESS__)
constexpr bool kSanitized = true;
#else
constexpr bool kSanitized = false;
#endif

struct Result
{
    QString m_sReason; ///< Empty if the case came to its end.
    QByteArray m_sOutput;
};

template <typename Resource>
void SetLimit(Resource resource, rlim_t value)
{
    const struct rlimit both = { value, value };
    setrlimit(resource, &both);
}

/// A small stack, little memory on top of what the test program has mapped already (not under ASan, which needs
/// terabytes of addresses), seconds of computing time, and an end for a case that blocks.
inline void EnterLimits(rlim_t megabytes)
{
    // The handlers of QtTest and of the sanitizers would print a whole backtrace for what is a plain result here.
    for (const int signal : { SIGSEGV, SIGBUS, SIGABRT, SIGALRM, SIGXCPU }) {
        std::signal(signal, SIG_DFL);
    }
    QFile mapped(QStringLiteral("/proc/self/statm"));
    const rlim_t pages = mapped.open(QIODevice::ReadOnly) ? mapped.readAll().split(' ').value(0).toULongLong() : 0;
    const rlim_t bytes = pages * static_cast<rlim_t>(sysconf(_SC_PAGESIZE)) + megabytes * 1024 * 1024;
    SetLimit(RLIMIT_CORE, 0);
    SetLimit(RLIMIT_STACK, 1024 * 1024);
    SetLimit(RLIMIT_CPU, kSanitized ? 80 : 20);
    SetLimit(RLIMIT_AS, kSanitized ? RLIM_INFINITY : bytes);
    alarm(240);
}

/// Runs a callable that returns a QByteArray in a copy of this process, which sees all that the caller sees; nothing of
/// what it changes comes back but its result. A leak in it isn't seen.
template <typename Case>
Result Run(Case run, rlim_t megabytes = 512)
{
    QTemporaryFile output;
    const pid_t child = output.open() ? fork() : -1;
    if (child == 0) {
        EnterLimits(megabytes);
        output.write(run());
        _exit(output.flush() ? 0 : 1);
    }
    int status = -1;
    waitpid(child, &status, 0);
    QFile written(output.fileName());
    return { status == 0 ? QString() : QStringLiteral("ended by signal %1").arg(WTERMSIG(status)),
             written.open(QIODevice::ReadOnly) ? written.readAll() : QByteArray() };
}

} // namespace limitedprocess
