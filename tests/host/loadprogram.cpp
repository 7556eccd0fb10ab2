// Loads and unloads the library without being linked to it. Built twice: with the host's libraries linked, where it
// watches the registry of translations, and without them, as a program that meets them first through the library.
#ifdef WITH_HOST
#include "host/ostrel.h"
#endif

#include <QCoreApplication>
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
    if (!library.unload() || IsMapped(path)) {
        return "it stays in the process";
    }
    return IsRegistered(false) ? nullptr : "it is registered behind its end";
}

} // namespace

int main(int argc, char *argv[])
{
    const char *path = argc > 1 ? argv[1] : "";
    const char *fault = LoadAndUnload(path);
    fault = fault == nullptr ? LoadAndUnload(path) : fault;
    // What an unloaded library had left with Qt would be called now.
    const QCoreApplication application(argc, argv);
    fault = fault == nullptr ? LoadAndUnload(path) : fault;
    QLibrary library(QString::fromLocal8Bit(path));
    if (fault == nullptr && (!library.load() || !IsRegistered(true))) {
        fault = "it can't be kept to the end";
    }
    std::puts(fault == nullptr ? "all well" : fault);
    return fault == nullptr ? 0 : 1;
}
