// SPDX-License-Identifier: MIT
#pragma once

#include "reportdrawing.h"

#include <checkup/findings.h>

/*! A light: shape, colour and word. From the best to the worst, for comparing. */
enum class ReportMark : quint8 { None, Good, Note, NotChecked, Warning, Fault };

namespace ReportMarks {

ReportMark of(ComponentState state);
ReportMark of(Severity severity);
ReportMark of(Verdict verdict);

Ink ink(ReportMark mark);

/*! The word beside the shape, translated; empty for None. */
QString word(ReportMark mark);

/*! The shape, 16 units wide and high: a disc with a tick, a square with an i, a disc with a question mark, a triangle with
 *  an exclamation mark, an octagon with a cross. Empty for None.
 */
ReportDrawing shape(ReportMark mark);

} // namespace ReportMarks
