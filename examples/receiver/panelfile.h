#pragma once

#include <QString>

class Measurement;

/// Keeps the panel, and the folder of the reports, from one start of the program to the next.
namespace panelfile {

/// Writes the whole value tree.
void Save(Measurement &measurement, const QString &path);
/// Takes back what the file holds of the values that there are. A missing or broken file changes nothing, or what
/// stands ahead of the fault.
void Restore(Measurement &measurement, const QString &path);

/// Keeps the folder of the reports that the operator has chosen.
void SaveReportFolder(const QString &folder);
/// The folder that was kept; empty if none was.
QString RestoreReportFolder();

} // namespace panelfile
