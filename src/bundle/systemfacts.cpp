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
        {QLatin1String("program"), program},
        {QLatin1String("qt"), QString::fromLatin1(qVersion())},
        {QLatin1String("system"), QSysInfo::prettyProductName()},
        {QLatin1String("kernel"), QSysInfo::kernelType() + QLatin1Char(' ') + QSysInfo::kernelVersion()},
        {QLatin1String("processor"), QSysInfo::currentCpuArchitecture()},
        {QLatin1String("bus"), known(adapter.bus)},
        {QLatin1String("adapter"), known(adapter.description)},
        {QLatin1String("bitRate"), adapter.bitRate > 0 ? QJsonValue(adapter.bitRate) : QJsonValue()},
        {QLatin1String("computer"), DiagnosisWriting::toJson(Diagnosis::of(Computer::look()))},
    };
}
