#include "report/xmlcreatereport.h"

#include "control/commentdialogimpl.h"
#include "dom/documentsaver.h"
#include "dom/guardedreader.h"
#include "events/eventsender.h"
#include "host/trace.h"
#include "report/domparser.h"
#include "report/reportfate.h"
#include "schema/xmlschemahandler.h"

#include <QDir>
#include <QDomDocument>
#include <QDomElement>
#include <QFile>
#include <QScopeGuard>

#include <utility>

namespace {

QString Unit()
{
    return QStringLiteral("xmlcreatereport");
}

QString WithSlashes(QString path)
{
    return path.replace(QLatin1Char('\\'), QLatin1Char('/'));
}

// Hosts write paths with backslashes, which are plain characters of a name on most platforms.
QString ToNativePath(const QString &path)
{
    return QDir::separator() == QLatin1Char('\\') ? path : WithSlashes(path);
}

} // namespace

XmlCreateReport::XmlCreateReport(ITagwright *pCallback)
    : m_pFate(std::make_shared<ReportFate>())
{
    if (trace::CheckCallback(pCallback, "XmlCreateReport", Unit(), __LINE__)) {
        m_pCallback = pCallback;
    }
}

XmlCreateReport::~XmlCreateReport()
{
    while (!m_CommentDialogs.empty()) {
        // A host that closes up may have destroyed all windows already.
        if (CommentDialogImpl *dialog = m_CommentDialogs.front().lock().get()) {
            dialog->End();
        }
        m_CommentDialogs.pop_front();
    }
    m_pDialogDocument.reset();
    m_pSchemaHandler.reset();
}

bool XmlCreateReport::CreateXmlFromSchema(QString schemaPath, QString reportPath, bool showCommentDialog)
{
    const QString normalisedPath = WithSlashes(schemaPath);
    if (m_pCallback == nullptr || m_pSchemaHandler != nullptr) {
        return false;
    }
    m_pFate->GetOutcome().SetPath(ToNativePath(reportPath));
    m_pSchemaHandler = std::make_unique<XmlSchemaHandler>(m_pCallback, normalisedPath);
    m_pSchemaHandler->SetRootMoves();
    if (m_bValidOutput) {
        m_pDeclarations = m_pSchemaHandler->CollectDeclarations();
    }
    const bool isParsed = ParseSchema(schemaPath);
    // From here on nothing depends on the result: a report that could not be made is still a file, an empty one.
    m_pDocument = m_pSchemaHandler->GetDocument();
    m_pSchemaHandler->GetMaps(m_MissingMap, m_OccursMap, m_TypeMap, m_ChoiceMap);
    WalkTemplate();
    SetSchemaAttributes(normalisedPath);
    if (showCommentDialog) {
        ShowCommentDialog(reportPath);
    } else {
        // Whether there is a file is no part of the result.
        SaveReport(reportPath);
        m_pFate->Settle();
    }
    return isParsed;
}

bool XmlCreateReport::ParseSchema(const QString &schemaPath)
{
    const QString path = QFile::exists(schemaPath) ? schemaPath : ToNativePath(schemaPath);
    m_pReader = std::make_unique<dom::GuardedReader>();
    m_pReader->setContentHandler(m_pSchemaHandler.get());
    m_pReader->setErrorHandler(m_pSchemaHandler.get());
    const bool isParsed = m_pReader->ReadFile(path);
    const QString refusal = m_pReader->GetRefusal();
    m_pReader.reset();
    const QString error = refusal.isEmpty() ? ExplainEmptyTemplate(path, isParsed)
                                            : QLatin1String("The schema can't be read: ") + refusal;
    if (!error.isEmpty()) {
        m_pFate->GetOutcome().SetSchemaError(error);
        trace::Write(Unit(), __LINE__, [&error]() -> const QString & { return error; });
    }
    return isParsed;
}

// Empty for a template with a root.
QString XmlCreateReport::ExplainEmptyTemplate(const QString &path, bool isParsed) const
{
    if (isParsed && !m_pSchemaHandler->GetDocument()->documentElement().isNull()) {
        return QString();
    }
    return QLatin1String("The schema \"") + path
        + (isParsed ? QLatin1String("\" declares no element that could be a root (only tags with the prefix \"xs:\" "
                                    "count); its report stays empty.")
                    : QLatin1String("\" is not well-formed or could not be resolved; its report stays empty."));
}

