// SPDX-License-Identifier: MIT
#pragma once

#include <QColor>
#include <QLatin1String>
#include <QString>

/*! What something in the report is coloured for. */
enum class Ink : quint8 {
    Text,
    Faint, //!< text that matters less
    Rule,  //!< lines between rows, grids
    Paper,
    Shade, //!< a surface that stands out a little
    Accent,
    Bar,
    Good,
    Note,
    NotChecked,
    Warning,
    Fault
};

namespace ReportInk {

/*! The colour on white paper and on light screens. */
QColor onPaper(Ink ink);

/*! The name of the style sheet's variable and classes, "fault". */
QLatin1String name(Ink ink);

/*! The variables of the style sheet, ":root{--fault:#...}" with a dark screen's colours behind those of a light one, and
 *  the classes "s-fault" and "f-fault" that draw and fill with them.
 */
QString styleSheet();

} // namespace ReportInk
