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
    // The colour alone: the role's brush draws nothing in some styles.
    QPalette colors = palette();
    colors.setColor(foregroundRole(), colors.color(QPalette::PlaceholderText));
    setPalette(colors);
    auto *layout = new QVBoxLayout(view.viewport());
    layout->addWidget(this);
    const QAbstractItemModel *model = view.model();
    const auto follow = [this, model] { setVisible(model->rowCount() == 0); };
    connect(model, &QAbstractItemModel::rowsInserted, this, follow);
    connect(model, &QAbstractItemModel::rowsRemoved, this, follow);
    connect(model, &QAbstractItemModel::modelReset, this, follow);
}
