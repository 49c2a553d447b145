// SPDX-License-Identifier: MIT
#include "systemfacts.h"

#include <doctor/diagnosiswriting.h>

#include <QSysInfo>

namespace {

QJsonValue known(const QString &text)
{
    return text.isEmpty() ? QJsonValue() : QJsonValue(text);
}

} // namespace

QJsonObject SystemFacts::of(const QString &program, const Adapter &adapter)
{
    return {
        {QStringLiteral("program"), program},
        {QStringLiteral("qt"), QString::fromLatin1(qVersion())},
        {QStringLiteral("system"), QSysInfo::prettyProductName()},
        {QStringLiteral("kernel"), QSysInfo::kernelType() + QLatin1Char(' ') + QSysInfo::kernelVersion()},
        {QStringLiteral("processor"), QSysInfo::currentCpuArchitecture()},
        {QStringLiteral("bus"), known(adapter.bus)},
        {QStringLiteral("adapter"), known(adapter.description)},
        {QStringLiteral("bitRate"), adapter.bitRate > 0 ? QJsonValue(adapter.bitRate) : QJsonValue()},
        {QStringLiteral("computer"), DiagnosisWriting::toJson(Diagnosis::of(Computer::look()))},
    };
}
