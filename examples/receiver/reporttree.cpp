#include "reporttree.h"

#include "emptyhint.h"

#include "events/xmlevent.h"
#include "xml/xmlreader.h"

#include <QHeaderView>

namespace {

enum Column { kElement, kValue, kAttributes, kColumns };

/// The text of an element without elements; what its children hold is theirs.
QString OwnText(const QDomNode &node)
{
    return node.firstChildElement().isNull() ? node.toElement().text() : QString();
}

QString UnitName()
{
    return QStringLiteral("Unit");
}

/// All but the unit, which is shown with the value.
QString ToText(const QXmlAttributes &attributes)
{
    QStringList texts;
    for (int i = 0; i < attributes.count(); ++i) {
        if (attributes.qName(i) != UnitName()) {
            texts << attributes.qName(i) + QLatin1String(" = ") + attributes.value(i);
        }
    }
    texts.sort();
    return texts.join(QStringLiteral(", "));
}

} // namespace

ReportTree::ReportTree(QWidget *parent)
    : QTreeWidget(parent)
{
    setObjectName(QStringLiteral("reportTree"));
    setColumnCount(kColumns);
    setHeaderLabels({ tr("Element"), tr("Value"), tr("Attributes") });
    setAlternatingRowColors(true);
    new EmptyHint(tr("Choose a report above to see here what is in it."), *this);
}

void ReportTree::ShowFile(const QString &path)
{
    clear();
    m_pCurrent = invisibleRootItem();
    XMLReader reader(this, nullptr);
    reader.SetXmlContent(path);
    reader.ParseXml();
    expandAll();
    resizeColumnToContents(kElement);
    resizeColumnToContents(kValue);
}

void ReportTree::XmlUpdate(XmlEvent *event)
{
    if (event->GetType() == XmlEvent::EVENT_ELEM_BEGIN) {
        AddElement(*static_cast<ElemBeginEvent *>(event));
    } else if (event->GetType() == XmlEvent::EVENT_ELEM_END && m_pCurrent != invisibleRootItem()) {
        m_pCurrent = m_pCurrent->parent() == nullptr ? invisibleRootItem() : m_pCurrent->parent();
    }
}

void ReportTree::AddElement(ElemBeginEvent &event)
{
    m_pCurrent = new QTreeWidgetItem(m_pCurrent);
    m_pCurrent->setText(kElement, event.GetElementName());
    const QXmlAttributes attributes = event.GetElementAttributes();
    m_pCurrent->setText(kValue, OwnText(event.GetElementNode()) + QLatin1Char(' ') + attributes.value(UnitName()));
    m_pCurrent->setText(kAttributes, ToText(attributes));
    m_pCurrent->setToolTip(kAttributes, m_pCurrent->text(kAttributes));
}
