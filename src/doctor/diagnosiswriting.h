// SPDX-License-Identifier: MIT
#pragma once

#include "diagnosis.h"

#include <QJsonObject>

/*! What was found out about a computer, for programs. */
namespace DiagnosisWriting {

/*! "state", and "items" with "topic", "subject" (null: none), "state", "text" and "commands". */
QJsonObject toJson(const QVector<Diagnosed> &all);

} // namespace DiagnosisWriting
