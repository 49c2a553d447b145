// SPDX-License-Identifier: MIT
#include "boxes.h"

#include <QApplication>
#include <QMessageBox>
#include <QPushButton>

namespace {

struct MainWindowTr
{
    Q_DECLARE_TR_FUNCTIONS(MainWindow)
};

QMessageBox *makeWarning(QWidget *parent, const QString &text, QMessageBox::StandardButton button)
{
    auto *box
        = new QMessageBox(QMessageBox::Warning, QApplication::applicationDisplayName(), text, button, parent);
    box->setAttribute(Qt::WA_DeleteOnClose);
    box->setTextFormat(Qt::PlainText);
    return box;
}

} // namespace

void Boxes::showError(QWidget *parent, const QString &sentence)
{
    makeWarning(parent, sentence, QMessageBox::Ok)->open();
}

void Boxes::askToReadAnyway(QWidget *parent, const QStringList &obstacles, const std::function<void()> &read)
{
    QMessageBox *box = makeWarning(parent, obstacles.join(QLatin1String("\n\n")), QMessageBox::Cancel);
    box->setObjectName(QStringLiteral("obstacleBox"));
    const QPushButton *readAnyway = box->addButton(MainWindowTr::tr("&Read anyway"), QMessageBox::AcceptRole);
    box->setDefaultButton(QMessageBox::Cancel);
    QObject::connect(readAnyway, &QPushButton::clicked, parent, read);
    box->open();
}
