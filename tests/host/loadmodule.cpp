// Stands for a host's plug-in: uses the library, and leaves comment dialogs behind.

#include "control/vcreporting.h"

#include <QApplication>
#include <QFile>
#include <QTemporaryDir>

#include <memory>
#include <vector>

using Controls = std::vector<std::unique_ptr<VCReporting>>;

/// Leaves one dialog open past its control, and two that have ended; the end of any of these ends both their controls.
extern "C" Q_DECL_EXPORT bool ShowDialogs()
{
    const QTemporaryDir folder;
    const QString schema = folder.filePath(QStringLiteral("s.xsd"));
    const bool isThere = QFile(schema).open(QIODevice::WriteOnly);
    const auto report = [&] {
        auto control = std::make_unique<VCReporting>(schema, folder.path(), nullptr, true, nullptr, false, QPixmap());
        control->SetShowCommentDialog(true);
        control->SlotToReport();
        return control;
    };
    const auto controls = std::make_shared<Controls>();
    controls->push_back(report());
    controls->push_back(report());
    int dialogs = 0;
    for (QWidget *widget : QApplication::topLevelWidgets()) {
        if (widget->inherits("CommentDialogImpl")) {
            ++dialogs;
            widget->hide();
            QObject::connect(widget, &QObject::destroyed, widget, [controls] { Controls().swap(*controls); });
        }
    }
    report();
    return isThere && dialogs == 2;
}
