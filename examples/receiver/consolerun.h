#pragma once

#include <QString>

class Measurement;

/// Makes one report without a window and tells on the standard output what happens. The result is the program's exit
/// code: 0 if the report is there, with nothing refused and nothing missing.
int RunOnce(Measurement &measurement, const QString &schema, const QString &reportFolder);
