#pragma once

#include "tagwright_export.h"

#include "events/itagwright.h"

#include <QDateTime>
#include <QString>
#include <QTime>

/// Makes one report.
class TAGWRIGHT_EXPORT XmlCreateReport
{
public:
    XmlCreateReport(ITagwright *pCallback);
    ~XmlCreateReport();
    Q_DISABLE_COPY(XmlCreateReport)

    bool CreateXmlFromSchema(QString schemaPath, QString reportPath, bool showCommentDialog);

    void SetXmlValue(QString value);
    void SetXmlValue(const char *value);
    void SetXmlValue(double value);
    void SetXmlValue(int value);
    void SetXmlValue(bool value);
    void SetXmlValue(QDateTime value);
    void SetXmlValue(QTime value);

    void SetAttributeValue(QString name, QString value);
    void SetAttributeValue(QString name, const char *value);
    void SetAttributeValue(QString name, QDateTime value);
    void SetAttributeValue(QString name, int value);
    void SetAttributeValue(QString name, double value);
    void RemoveAttribute(QString name);

    void SetElementMaxOccurs(QString name, int maxOccurs);
    void DiscardChoiceItem();
};
