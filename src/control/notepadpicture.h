#pragma once

/// The button's picture, as XPM: a note pad and a pencil, 16 by 16.
extern const char *const kNotePadPicture[];
