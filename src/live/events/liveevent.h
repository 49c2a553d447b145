// SPDX-License-Identifier: MIT
#pragma once

#include <checkup/findings.h>

#include <QString>

#include <array>

enum class EventKind : quint8 {
    NodeHeard,      //!< for the first time; code: its NMT state
    StateChanged,   //!< code: its NMT state
    NodeRestarted,  //!< a boot-up message of a node that was there
    NodeLost,       //!< its heartbeat has stopped
    NodeBack,       //!< code: its NMT state
    NmtCommand,     //!< somebody commands; code: the command, node 0: all nodes
    Emergency,      //!< code: error code
    EmergencyReset, //!< an error is gone
    AbortBurst,     //!< many SDO aborts in a short time; code: that of the last one
    Flood,          //!< more events of a node than are listed one by one
    ControllerGood,
    ControllerWarning,
    ControllerPassive,
    BusOff,
    Overrun,       //!< received frames were lost
    InterfaceGone, //!< the adapter was unplugged or switched off
    InterfaceBack,
};

constexpr int eventKinds = 17;

/*! Something that happened on a bus, once or several times in a row. */
struct LiveEvent
{
    quint64 number = 0; //!< in the order in which they began, from 1
    EventKind kind = EventKind::NodeHeard;
    quint8 nodeId = 0; //!< 0: of no single node
    quint8 errorRegister = 0;
    std::array<quint8, 5> manufacturer{}; //!< of an emergency
    quint32 code = 0;                     //!< see the kind
    quint32 count = 1;
    qint64 time = 0;     //!< us, see FrameClock
    qint64 lastTime = 0; //!< of the last one of those that are counted
    QString detail;      //!< a reason, or what the maker calls an emergency, in words; may be empty

    Severity severity() const;
    /*! Whether \a later says the same again. */
    bool isSame(const LiveEvent &later) const;
};

/*! For programs: "emergency". */
QString eventKindName(EventKind kind);
