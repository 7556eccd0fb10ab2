#pragma once

#include <QString>

class Measurement;

/// Draws the program's windows into PNG files for dense screens: main-window, button-enabled, button-disabled and
/// comment-dialog. The result is the program's exit code: 0 if all four were written.
int DrawPictures(Measurement &measurement, const QString &schema, const QString &pictureFolder);
