// SPDX-License-Identifier: MIT
#pragma once

#include <archive/visit.h>

#include <QJsonObject>
#include <QString>
#include <QVector>

/*! Visits, vehicles and values over visits, as text for people and as JSON for programs. */
namespace VisitListing {

QString text(const QVector<VisitInfo> &visits);
QString text(const QVector<VehicleInfo> &vehicles);
/*! The head of a visit, a line for each thing that is known. */
QString text(const VisitInfo &visit);
/*! \a key is the object of the points. */
QString text(const QVector<TrendPoint> &points, CanOpen::ObjectKey key);

QJsonObject json(const VisitInfo &visit);
QJsonObject json(const VehicleInfo &vehicle);
QJsonObject json(const TrendPoint &point, CanOpen::ObjectKey key);

/*! "2 faults, 1 warning"; "not judged" without a verdict. */
QString verdictText(const std::optional<VisitVerdict> &verdict);

} // namespace VisitListing
