// SPDX-License-Identifier: MIT
#include "diagnosiswriting.h"

#include <checkup/findingwords.h>

#include <QJsonArray>

QJsonObject DiagnosisWriting::toJson(const QVector<Diagnosed> &all)
{
    QJsonArray items;
    for (const Diagnosed &one : all)
        items.append(QJsonObject{
            {QStringLiteral("topic"), one.topic},
            {QStringLiteral("subject"), one.subject.isEmpty() ? QJsonValue() : QJsonValue(one.subject)},
            {QStringLiteral("state"), FindingWords::of(one.state)},
            {QStringLiteral("text"), one.text},
            {QStringLiteral("commands"), QJsonArray::fromStringList(one.commands)}});
    return {{QStringLiteral("state"), FindingWords::of(Diagnosis::worst(all))},
            {QStringLiteral("items"), items}};
}
