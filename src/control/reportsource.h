#pragma once

#include "report/reportplace.h"

#include <QVariant>

#include <functional>

/// Gives the value of one place of a report: a number, a text, a bool, or a date and time, which goes the way of an
/// item of that kind. A QJsonValue counts as what it holds, a signed or unsigned char as a number. An invalid one, and
/// a JSON null, says that there is none.
using ReportSource = std::function<QVariant(const ReportPlace &place)>;

/// Says how often the element at a place is to stand. With 0 and less it gets no value, nor does anything below it.
using ReportCount = std::function<int(const ReportPlace &place)>;
