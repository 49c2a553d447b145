// SPDX-License-Identifier: MIT
#include "messagebox.h"

#include <details/overviewtr.h>
#include <store/wholefile.h>

#include <QDir>
#include <QFileDialog>
#include <QMessageBox>
#include <QPushButton>

namespace {

constexpr int mostLines = 40;
constexpr int mostCharacters = 4000;
constexpr int mostDetails = 20000; // characters, which even in one line are laid out at once

/*! How much of a text a box has room for, in characters. */
int lengthOfBeginning(const QString &text)
{
    int end = -1;
    for (int line = 0; line < mostLines; ++line) {
        end = text.indexOf(QLatin1Char('\n'), end + 1);
        if (end < 0 || end > mostCharacters)
            return qMin(text.size(), mostCharacters);
    }
    return end;
}

QString details(const QString &text)
{
    if (text.size() <= mostDetails)
        return text;
    return text.left(mostDetails) + QStringLiteral("\n\u2026\n")
           + Tr::tr("Characters not shown: %1").arg(text.size() - mostDetails);
}

void saveText(const QString &text)
{
    const QString fileName
        = QFileDialog::getSaveFileName(nullptr, Tr::tr("Save text"), QStringLiteral("message.txt"));
    if (fileName.isEmpty())
        return;
    WholeFile file(fileName);
    if (!file.open(QIODevice::Text) || !file.write(text.toUtf8()) || !file.commit()) {
        showMessage(QString(), Tr::tr("The file %1 cannot be written: %2.")
                                   .arg(QDir::toNativeSeparators(fileName), file.errorString()));
    }
}

void showLongMessage(QMessageBox &box, const QString &text, int length)
{
    box.setText(text.left(length) + QStringLiteral("\n\u2026"));
    box.setDetailedText(details(text));
    box.setStandardButtons(QMessageBox::Ok);
    const QPushButton *save = box.addButton(Tr::tr("Save text..."), QMessageBox::ActionRole);
    box.exec();
    if (box.clickedButton() == save)
        saveText(text);
}

} // namespace

void showMessage(const QString &title, const QString &text)
{
    QMessageBox box;
    box.setWindowTitle(title);
    box.setTextFormat(Qt::PlainText);
    const int length = lengthOfBeginning(text);
    if (length < text.size()) {
        showLongMessage(box, text, length);
        return;
    }
    box.setText(text);
    box.exec();
}
