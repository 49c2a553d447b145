// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QString>

namespace Simulator {

/*! The key of a member of \a place, and that of an element of a list; \a place is empty at the top. */
QString jsonMember(const QString &place, const QString &key);
QString jsonElement(const QString &place, const QString &key, int number);

/*! The line, from 1 on, in which the value with the key \a place begins in \a text, which is JSON without errors:
 *  "nodes[2].faults[0].ms". What is not there has the line of what should hold it.
 */
int jsonLine(const QByteArray &text, const QString &place);

} // namespace Simulator
