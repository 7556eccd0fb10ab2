#pragma once

#include <QString>

class Measurement;

/// Makes one report without a window and tells on the standard output what happens. The result is the program's exit
/// code: 0 if the schema was read and the report is there.
int RunOnce(Measurement &measurement, const QString &schema, const QString &reportFolder);
