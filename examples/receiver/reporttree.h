#pragma once

#include "events/itagwright.h"

#include <QTreeWidget>

class ElemBeginEvent;

/// Shows an XML file as a tree: element, value, attributes. It is built from the reader's events.
class ReportTree : public QTreeWidget, private ITagwright
{
    Q_OBJECT

public:
    explicit ReportTree(QWidget *parent);

    /// Of a file that is not well-formed, what stands ahead of the fault is shown.
    void ShowFile(const QString &path);

private:
    void XmlUpdate(XmlEvent *event) override;
    void AddElement(ElemBeginEvent &event);

    QTreeWidgetItem *m_pCurrent = nullptr; // where the next element goes; the widget's
};
