// The same report with Xerces-C++: built as a DOM, written, and the text validated against the schema in memory.
// peer_xerces DECLARATIONS REPEATS FOLDER; 0 declarations: the plain schema. Prints the seconds that it took.

#include "workload.h"

#include <memory>
#include <xercesc/dom/DOM.hpp>
#include <xercesc/framework/LocalFileFormatTarget.hpp>
#include <xercesc/framework/MemBufFormatTarget.hpp>
#include <xercesc/framework/MemBufInputSource.hpp>
#include <xercesc/sax2/DefaultHandler.hpp>
#include <xercesc/sax2/SAX2XMLReader.hpp>
#include <xercesc/sax2/XMLReaderFactory.hpp>
#include <xercesc/util/PlatformUtils.hpp>
#include <xercesc/util/TransService.hpp>
#include <xercesc/util/XMLString.hpp>

namespace {

using namespace xercesc;
using workload::Field;

/// Text in the library's own form.
class Text
{
public:
    explicit Text(const std::string &text)
        : m_oText(reinterpret_cast<const XMLByte *>(text.c_str()), text.size(), "UTF-8")
    {
    }
    operator const XMLCh *() const { return m_oText.str(); }

private:
    TranscodeFromStr m_oText;
};

DOMElement *AddElement(DOMDocument *document, DOMNode *parent, const std::string &name, const char *text = nullptr)
{
    DOMElement *element = document->createElement(Text(name));
    parent->appendChild(element);
    if (text != nullptr) {
        element->appendChild(document->createTextNode(Text(text)));
    }
    return element;
}

void AddFields(DOMDocument *document, DOMNode *parent, const std::vector<Field> &fields)
{
    for (const Field &field : fields) {
        AddElement(document, parent, field.name, field.text);
    }
}

void AddSignals(DOMDocument *document, DOMNode *root, int repeats)
{
    DOMElement *first = AddElement(document, root, "Signal");
    std::vector<std::unique_ptr<Text>> texts;
    for (const Field &field : workload::SignalFields()) {
        AddElement(document, first, field.name);
        texts.push_back(std::make_unique<Text>(field.text));
    }
    for (int i = 1; i < repeats; ++i) {
        root->insertBefore(first->cloneNode(true), first->getNextSibling());
    }
    for (DOMNode *signal = first; signal != nullptr; signal = signal->getNextSibling()) {
        std::size_t index = 0;
        for (DOMNode *child = signal->getFirstChild(); child != nullptr; child = child->getNextSibling()) {
            child->appendChild(document->createTextNode(*texts[index++]));
        }
    }
}

void BuildDocument(DOMDocument *document, int fillers, int repeats)
{
    DOMNode *root = document->getDocumentElement();
    AddFields(document, root, workload::ReportFields());
    AddFields(document, AddElement(document, root, "Settings"), workload::SettingsFields());
    for (int i = 0; i < fillers; ++i) {
        AddElement(document, root, workload::FillerName(i), workload::FillerField(i).text);
    }
    AddSignals(document, root, repeats);
}

void Serialize(DOMImplementation *implementation, DOMDocument *document, XMLFormatTarget &target)
{
    DOMLSSerializer *serializer = implementation->createLSSerializer();
    DOMLSOutput *output = implementation->createLSOutput();
    output->setByteStream(&target);
    output->setEncoding(Text("UTF-8"));
    serializer->getDomConfig()->setParameter(XMLUni::fgDOMWRTFormatPrettyPrint, true);
    serializer->write(document, output);
    output->release();
    serializer->release();
}

class Judge : public DefaultHandler
{
public:
    void error(const SAXParseException &) override { m_bIsGood = false; }
    void fatalError(const SAXParseException &) override { m_bIsGood = false; }

    bool m_bIsGood = true;
};

bool IsValid(const MemBufFormatTarget &text, const std::string &schemaPath)
{
    std::unique_ptr<SAX2XMLReader> reader(XMLReaderFactory::createXMLReader());
    Judge judge;
    reader->setErrorHandler(&judge);
    reader->setFeature(XMLUni::fgSAX2CoreValidation, true);
    reader->setFeature(XMLUni::fgXercesDynamic, false);
    reader->setFeature(XMLUni::fgXercesSchema, true);
    reader->setFeature(XMLUni::fgXercesUseCachedGrammarInParse, true);
    const bool hasGrammar = reader->loadGrammar(schemaPath.c_str(), Grammar::SchemaGrammarType, true) != nullptr;
    reader->parse(MemBufInputSource(text.getRawBuffer(), text.getLen(), "report", false));
    return hasGrammar && judge.m_bIsGood;
}

bool MakeReport(const std::string &schemaPath, const std::string &reportPath, int fillers, int repeats)
{
    DOMImplementation *implementation = DOMImplementationRegistry::getDOMImplementation(Text("LS"));
    DOMDocument *document = implementation->createDocument(nullptr, Text("Report"), nullptr);
    BuildDocument(document, fillers, repeats);
    MemBufFormatTarget text;
    Serialize(implementation, document, text);
    document->release();
    LocalFileFormatTarget file(reportPath.c_str());
    file.writeChars(text.getRawBuffer(), text.getLen(), nullptr);
    file.flush();
    return IsValid(text, schemaPath);
}

} // namespace

int main(int argc, char *argv[])
{
    XMLPlatformUtils::Initialize();
    const int result = workload::RunPeer(argc, argv, MakeReport);
    XMLPlatformUtils::Terminate();
    return result;
}
