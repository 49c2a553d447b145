// SPDX-License-Identifier: MIT
#pragma once

#include "visit.h"

#include <QSqlQuery>
#include <QString>
#include <QVariant>

/*! Visits, components and vehicles as rows of the tables, and back. Numbers from a database are somebody else's: what is
 *  out of range is brought into it.
 */
namespace VisitRows {

/*! Text that every database takes: never null, without zero characters. */
QString plainText(const QString &text);

/*! What a word is looked for in: all of \a texts, without differences of capitals. */
QString searchText(const QStringList &texts);

/*! Conditions that every word of \a text is found in one of \a columns; their values are appended to \a values. */
QStringList searchConditions(const QString &text, const QStringList &columns, QVariantList *values);

/*! The searched text of a visit. */
QString searchTextOf(const VisitInfo &visit);

/*! The components of a snapshot. */
QVector<VisitComponent> componentsOf(const Snapshot &snapshot);

/*! How a list of visits is asked for: its columns and tables, "v" the visits and "c" the vehicles. */
QString visitSelection();
VisitInfo visitOf(const QSqlQuery &row);

/*! The columns of a component after the visit, and as many "?". */
QString componentColumns();
QVariantList componentValues(const VisitComponent &component);
/*! From the columns that begin with number \a first. */
VisitComponent componentOf(const QSqlQuery &row, int first);

/*! The six columns of a verdict, null for none. */
QVariantList verdictValues(const std::optional<VisitVerdict> &verdict);
std::optional<VisitVerdict> verdictOf(const QSqlQuery &row, int first);

QDateTime timeOf(const QVariant &milliseconds, const QVariant &offset);

/*! What a vehicle is called. */
QString vehicleCall(qint64 id, const QString &name, const QString &label);

} // namespace VisitRows
