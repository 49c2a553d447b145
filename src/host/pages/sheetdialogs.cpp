// SPDX-License-Identifier: MIT
#include "sheetdialogs.h"

#include <QFileInfo>
#include <QInputDialog>

namespace {

constexpr int lastNode = 127;

} // namespace

bool SheetDialogs::isSheet(const QString &fileName)
{
    return fileName.endsWith(QLatin1String(".eds"), Qt::CaseInsensitive)
           || fileName.endsWith(QLatin1String(".dcf"), Qt::CaseInsensitive);
}

QString SheetDialogs::patterns()
{
    return QStringLiteral("*.eds *.dcf *.EDS *.DCF");
}

void SheetDialogs::askForNode(QWidget *parent, const QString &fileName,
                              const std::function<void(quint8 nodeId)> &chosen)
{
    auto *dialog = new QInputDialog(parent->window());
    dialog->setObjectName(QStringLiteral("sheetNodeDialog"));
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setWindowTitle(QFileInfo(fileName).fileName());
    dialog->setLabelText(tr("Which node is it the data sheet of?"));
    dialog->setInputMode(QInputDialog::IntInput);
    dialog->setIntRange(1, lastNode);
    QObject::connect(dialog, &QInputDialog::intValueSelected, parent,
                     [chosen](int node) { chosen(static_cast<quint8>(node)); });
    dialog->open();
}
