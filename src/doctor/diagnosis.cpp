// SPDX-License-Identifier: MIT
#include "diagnosis.h"

#include <bus/buswords.h>

#include <algorithm>

namespace {

constexpr int vehicleBitRate = 250000; // of CiA 454, bit/s
constexpr int shortestQueue = 10;      // frames, as Linux has it
constexpr int betterQueue = 100;

const QLatin1String interfaceTopic("interface");
const QLatin1String backEndTopic("backEnd");

/*! Switched off, set and switched on again. */
QStringList setAgain(const QString &name, const QString &setting)
{
    return {BusWords::switchOffCommand(name),
            QStringLiteral("sudo ip link set %1 up type can %2").arg(name, setting)};
}

} // namespace

QVector<Diagnosed> Diagnosis::of(const ComputerFacts &facts)
{
    QVector<Diagnosed> all;
    judgeKernel(facts, &all);
    judgePresence(facts, &all);
    for (const InterfaceFacts &interface : facts.interfaces)
        judgeInterface(interface, &all);
    judgeAdapters(facts, &all);
    judgeRights(facts, &all);
    judgeTools(facts, &all);
    judgeBackEnds(facts, &all);
    return all;
}

ComponentState Diagnosis::worst(const QVector<Diagnosed> &all)
{
    ComponentState worst = ComponentState::Good;
    for (const Diagnosed &one : all)
        worst = std::max(worst, one.state);
    return worst;
}

void Diagnosis::judgeKernel(const ComputerFacts &facts, QVector<Diagnosed> *all)
{
    if (facts.socketError.isEmpty())
        return;
    all->append({QStringLiteral("kernel"),
                 {},
                 ComponentState::Fault,
                 tr("This kernel makes no CAN sockets: %1.").arg(facts.socketError),
                 {QStringLiteral("sudo modprobe can_raw")}});
}

/*! Whether there is anything to be read through. */
void Diagnosis::judgePresence(const ComputerFacts &facts, QVector<Diagnosed> *all)
{
    const bool hasOther
        = std::any_of(facts.backEnds.begin(), facts.backEnds.end(), [](const BackEndFacts &backEnd) {
              const bool isNone = backEnd.name == QLatin1String("socketcan")
                                  || backEnd.name == QLatin1String("virtualcan")
                                  || backEnd.name == QLatin1String("simulated");
              return !isNone && !backEnd.interfaces.isEmpty();
          });
    if (facts.interfaces.isEmpty() && !hasOther)
        all->append({interfaceTopic,
                     {},
                     ComponentState::Warning,
                     tr("There is no CAN interface. Plug an adapter in; a simulated vehicle needs none."),
                     {QStringLiteral("draxelctl health --bus simulated:ride")}});
}

void Diagnosis::judgeInterface(const InterfaceFacts &interface, QVector<Diagnosed> *all)
{
    if (!interface.isUp) {
        const QString bitRate
            = interface.isVirtual()
                  ? QString()
                  : tr(" Its bit rate has to be that of the vehicle: it cannot be found by listening.");
        all->append(
            {interfaceTopic,
             interface.name,
             ComponentState::Warning,
             tr("%1 is switched off.").arg(interface.name) + bitRate,
             {BusWords::switchOnCommand(interface.name, interface.controller.bitRate, interface.kind)}});
        return;
    }
    all->append(controllerOf(interface));
    judgeSending(interface, all);
    if (interface.lost.value_or(0) > 0)
        all->append(
            {interfaceTopic,
             interface.name,
             ComponentState::Note,
             tr("%1 has lost %2 received frames since it is there.").arg(interface.name).arg(*interface.lost),
             {}});
}

Diagnosed Diagnosis::controllerOf(const InterfaceFacts &interface)
{
    using State = ControllerFacts::State;
    const ControllerFacts &controller = interface.controller;
    Diagnosed one{interfaceTopic, interface.name, ComponentState::Good, {}, {}};
    const QString advice = tr("Check bit rate, wiring and termination.");
    if (interface.isVirtual()) {
        one.text = tr("%1 is switched on; it is virtual and leads to no vehicle outside this computer.")
                       .arg(interface.name);
    } else if (controller.state == State::BusOff) {
        one.state = ComponentState::Fault;
        one.text
            = tr("%1 is bus-off: it has left the bus after too many errors. %2").arg(interface.name, advice);
        one.commands = setAgain(interface.name, QStringLiteral("restart-ms 100"));
    } else if (controller.state == State::Passive || controller.state == State::Warning) {
        one.state = ComponentState::Warning;
        one.text = tr("%1 counts many bus errors%2. %3").arg(interface.name, counters(controller), advice);
    } else if (!controller.bitRate) {
        one.text = tr("%1 is switched on; its driver does not tell the bit rate.").arg(interface.name);
    } else {
        const bool isUsual = *controller.bitRate == vehicleBitRate;
        one.state = isUsual ? ComponentState::Good : ComponentState::Note;
        one.text = isUsual ? tr("%1 is switched on, with %2 bit/s.").arg(interface.name).arg(vehicleBitRate)
                           : tr("%1 is switched on, with %2 bit/s; vehicles of CiA 454 have %3.")
                                 .arg(interface.name)
                                 .arg(*controller.bitRate)
                                 .arg(vehicleBitRate);
    }
    return one;
}

