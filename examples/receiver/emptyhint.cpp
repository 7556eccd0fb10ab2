#include "emptyhint.h"

#include <QAbstractItemModel>
#include <QAbstractItemView>
#include <QVBoxLayout>

EmptyHint::EmptyHint(const QString &text, QAbstractItemView &view)
    : QLabel(text, view.viewport())
{
    setWordWrap(true);
    setAlignment(Qt::AlignCenter);
    // A click goes to the view.
    setAttribute(Qt::WA_TransparentForMouseEvents);
    setForegroundRole(QPalette::PlaceholderText);
    auto *layout = new QVBoxLayout(view.viewport());
    layout->addWidget(this);
    const QAbstractItemModel *model = view.model();
    const auto follow = [this, model] { setVisible(model->rowCount() == 0); };
    connect(model, &QAbstractItemModel::rowsInserted, this, follow);
    connect(model, &QAbstractItemModel::rowsRemoved, this, follow);
    connect(model, &QAbstractItemModel::modelReset, this, follow);
}
