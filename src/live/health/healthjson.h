// SPDX-License-Identifier: MIT
#pragma once

#include "healthjudgement.h"
#include "healthnumbers.h"

#include <QJsonObject>

/*! Lights and numbers for programs: loads as fractions, times in ms; null is what is not known. */
namespace HealthJson {

QJsonObject of(const HealthNumbers &numbers, const QVector<HealthLight> &lights);

} // namespace HealthJson
