// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>

struct ServiceReport;

/*! The report as one HTML file in UTF-8 (HTML 5, well-formed as XML too).
 *
 *  It needs no script and nothing from elsewhere, and forbids both to itself with a Content-Security-Policy. It suits a
 *  telephone, a dark screen and a printer. What devices and people wrote is text in it, whatever it holds.
 */
QByteArray toHtml(const ServiceReport &report);
