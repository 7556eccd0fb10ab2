#pragma once

class QDomDocument;
class QString;

/// Saves a finished report, with or without the comment dialog, and traces what becomes of it where that is not what
/// the operator expects. False if the file could not be written.
bool SaveReport(const QDomDocument &document, const QString &path);
