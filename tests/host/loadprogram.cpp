// Loads and unloads the library without being linked to it. Built twice: with the host's libraries linked, where it
// watches the registry of translations, and without them, as a program that meets them first through the library.
#ifdef WITH_HOST
#include "host/ostrel.h"
#endif

#include <QApplication>
#include <QLibrary>

#include <cstdio>
#include <dlfcn.h>

namespace {

bool IsRegistered(bool expected)
{
#ifdef WITH_HOST
    return TranslationCenter::Instance().GetNames().contains(QStringLiteral("Tagwright")) == expected;
#else
    Q_UNUSED(expected)
    return true;
#endif
}

bool IsMapped(const char *path)
{
    void *handle = dlopen(path, RTLD_NOW | RTLD_NOLOAD);
    if (handle != nullptr) {
        dlclose(handle);
    }
    return handle != nullptr;
}

/// What went wrong, or null.
const char *LoadAndUnload(const char *path)
{
    QLibrary library(QString::fromLocal8Bit(path));
    if (IsMapped(path) || !IsRegistered(false)) {
        return "it is there before it is loaded";
    }
    if (!library.load() || !IsRegistered(true)) {
        return "it isn't registered while it is loaded";
    }
#ifdef WITH_HOST
    const QStringList names = TranslationCenter::Instance().GetNames();
#endif
    if (!library.unload() || IsMapped(path)) {
        return "it stays in the process";
    }
#ifdef WITH_HOST
    if (names != QStringList(QStringLiteral("Tagwright"))) {
        return "its name is gone with it";
    }
#endif
    return IsRegistered(false) ? nullptr : "it is registered behind its end";
}

/// Lets a module that uses the library show comment dialogs, and unloads both.
const char *ShowDialogs(const char *path, const char *module)
{
    QLibrary user(QString::fromLocal8Bit(module));
    using Show = bool (*)();
    const auto show = reinterpret_cast<Show>(user.resolve("ShowDialogs"));
    if (show == nullptr || !show()) {
        return "no dialogs";
    }
    if (!user.unload() || IsMapped(path)) {
        return "it stays in the process behind its dialogs";
    }
    return QMetaType::type("ReportOutcome") == QMetaType::UnknownType ? nullptr : "a type of it stays registered";
}

} // namespace

/// LIBRARY MODULE
int main(int argc, char *argv[])
{
    if (argc != 3) {
        return 2;
    }
    const char *path = argv[1];
    const char *fault = LoadAndUnload(path);
    fault = fault == nullptr ? LoadAndUnload(path) : fault;
    {
        const QApplication application(argc, argv);
        fault = fault == nullptr ? LoadAndUnload(path) : fault;
        fault = fault == nullptr ? ShowDialogs(path, argv[2]) : fault;
        // Whatever an unloaded library had left with Qt would be called now.
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }
    QLibrary library(QString::fromLocal8Bit(path));
    if (fault == nullptr && (!library.load() || !IsRegistered(true))) {
        fault = "it can't be kept to the end";
    }
    std::puts(fault == nullptr ? "all well" : fault);
    return fault == nullptr ? 0 : 1;
}
