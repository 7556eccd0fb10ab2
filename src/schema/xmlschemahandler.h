#pragma once

#include "events/itagwright.h"
#include "schema/schematables.h"

#include <QDomDocument>
#include <QXmlDefaultHandler>

/// Reads one XSD file in one SAX pass into a template document and four tables.
class XmlSchemaHandler : public QXmlDefaultHandler
{
public:
    XmlSchemaHandler(ITagwright *pCallback, QString schemaPath);
    ~XmlSchemaHandler() override;

    QDomDocument *GetDocument();
    void GetMaps(MissingMap &missing, OccursMap &occurs, TypeMap &types, ChoiceMap &choices);
};
