// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QPageSize>

struct ServiceReport;

/*! Paper as it is used where the locale is: Letter or A4. */
QPageSize::PageSizeId usualPaper(const QLocale &locale);

/*! The report as PDF: pictures are vectors, fonts are embedded, every page has its number, no row is cut, and no heading is
 *  the last thing of a page. Needs a QGuiApplication (fonts); its platform may be "offscreen".
 */
QByteArray toPdf(const ServiceReport &report, QPageSize::PageSizeId paper);