void XmlCreateReport::WalkTemplate()
{
    m_pDomParser = std::make_unique<DomParser>(m_pCallback, m_OccursMap, m_ChoiceMap);
    m_pDomParser->SetDocument(m_pDocument);
    // The document is the schema handler's and ours; a receiver gets at it through the events alone.
    m_pDomParser->SetUnwatched();
    if (m_pDeclarations != nullptr) {
        m_pDomParser->SetValidOutput(m_pDeclarations);
    }
    if (m_bCollectOutcome || m_bValidOutput) {
        m_pDomParser->GetRefusals().SetOutcome(&m_pFate->GetOutcome());
    }
    // Runs also if a receiver throws.
    const auto letGo = qScopeGuard([this] {
        m_pCurrentElement = nullptr;
        m_pDiscardSuccessor.reset();
        m_pDomParser.reset();
    });
    m_pDomParser->Parse();
}

void XmlCreateReport::SetSchemaAttributes(const QString &normalisedPath)
{
    QDomElement root = m_pDocument->documentElement();
    root.setAttribute(QLatin1String("xsi:noNamespaceSchemaLocation"), normalisedPath);
    root.setAttribute(QLatin1String("xmlns:xsi"), QLatin1String("http://www.w3.org/2001/XMLSchema-instance"));
}

void XmlCreateReport::SaveReport(const QString &reportPath)
{
    const QString path = ToNativePath(reportPath);
    const dom::SaveResult result = dom::SaveDocument(*m_pDocument, path);
    m_pFate->GetOutcome().SetSaveResult(result.m_sFailure);
    if (!result.m_sFailure.isEmpty()) {
        trace::Write(Unit(), __LINE__, [&] {
            return QLatin1String("The report \"") + path + QLatin1String("\" could not be saved: ") + result.m_sFailure;
        });
    }
    if (result.m_bReplaced) {
        trace::Write(Unit(), __LINE__, [&] {
            return QLatin1String("The report \"") + path
                + QLatin1String("\" holds a character that XML can't hold; U+FFFD stands in its place.");
        });
    }
}

void XmlCreateReport::ShowCommentDialog(const QString &reportPath)
{
    auto *dialog = new CommentDialogImpl(m_pFate);
    m_CommentDialogs.push_back(dialog->GetSelf());
    m_pDialogDocument = std::make_unique<QDomDocument>(*m_pDocument);
    dialog->SetDocument(m_pDialogDocument.get());
    dialog->SetFileName(ToNativePath(reportPath));
    dialog->SetKeepUnsaved(m_bKeepUnsavedDialog);
    dialog->ShowData();
}

std::list<QDialog *> XmlCreateReport::GetCommentDialogs() const
{
    std::list<QDialog *> dialogs;
    for (const std::weak_ptr<CommentDialogImpl> &dialog : m_CommentDialogs) {
        if (!dialog.expired()) {
            dialogs.push_back(dialog.lock().get());
        }
    }
    return dialogs;
}

void XmlCreateReport::SetFateHandler(std::function<void(const ReportOutcome &)> handler)
{
    m_pFate->SetHandler(std::move(handler));
}

void XmlCreateReport::KeepCurrentElement()
{
    if (FetchCurrentElement("KeepCurrentElement") && m_pDomParser->GetValidOutput() != nullptr) {
        m_pDomParser->GetValidOutput()->Keep(*m_pCurrentElement);
    }
}

bool XmlCreateReport::ServeOnce()
{
    return FetchCurrentElement("ServeOnce") && HasCurrentElement() && m_pDomParser->ServeOnce();
}

ReportPlace XmlCreateReport::GetPlace(const QString &attribute) const
{
    return m_pDomParser == nullptr ? ReportPlace() : m_pDomParser->GetPlace(attribute);
}

ReportOutcome XmlCreateReport::GetOutcome() const
{
    return m_pFate->GetOutcome();
}

void XmlCreateReport::Error(int id)
{
    SendEvent<ErrorEvent>(m_pCallback, static_cast<ITagwright::ErrorID>(id));
}

// First step of every setter. The walk changes its element, so that it is fetched each time.
bool XmlCreateReport::FetchCurrentElement(const char *setter)
{
    if (m_pDomParser == nullptr) {
        trace::Write(Unit(), __LINE__, [setter] {
            return QLatin1String("XmlCreateReport: ") + QLatin1String(setter)
                + QLatin1String(" was called outside a report's walk and does nothing.");
        });
        return false;
    }
    m_pCurrentElement = m_pDomParser->GetCurrentElement();
    return true;
}

bool XmlCreateReport::HasCurrentElement() const
{
    return m_pCurrentElement != nullptr && !m_pCurrentElement->isNull();
}

bool XmlCreateReport::CheckCurrentElement()
{
    if (!HasCurrentElement()) {
        Error(ITagwright::CURRENT_ELEMENT_IS_NULL);
        return false;
    }
    return true;
}
