// SPDX-License-Identifier: MIT
#include "reportink.h"

#include <algorithm>
#include <iterator>

namespace {

struct InkColors
{
    Ink ink;
    const char *name;
    QRgb light;
    QRgb dark;
};

// Text and marks have a contrast of at least 4.5 to 1 with their paper (WCAG 2.1, AA).
constexpr InkColors inks[] = {
    {Ink::Text, "text", 0xFF1B1F24, 0xFFE8EBEE},       {Ink::Faint, "faint", 0xFF59626D, 0xFFA9B2BC},
    {Ink::Rule, "rule", 0xFFD5DAE0, 0xFF39414A},       {Ink::Paper, "paper", 0xFFFFFFFF, 0xFF15191E},
    {Ink::Shade, "shade", 0xFFF3F5F8, 0xFF1F252C},     {Ink::Accent, "accent", 0xFF1F4E79, 0xFF8FC1F0},
    {Ink::Bar, "bar", 0xFF86AACB, 0xFF4F7CA6},         {Ink::Good, "good", 0xFF1A7434, 0xFF5FD07F},
    {Ink::Note, "note", 0xFF0A5FB4, 0xFF7DB8FF},       {Ink::NotChecked, "unchecked", 0xFF5C6470, 0xFFAAB2BD},
    {Ink::Warning, "warning", 0xFF8A5600, 0xFFF0B429}, {Ink::Fault, "fault", 0xFFB3261E, 0xFFFF8A80},
};
static_assert(std::size(inks) == int(Ink::Fault) + 1);

const InkColors &row(Ink ink)
{
    return *std::find_if(std::begin(inks), std::end(inks),
                         [ink](const InkColors &colors) { return colors.ink == ink; });
}

QString variables(QRgb InkColors::*shade)
{
    QString text = QStringLiteral(":root{");
    for (const InkColors &colors : inks)
        text += QStringLiteral("--%1:%2;").arg(QLatin1String(colors.name), QColor(colors.*shade).name());
    return text + QLatin1Char('}');
}

} // namespace

QColor ReportInk::onPaper(Ink ink)
{
    return QColor(row(ink).light);
}

QLatin1String ReportInk::name(Ink ink)
{
    return QLatin1String(row(ink).name);
}

QString ReportInk::styleSheet()
{
    QString text = variables(&InkColors::light)
                   + QStringLiteral("\n@media screen and (prefers-color-scheme:dark){%1}\n")
                         .arg(variables(&InkColors::dark));
    for (const InkColors &colors : inks) {
        text += QStringLiteral(".s-%1{stroke:var(--%1);fill:none}.f-%1{fill:var(--%1)}\n")
                    .arg(QLatin1String(colors.name));
    }
    return text;
}
