// SPDX-License-Identifier: MIT
#include "healthrows.h"

#include <bus/buswords.h>
#include <canopen/hexadecimal.h>

#include <QLocale>

namespace {

QString nothing()
{
    return QStringLiteral("–");
}

QString count(quint64 value)
{
    return QString::number(value);
}

} // namespace

QString HealthRows::number(double value, int decimals)
{
    QLocale locale;
    locale.setNumberOptions(QLocale::OmitGroupSeparator);
    return locale.toString(value, 'f', decimals);
}

QString HealthRows::percent(std::optional<double> load)
{
    constexpr double factor = 100;
    return load ? tr("%1 %").arg(number(*load * factor, 1)) : nothing();
}

QString HealthRows::time(std::optional<double> value)
{
    return value ? tr("%1 ms").arg(number(*value, 1)) : nothing();
}

QString HealthRows::perSecond(const KindNumbers &kind)
{
    const QString mean = number(kind.perSecond, 1);
    return kind.lastSecond ? tr("%1 a second, now %2").arg(mean, number(*kind.lastSecond, 0))
                           : tr("%1 a second").arg(mean);
}

QString HealthRows::state(std::optional<CanOpen::NmtState> state)
{
    if (!state)
        return nothing();
    switch (*state) {
    case CanOpen::NmtState::BootUp:
        return tr("Starting");
    case CanOpen::NmtState::Stopped:
        return tr("Stopped");
    case CanOpen::NmtState::Operational:
        return tr("Operational");
    case CanOpen::NmtState::PreOperational:
        return tr("Pre-operational");
    }
    return nothing();
}

QString HealthRows::controller(InterfaceHealth::State state)
{
    switch (state) {
    case InterfaceHealth::State::Good:
        return tr("good");
    case InterfaceHealth::State::Warning:
        return tr("many errors (warning limit)");
    case InterfaceHealth::State::Passive:
        return tr("too many errors (error-passive)");
    case InterfaceHealth::State::BusOff:
        return tr("off the bus (bus-off)");
    case InterfaceHealth::State::Unknown:
        break;
    }
    return tr("not told by the driver");
}

QString HealthRows::kind(FrameKind kind)
{
    switch (kind) {
    case FrameKind::Nmt:
        return tr("NMT commands");
    case FrameKind::Sync:
        return tr("SYNC");
    case FrameKind::Time:
        return tr("Time stamps");
    case FrameKind::Emergency:
        return tr("Emergencies");
    case FrameKind::Pdo:
        return tr("Process data (PDO)");
    case FrameKind::Sdo:
        return tr("Questions and answers (SDO)");
    case FrameKind::Heartbeat:
        return tr("Heartbeats");
    case FrameKind::Other:
        return tr("Other frames");
    case FrameKind::Error:
        break;
    }
    return tr("Error frames");
}

QVector<QStringList> HealthRows::ofBus(const HealthNumbers &numbers)
{
    constexpr double thousand = 1000;
    const QString rate = tr("%1 kbit/s").arg(number(numbers.bitRate / thousand, 0));
    QVector<QStringList> rows{
        {tr("Listened for"), tr("%1 s").arg(number(numbers.duration / thousand, 1))},
        {tr("Bit rate"), numbers.bitRate > 0 ? rate : tr("not known")},
        {tr("Load, now"), percent(numbers.lastLoad)},
        {tr("Load, mean"), percent(numbers.meanLoad)},
        {tr("Load, busiest second"), percent(numbers.peakLoad)},
    };
    addFrames(numbers, &rows);
    addController(numbers, &rows);
    const QVector<quint8> asked = numbers.nodesAskedByOthers();
    rows.append({tr("Asked by other tools"),
                 asked.isEmpty() ? nothing() : tr("node %1").arg(BusWords::nodes(asked.toList()))});
    return rows;
}

void HealthRows::addFrames(const HealthNumbers &numbers, QVector<QStringList> *rows)
{
    rows->append({tr("Frames"), count(numbers.frames)});
    rows->append({tr("Frames a second"), number(numbers.framesPerSecond, 1)});
    for (std::size_t i = 0; i < numbers.kinds.size(); ++i)
        rows->append({kind(static_cast<FrameKind>(i)), perSecond(numbers.kinds[i])});
    rows->append({tr("Longest row of frames without a gap"),
                  numbers.longestBurst ? QString::number(*numbers.longestBurst) : nothing()});
}

void HealthRows::addController(const HealthNumbers &numbers, QVector<QStringList> *rows)
{
    const auto counter = [](std::optional<int> value) { return value ? QString::number(*value) : nothing(); };
    rows->append({tr("State of the adapter"), controller(numbers.controller)});
    rows->append({tr("Transmit errors (counter)"), counter(numbers.transmitErrors)});
    rows->append({tr("Receive errors (counter)"), counter(numbers.receiveErrors)});
    rows->append({tr("Reports of lost frames"), count(numbers.overruns)});
    rows->append({tr("Errors on the bus"), count(numbers.busErrors)});
}

QStringList HealthRows::nodeHead()
{
    return {tr("Node"),           tr("State"),        tr("Frames"),         tr("Load"),
            tr("Heartbeat"),      tr("Should be"),    tr("Jitter"),         tr("Longest gap"),
            tr("Late"),           tr("Missed"),       tr("Restarts"),       tr("Emergencies"),
            tr("Last emergency"), tr("SDO requests"), tr("SDO fastest"),    tr("SDO median"),
            tr("SDO 95 %"),       tr("SDO slowest"),  tr("SDO unanswered"), tr("SDO aborts")};
}

QStringList HealthRows::ofNode(const NodeNumbers &node)
{
    const HeartbeatNumbers &heartbeat = node.heartbeat;
    const SdoNumbers &sdo = node.sdo;
    const QString emergency
        = node.lastEmergency ? CanOpen::hexadecimal(*node.lastEmergency, 4) + QLatin1Char('h') : nothing();
    return {QString::number(node.id),
            heartbeat.isLost ? tr("silent") : state(node.state),
            count(node.frames),
            percent(node.load),
            time(heartbeat.period),
            time(heartbeat.configured),
            time(heartbeat.jitter),
            time(heartbeat.longestGap),
            count(heartbeat.late),
            count(heartbeat.missed),
            count(node.restarts),
            count(node.emergencies),
            emergency,
            count(sdo.requests),
            time(sdo.smallest),
            time(sdo.median),
            time(sdo.most),
            time(sdo.longest),
            count(sdo.unanswered),
            count(sdo.aborts)};
}

QVector<QStringList> HealthRows::ofNodes(const HealthNumbers &numbers)
{
    QVector<QStringList> rows;
    for (const NodeNumbers &node : numbers.nodes)
        rows.append(ofNode(node));
    return rows;
}
