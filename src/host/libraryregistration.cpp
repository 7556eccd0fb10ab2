#include "host/ostrel.h"

namespace {

/// Lives as long as the library is loaded. A static object, not a QCoreApplication hook: the library may be loaded
/// and unloaded while there is no application yet or any more.
class LibraryRegistration
{
public:
    LibraryRegistration() { TranslationCenter::Instance().Register(GetName()); }
    ~LibraryRegistration() { TranslationCenter::Instance().Unregister(GetName()); }
    Q_DISABLE_COPY(LibraryRegistration)

private:
    /// No QStringLiteral: its characters lie in the library, and a copy of the name may outlive it.
    static QString GetName() { return QString::fromLatin1("Tagwright"); }
};

// NOLINTNEXTLINE(cert-err58-cpp): nothing can catch at load time, and nothing in it throws but on lack of memory.
const LibraryRegistration registration;

} // namespace
