#include "floor.h"

#include "workload.h"

#include <QDomDocument>
#include <QFile>
#include <QTextStream>
#include <QXmlDefaultHandler>
#include <QXmlInputSource>
#include <QXmlSimpleReader>

namespace {

using workload::Field;

QDomElement AppendElement(QDomDocument &document, QDomNode &parent, const QString &name)
{
    return parent.appendChild(document.createElement(name)).toElement();
}

void AppendFields(QDomDocument &document, QDomElement &parent, const std::vector<Field> &fields)
{
    for (const Field &field : fields) {
        QDomElement element = AppendElement(document, parent, QString::fromUtf8(field.name));
        element.appendChild(document.createTextNode(QString::fromUtf8(field.text)));
    }
}

void AppendFillers(QDomDocument &document, QDomElement &root, int fillers)
{
    for (int i = 0; i < fillers; ++i) {
        QDomElement element = AppendElement(document, root, QString::fromStdString(workload::FillerName(i)));
        element.appendChild(document.createTextNode(QString::fromUtf8(workload::FillerField(i).text)));
    }
}

void AppendSignals(QDomDocument &document, QDomElement &root, int repeats)
{
    QDomElement first = AppendElement(document, root, QStringLiteral("Signal"));
    std::vector<QString> texts;
    for (const Field &field : workload::SignalFields()) {
        AppendElement(document, first, QString::fromUtf8(field.name));
        texts.push_back(QString::fromUtf8(field.text));
    }
    for (int i = 1; i < repeats; ++i) {
        root.insertAfter(first.cloneNode(true), first);
    }
    for (QDomNode signal = first; !signal.isNull(); signal = signal.nextSibling()) {
        std::size_t index = 0;
        for (QDomNode child = signal.firstChild(); !child.isNull(); child = child.nextSibling()) {
            child.appendChild(document.createTextNode(texts[index++]));
        }
    }
}

void Save(const QDomDocument &document, const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly)) {
        qFatal("can't write %s", qPrintable(path));
    }
    QTextStream stream(&file);
    document.save(stream, 4);
}

} // namespace

void RunParseFloor(const QString &path)
{
    QFile file(path);
    QXmlInputSource source(&file);
    QXmlDefaultHandler handler;
    QXmlSimpleReader reader;
    reader.setContentHandler(&handler);
    reader.setErrorHandler(&handler);
    if (!reader.parse(source)) {
        qFatal("can't read %s", qPrintable(path));
    }
}

void RunFloor(const QString &schemaPath, const QString &reportPath, int repeats, int fillers)
{
    RunParseFloor(schemaPath);
    QDomDocument document;
    document.appendChild(document.createProcessingInstruction(QStringLiteral("xml"),
                                                              QStringLiteral("version='1.0' encoding=\"UTF-8\"")));
    QDomElement root = AppendElement(document, document, QStringLiteral("Report"));
    AppendFields(document, root, workload::ReportFields());
    QDomElement settings = AppendElement(document, root, QStringLiteral("Settings"));
    AppendFields(document, settings, workload::SettingsFields());
    AppendFillers(document, root, fillers);
    AppendSignals(document, root, repeats);
    Save(document, reportPath);
}
