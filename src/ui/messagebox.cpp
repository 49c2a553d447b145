// SPDX-License-Identifier: MIT
#include "messagebox.h"

#include <QMessageBox>

namespace {

constexpr int mostLines = 40;
constexpr int mostCharacters = 4000;

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

} // namespace

void showMessage(const QString &title, const QString &text)
{
    QMessageBox box;
    box.setWindowTitle(title);
    box.setTextFormat(Qt::PlainText);
    const int length = lengthOfBeginning(text);
    if (length == text.size()) {
        box.setText(text);
    } else {
        box.setText(text.left(length) + QStringLiteral("\n\u2026"));
        box.setDetailedText(text);
    }
    box.exec();
}
