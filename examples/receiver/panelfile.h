#pragma once

#include <QString>

class Measurement;

/// The file that keeps the panel from one start of the program to the next.
namespace panelfile {

/// Writes the whole value tree.
void Save(Measurement &measurement, const QString &path);
/// Takes back what the file holds of the values that there are. A missing or broken file changes nothing, or what
/// stands ahead of the fault.
void Restore(Measurement &measurement, const QString &path);

} // namespace panelfile
