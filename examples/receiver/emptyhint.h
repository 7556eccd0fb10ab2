#pragma once

#include <QLabel>

class QAbstractItemView;

/// Tells in a view that is empty what it is for, or what to do.
class EmptyHint : public QLabel
{
    Q_OBJECT

public:
    /// Lies over the view, which becomes its parent, as long as that has no rows. `view` has its model already.
    EmptyHint(const QString &text, QAbstractItemView &view);
};
