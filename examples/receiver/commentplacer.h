#pragma once

#include <QList>
#include <QObject>

class QWidget;

/// Opens a comment dialog beside those that are open already: all of them would come up at the same place otherwise.
/// The first one stays where the system puts it.
class CommentPlacer : public QObject
{
    Q_OBJECT

public:
    /// Watches the windows of the application.
    explicit CommentPlacer(QObject *parent);

    /// The comment dialogs that are open.
    static QList<QWidget *> FindDialogs();

    bool eventFilter(QObject *watched, QEvent *event) override;
};