QString Diagnosis::counters(const ControllerFacts &controller)
{
    if (!controller.transmitErrors || !controller.receiveErrors)
        return QString();
    return tr(" (%1 sending, %2 receiving)").arg(*controller.transmitErrors).arg(*controller.receiveErrors);
}

void Diagnosis::judgeSending(const InterfaceFacts &interface, QVector<Diagnosed> *all)
{
    if (interface.controller.isListenOnly)
        all->append({interfaceTopic, interface.name, ComponentState::Warning,
                     tr("%1 only listens: no device can be asked through it.").arg(interface.name),
                     setAgain(interface.name, QStringLiteral("listen-only off"))});
    if (interface.queueLength && *interface.queueLength < shortestQueue)
        all->append(
            {interfaceTopic,
             interface.name,
             ComponentState::Warning,
             tr("On %1 only %2 frames may wait to be sent: requests get lost.")
                 .arg(interface.name)
                 .arg(*interface.queueLength),
             {QStringLiteral("sudo ip link set %1 txqueuelen %2").arg(interface.name).arg(betterQueue)}});
}

void Diagnosis::judgeAdapters(const ComputerFacts &facts, QVector<Diagnosed> *all)
{
    for (const AdapterFacts &adapter : facts.adapters) {
        if (adapter.hasInterface)
            all->append({QStringLiteral("adapter"),
                         adapter.name,
                         ComponentState::Good,
                         tr("%1 is plugged in, and has its driver.").arg(adapter.name),
                         {}});
        else
            all->append({QStringLiteral("adapter"),
                         adapter.name,
                         ComponentState::Fault,
                         tr("%1 is plugged in, but no driver has taken it.").arg(adapter.name),
                         {QStringLiteral("sudo modprobe %1").arg(adapter.module)}});
    }
}

void Diagnosis::judgeRights(const ComputerFacts &facts, QVector<Diagnosed> *all)
{
    const QString user = facts.user.isEmpty() ? QStringLiteral("$USER") : facts.user;
    for (const DeviceFileFacts &file : facts.deviceFiles) {
        if (file.isUsable)
            continue;
        const bool isForRoot = file.group.isEmpty() || file.group == QLatin1String("root");
        const QStringList commands
            = isForRoot ? QStringList{QStringLiteral("sudo chmod a+rw %1").arg(file.path)}
                        : QStringList{QStringLiteral("sudo usermod -aG %1 %2").arg(file.group, user)};
        const QString text = isForRoot ? tr("%1 may not be used by this user.").arg(file.path)
                                       : tr("%1 may not be used by this user, who is not in the group %2. It "
                                            "holds from the next login on.")
                                             .arg(file.path, file.group);
        all->append({QStringLiteral("rights"), file.path, ComponentState::Warning, text, commands});
    }
}

void Diagnosis::judgeTools(const ComputerFacts &facts, QVector<Diagnosed> *all)
{
    if (!facts.hasIpCommand)
        all->append({QStringLiteral("tool"),
                     QStringLiteral("ip"),
                     ComponentState::Warning,
                     tr("The command \"ip\", which switches CAN interfaces on, is missing."),
                     {QStringLiteral("sudo apt install iproute2")}});
    if (!facts.hasSocketCanLibrary)
        all->append(
            {QStringLiteral("library"),
             QStringLiteral("libsocketcan"),
             ComponentState::Note,
             tr("The library libsocketcan is missing: --bitrate cannot set the bit rate of an interface."),
             {QStringLiteral("sudo apt install libsocketcan-dev")}});
}

void Diagnosis::judgeBackEnds(const ComputerFacts &facts, QVector<Diagnosed> *all)
{
    for (const BackEndFacts &backEnd : facts.backEnds) {
        const bool isNeeded = backEnd.name == QLatin1String("socketcan");
        const ComponentState missing = isNeeded ? ComponentState::Fault : ComponentState::Note;
        Diagnosed one{backEndTopic, backEnd.name, missing, {}, {}};
        if (!backEnd.isInstalled) {
            one.text = tr("The back end %1 is not installed.").arg(backEnd.name);
            if (isNeeded)
                one.commands.append(QStringLiteral("sudo apt install libqt5serialbus5-plugins"));
        } else if (!backEnd.error.isEmpty()) {
            one.state = ComponentState::Note; // only who has such an adapter needs it
            one.text = tr("The back end %1 cannot be used: %2").arg(backEnd.name, backEnd.error);
            if (!one.text.endsWith(QLatin1Char('.')))
                one.text += QLatin1Char('.');
            if (backEnd.name == QLatin1String("peakcan"))
                one.text += tr(" On Linux its adapters work through socketcan.");
        } else {
            one.state = ComponentState::Good;
            one.text = backEnd.interfaces.isEmpty()
                           ? tr("The back end %1 is installed; it has no interface now.").arg(backEnd.name)
                           : tr("The back end %1 is ready: %2.")
                                 .arg(backEnd.name, backEnd.interfaces.join(QStringLiteral(", ")));
        }
        all->append(one);
    }
}
