#pragma once

#include <QIcon>

/// The picture of the report button for each density of a screen: what `small` has for the plain one, and the same note
/// pad and pencil, drawn larger, for the others and for the window.
QIcon MakeReportIcon(const QIcon &small);
