#pragma once

#include <QString>

/// What Qt takes for the same report when nothing is checked: the least that any way over Qt's classes costs.
/// The schema goes through QXmlSimpleReader with an empty handler; one Signal is cloned; every field gets a text node;
/// QDomNode::save writes through a QTextStream on the file.
void RunFloor(const QString &schemaPath, const QString &reportPath, int repeats, int fillers = 0);

/// QXmlSimpleReader with an empty handler over one file.
void RunParseFloor(const QString &path);
