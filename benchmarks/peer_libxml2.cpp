// The same report with libxml2, validated: peer_libxml2 DECLARATIONS REPEATS FOLDER; 0 declarations: the plain schema.
// Prints the seconds that it took.

#include "workload.h"

#include <libxml/parser.h>
#include <libxml/xmlschemas.h>

namespace {

using workload::Field;

const xmlChar *Text(const char *text)
{
    return reinterpret_cast<const xmlChar *>(text);
}

void AddFields(xmlNodePtr parent, const std::vector<Field> &fields)
{
    for (const Field &field : fields) {
        xmlNewTextChild(parent, nullptr, Text(field.name), Text(field.text));
    }
}

xmlDocPtr BuildDocument(int fillers, int repeats)
{
    xmlDocPtr document = xmlNewDoc(Text("1.0"));
    xmlNodePtr root = xmlNewNode(nullptr, Text("Report"));
    xmlDocSetRootElement(document, root);
    AddFields(root, workload::ReportFields());
    AddFields(xmlNewChild(root, nullptr, Text("Settings"), nullptr), workload::SettingsFields());
    for (int i = 0; i < fillers; ++i) {
        xmlNewTextChild(root, nullptr, Text(workload::FillerName(i).c_str()), Text(workload::FillerField(i).text));
    }
    xmlNodePtr first = xmlNewChild(root, nullptr, Text("Signal"), nullptr);
    for (const Field &field : workload::SignalFields()) {
        xmlNewChild(first, nullptr, Text(field.name), nullptr);
    }
    for (int i = 1; i < repeats; ++i) {
        xmlAddNextSibling(first, xmlCopyNode(first, 1));
    }
    for (xmlNodePtr signal = first; signal != nullptr; signal = signal->next) {
        std::size_t index = 0;
        for (xmlNodePtr child = signal->children; child != nullptr; child = child->next) {
            xmlNodeAddContent(child, Text(workload::SignalFields()[index++].text));
        }
    }
    return document;
}

bool MakeReport(const std::string &schemaPath, const std::string &reportPath, int fillers, int repeats)
{
    xmlSchemaParserCtxtPtr parser = xmlSchemaNewParserCtxt(schemaPath.c_str());
    xmlSchemaPtr schema = xmlSchemaParse(parser);
    xmlDocPtr document = BuildDocument(fillers, repeats);
    xmlSchemaValidCtxtPtr validator = xmlSchemaNewValidCtxt(schema);
    const bool isGood = xmlSchemaValidateDoc(validator, document) == 0
        && xmlSaveFormatFileEnc(reportPath.c_str(), document, "UTF-8", 1) > 0;
    xmlSchemaFreeValidCtxt(validator);
    xmlFreeDoc(document);
    xmlSchemaFree(schema);
    xmlSchemaFreeParserCtxt(parser);
    return isGood;
}

} // namespace

int main(int argc, char *argv[])
{
    return workload::RunPeer(argc, argv, MakeReport);
}
