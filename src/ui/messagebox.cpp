// SPDX-License-Identifier: MIT
#include "messagebox.h"

#include <details/overviewtr.h>
#include <store/wholefile.h>

#include <QDir>
#include <QFileDialog>
#include <QMessageBox>
#include <QPushButton>

#include <algorithm>

namespace {

constexpr int mostLines = 40;
constexpr int mostCharacters = 1000; // a box is laid out several times until it is shown
constexpr int mostDetails = 5000;    // characters, which even in one line are laid out at once

/*! A control character that is neither tabulator nor line end: no font has a picture for it. */
bool isPictureless(QChar character)
{
    return character.category() == QChar::Other_Control && character != QLatin1Char('\n')
           && character != QLatin1Char('\r') && character != QLatin1Char('\t');
}

/*! As how many characters one counts by the time that its layout takes. */
int weight(QChar character)
{
    constexpr int tabulator = 5;
    constexpr int pictureless = 20; // is looked for in all fonts of the system
    if (character == QLatin1Char('\t'))
        return tabulator;
    return isPictureless(character) ? pictureless : 1;
}

/*! The length of the beginning of \a text that weighs no more than \a characters and has no more line ends than that. */
int lengthOfBeginning(const QString &text, int characters, int lines)
{
    for (int i = 0; i < text.size(); ++i) {
        characters -= weight(text.at(i));
        lines -= text.at(i) == QLatin1Char('\n') ? 1 : 0;
        if (characters < 0 || lines <= 0)
            return i;
    }
    return text.size();
}

QString details(const QString &text)
{
    QString beginning = text.left(mostDetails);
    std::replace_if(beginning.begin(), beginning.end(), isPictureless, QChar(0xB7)); // a dot in the middle
    beginning.truncate(lengthOfBeginning(beginning, mostDetails, mostDetails));
    if (beginning.size() == text.size())
        return beginning;
    return beginning + QStringLiteral("\n\u2026\n")
           + OverviewTr::tr("Characters not shown: %1").arg(text.size() - beginning.size());
}

void saveText(const QString &text)
{
    const QString fileName
        = QFileDialog::getSaveFileName(nullptr, OverviewTr::tr("Save text"), QStringLiteral("message.txt"));
    if (fileName.isEmpty())
        return;
    WholeFile file(fileName);
    if (!file.open(QIODevice::Text) || !file.write(text.toUtf8()) || !file.commit()) {
        showMessage(QString(), OverviewTr::tr("The file %1 cannot be written: %2.")
                                   .arg(QDir::toNativeSeparators(fileName), file.errorString()));
    }
}

void showLongMessage(QMessageBox &box, const QString &text, int length)
{
    box.setText(text.left(length) + QStringLiteral("\n\u2026"));
    box.setDetailedText(details(text));
    box.setStandardButtons(QMessageBox::Ok);
    const QPushButton *save = box.addButton(OverviewTr::tr("Save text..."), QMessageBox::ActionRole);
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
    const int length = lengthOfBeginning(text, mostCharacters, mostLines);
    if (length < text.size()) {
        showLongMessage(box, text, length);
        return;
    }
    box.setText(text);
    box.exec();
}
