// Loads and unloads the library without being linked to it. Built twice: with the host's libraries linked, where it
// watches the registry of translations, and without them, as a program that meets them first through the library.
#ifdef WITH_HOST
#include "host/ostrel.h"
#endif

#include <QApplication>
#include <QLibrary>
#include <QStringList>

#include <cstdio>
#include <dlfcn.h>

namespace {

/// The names of the libraries that are loaded; where the registry isn't watched, as they are expected.
QStringList Names(const QStringList &expected)
{
#ifdef WITH_HOST
    Q_UNUSED(expected)
    return TranslationCenter::Instance().GetNames();
#else
    return expected;
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
    const QStringList own(QStringLiteral("Tagwright"));
    QLibrary library(QString::fromLocal8Bit(path));
    if (IsMapped(path) || !Names({}).isEmpty()) {
        return "it is there before it is loaded";
    }
    const bool isLoaded = library.load();
    const QStringList names = Names(own);
    if (!isLoaded || !library.unload() || IsMapped(path)) {
        return "it can't be loaded, or stays in the process";
    }
    // Its name must have characters of its own, or it is gone by now.
    if (names != own) {
        return "it isn't registered while it is loaded";
    }
    return Names({}).isEmpty() ? nullptr : "it is registered behind its end";
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
    if (fault == nullptr && !library.load()) {
        fault = "it can't be kept to the end";
    }
    std::puts(fault == nullptr ? "all well" : fault);
    return fault == nullptr ? 0 : 1;
}
