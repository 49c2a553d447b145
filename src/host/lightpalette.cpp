// SPDX-License-Identifier: MIT
#include "lightpalette.h"

#include <QApplication>
#include <QToolTip>

namespace {

const QColor ground(239, 239, 239);
const QColor otherRow(245, 247, 243); // every second row of a table
const QColor selection(48, 140, 198);
const QColor disabledText(150, 150, 150);

} // namespace

bool isDarkPalette(const QPalette &palette)
{
    return palette.color(QPalette::Active, QPalette::Window).lightness()
           < palette.color(QPalette::Active, QPalette::WindowText).lightness();
}

QPalette lightPalette()
{
    QPalette palette(ground);
    palette.setColor(QPalette::Base, Qt::white);
    palette.setColor(QPalette::AlternateBase, otherRow);
    palette.setColor(QPalette::Highlight, selection);
    palette.setColor(QPalette::HighlightedText, Qt::white);
    for (const QPalette::ColorRole role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText})
        palette.setColor(QPalette::Disabled, role, disabledText);
    return palette;
}

void keepProgramLight()
{
    if (isDarkPalette(QApplication::palette()))
        QApplication::setPalette(lightPalette());
    if (isDarkPalette(QToolTip::palette()))
        QToolTip::setPalette(lightPalette());
}
