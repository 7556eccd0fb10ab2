#pragma once

#include "readerrun.h"

#include <vector>

/// What the schema reader has made of a schema, for people to read.
namespace templateviews {

/// The template, indented, with the rows of the occurrence and choice tables beside the elements, as comments.
QString Template(ReaderRun &run);

/// A name that a host can fill.
struct Name
{
    /// The elements from below the root, as "Signal/Frequency"; an attribute as "Signal/Frequency/@Unit".
    QString m_sPlace;
    QString m_sType;
    /// Bounds or enumeration.
    QString m_sAllowed;
    QString m_sOccurs;
    QString m_sChoice;
    /// The innermost element around the name, or itself, that a host may repeat; empty if there is none.
    QString m_sRepeated;
};

std::vector<Name> Names(ReaderRun &run);
QString NamesTable(const std::vector<Name> &names);
/// Lines to paste: an AddReportData for each name, an AddReportSource for one that is repeated.
QString NamesCode(const std::vector<Name> &names);

} // namespace templateviews
