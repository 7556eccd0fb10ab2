/// Feeds the schema reader with any bytes, as the library reads a schema: first the guard, then the reader. A line "@@"
/// ends a file; the first is the top schema, the others are "1.xsd", "2.xsd" and so on beside it.

#include "dom/fileguard.h"
#include "dom/limits.h"
#include "dom/nodedepth.h"
#include "events/itagwright.h"
#include "host/veldra.h"
#include "schema/xmlschemahandler.h"

#include <QFile>
#include <QTemporaryDir>
#include <QXmlInputSource>
#include <QXmlSimpleReader>

#include <cstdlib>

namespace {

class Receiver : public ITagwright
{
public:
    void XmlUpdate(XmlEvent *) override { std::abort(); }
};

const QString &Directory()
{
    static const QTemporaryDir dir;
    static const QString path = dir.path();
    return path;
}

QString WriteFiles(const QByteArray &input)
{
    // More files than any input has are left from an earlier one and would make a run depend on it.
    static int written = 0;
    for (int i = 0; i < written; ++i) {
        QFile::remove(QStringLiteral("%1/%2.xsd").arg(Directory()).arg(i));
    }
    written = 0;
    const QByteArray marker("\n@@\n");
    for (int begin = 0; begin <= input.size() && written < 10; ++written) {
        const int found = input.indexOf(marker, begin);
        const int end = found < 0 ? input.size() : found;
        QFile file(QStringLiteral("%1/%2.xsd").arg(Directory()).arg(written));
        if (!file.open(QIODevice::WriteOnly)) {
            std::abort();
        }
        file.write(input.mid(begin, end - begin));
        begin = end + marker.size();
    }
    return Directory() + QStringLiteral("/0.xsd");
}

void Demand(bool condition)
{
    if (!condition) {
        std::abort();
    }
}

void CheckResult(XmlSchemaHandler &handler, bool result)
{
    const QDomDocument &document = *handler.GetDocument();
    Demand(result || document.firstChild().isNull());
    Demand(!result || document.firstChild().isProcessingInstruction());
    Demand(!dom::IsDeeperThan(document, limits::kMaxTemplateDepth));
    MissingMap missing;
    OccursMap occurs;
    TypeMap types;
    ChoiceMap choices;
    handler.GetMaps(missing, occurs, types, choices);
    for (const auto &[name, counts] : missing) {
        Demand(!result || name.isEmpty() || types.at(name).m_iOpenRefs == -1);
    }
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int *, char ***)
{
    // The texts of traces are made, and thrown away.
    ErrorHandler::SetTraceMask(32);
    qInstallMessageHandler([](QtMsgType, const QMessageLogContext &, const QString &) {});
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const QString path = WriteFiles(QByteArray(reinterpret_cast<const char *>(data), static_cast<int>(size)));
    if (!dom::CheckXmlFile(path).isEmpty()) {
        return 0;
    }
    Receiver receiver;
    XmlSchemaHandler handler(&receiver, path);
    QFile file(path);
    QXmlInputSource source(&file);
    QXmlSimpleReader reader;
    reader.setContentHandler(&handler);
    reader.setErrorHandler(&handler);
    CheckResult(handler, reader.parse(source));
    return 0;
}
