// SPDX-License-Identifier: MIT
#include "healthjson.h"

#include <checkup/findingwords.h>

#include <QJsonArray>

#include <cmath>

namespace {

constexpr double thousand = 1000;

/*! Without digits that nobody measured. */
double rounded(double number, double steps)
{
    return std::round(number * steps) / steps;
}

QJsonValue timeOf(std::optional<double> milliseconds)
{
    return milliseconds ? QJsonValue(rounded(*milliseconds, thousand)) : QJsonValue();
}

QJsonValue loadJson(std::optional<double> load)
{
    return load ? QJsonValue(rounded(*load, thousand * thousand)) : QJsonValue();
}

template<typename Number>
QJsonValue numberOf(std::optional<Number> number)
{
    return number ? QJsonValue(double(*number)) : QJsonValue();
}

QJsonValue count(quint64 number)
{
    return QJsonValue(double(number));
}

QJsonValue stateOf(std::optional<CanOpen::NmtState> state)
{
    if (!state)
        return QJsonValue();
    switch (*state) {
    case CanOpen::NmtState::BootUp:
        return QStringLiteral("bootUp");
    case CanOpen::NmtState::Stopped:
        return QStringLiteral("stopped");
    case CanOpen::NmtState::Operational:
        return QStringLiteral("operational");
    case CanOpen::NmtState::PreOperational:
        return QStringLiteral("preOperational");
    }
    return QJsonValue();
}

QString controllerWord(InterfaceHealth::State state)
{
    switch (state) {
    case InterfaceHealth::State::Good:
        return QStringLiteral("good");
    case InterfaceHealth::State::Warning:
        return QStringLiteral("warning");
    case InterfaceHealth::State::Passive:
        return QStringLiteral("errorPassive");
    case InterfaceHealth::State::BusOff:
        return QStringLiteral("busOff");
    case InterfaceHealth::State::Unknown:
        break;
    }
    return QStringLiteral("unknown");
}

QJsonObject heartbeatOf(const HeartbeatNumbers &heartbeat)
{
    return {
        {QStringLiteral("count"), count(heartbeat.count)},
        {QStringLiteral("period"), timeOf(heartbeat.period)},
        {QStringLiteral("configured"), timeOf(heartbeat.configured)},
        {QStringLiteral("jitter"), timeOf(heartbeat.jitter)},
        {QStringLiteral("longestGap"), timeOf(heartbeat.longestGap)},
        {QStringLiteral("late"), count(heartbeat.late)},
        {QStringLiteral("missed"), count(heartbeat.missed)},
        {QStringLiteral("lost"), heartbeat.isLost},
    };
}

QJsonObject sdoOf(const SdoNumbers &sdo)
{
    return {
        {QStringLiteral("answers"), count(sdo.answers)},
        {QStringLiteral("smallest"), timeOf(sdo.smallest)},
        {QStringLiteral("median"), timeOf(sdo.median)},
        {QStringLiteral("percentile95"), timeOf(sdo.most)},
        {QStringLiteral("longest"), timeOf(sdo.longest)},
        {QStringLiteral("requests"), count(sdo.requests)},
        {QStringLiteral("requestsOfOthers"), count(sdo.foreignRequests)},
        {QStringLiteral("unanswered"), count(sdo.unanswered)},
        {QStringLiteral("aborts"), count(sdo.aborts)},
    };
}

QJsonObject nodeOf(const NodeNumbers &node)
{
    return {
        {QStringLiteral("id"), node.id},
        {QStringLiteral("nmtState"), stateOf(node.state)},
        {QStringLiteral("heartbeat"), heartbeatOf(node.heartbeat)},
        {QStringLiteral("sdo"), sdoOf(node.sdo)},
        {QStringLiteral("restarts"), count(node.restarts)},
        {QStringLiteral("emergencies"), count(node.emergencies)},
        {QStringLiteral("lastEmergency"), numberOf(node.lastEmergency)},
        {QStringLiteral("frames"), count(node.frames)},
        {QStringLiteral("busLoad"), loadJson(node.load)},
    };
}

QJsonObject kindsOf(const HealthNumbers &numbers)
{
    QJsonObject kinds;
    for (std::size_t i = 0; i < numbers.kinds.size(); ++i) {
        const KindNumbers &kind = numbers.kinds[i];
        kinds.insert(QLatin1String(frameKindName(static_cast<FrameKind>(i))),
                     QJsonObject{{QStringLiteral("frames"), count(kind.count)},
                                 {QStringLiteral("perSecond"), rounded(kind.perSecond, thousand)},
                                 {QStringLiteral("lastSecond"), numberOf(kind.lastSecond)}});
    }
    return kinds;
}

QJsonObject interfaceOf(const HealthNumbers &numbers)
{
    return {
        {QStringLiteral("state"), controllerWord(numbers.controller)},
        {QStringLiteral("transmitErrors"), numberOf(numbers.transmitErrors)},
        {QStringLiteral("receiveErrors"), numberOf(numbers.receiveErrors)},
        {QStringLiteral("overruns"), count(numbers.overruns)},
        {QStringLiteral("busErrors"), count(numbers.busErrors)},
    };
}

QJsonArray findingsOf(const HealthLight &light)
{
    QJsonArray findings;
    for (const Finding &finding : light.findings) {
        findings.append(QJsonObject{
            {QStringLiteral("rule"), finding.rule},
            {QStringLiteral("severity"), FindingWords::of(finding.severity)},
            {QStringLiteral("node"), finding.nodeId != 0 ? QJsonValue(finding.nodeId) : QJsonValue()},
            {QStringLiteral("text"), finding.text},
            {QStringLiteral("advice"), finding.advice},
        });
    }
    return findings;
}

QJsonArray lightsOf(const QVector<HealthLight> &lights)
{
    QJsonArray array;
    for (const HealthLight &light : lights) {
        array.append(QJsonObject{{QStringLiteral("subject"), HealthJudgement::word(light.subject)},
                                 {QStringLiteral("state"), FindingWords::of(light.state)},
                                 {QStringLiteral("text"), light.text},
                                 {QStringLiteral("findings"), findingsOf(light)}});
    }
    return array;
}

QJsonObject loadsOf(const HealthNumbers &numbers)
{
    return {{QStringLiteral("mean"), loadJson(numbers.meanLoad)},
            {QStringLiteral("peak"), loadJson(numbers.peakLoad)},
            {QStringLiteral("lastSecond"), loadJson(numbers.lastLoad)}};
}

QJsonArray nodesOf(const HealthNumbers &numbers)
{
    QJsonArray nodes;
    for (const NodeNumbers &node : numbers.nodes)
        nodes.append(nodeOf(node));
    return nodes;
}

QJsonArray askedByOthers(const HealthNumbers &numbers)
{
    QJsonArray nodes;
    for (const quint8 node : numbers.nodesAskedByOthers())
        nodes.append(node);
    return nodes;
}

} // namespace

QJsonObject HealthJson::of(const HealthNumbers &numbers, const QVector<HealthLight> &lights)
{
    return {
        {QStringLiteral("duration"), rounded(numbers.duration, 1)},
        {QStringLiteral("bitRate"), numbers.bitRate > 0 ? QJsonValue(numbers.bitRate) : QJsonValue()},
        {QStringLiteral("busLoad"), loadsOf(numbers)},
        {QStringLiteral("frames"), count(numbers.frames)},
        {QStringLiteral("framesPerSecond"), rounded(numbers.framesPerSecond, thousand)},
        {QStringLiteral("kinds"), kindsOf(numbers)},
        {QStringLiteral("longestBurst"), numberOf(numbers.longestBurst)},
        {QStringLiteral("interface"), interfaceOf(numbers)},
        {QStringLiteral("nodesAskedByOthers"), askedByOthers(numbers)},
        {QStringLiteral("nodes"), nodesOf(numbers)},
        {QStringLiteral("lights"), lightsOf(lights)},
    };
}
