// SPDX-License-Identifier: MIT
#pragma once

#include <bus/interfacehealth.h>
#include <canopen/nmt.h>
#include <live/core/liveframe.h>

#include <QVector>

#include <array>
#include <optional>

/*! \file
 *  All numbers of a bus's health: plain values for window, command line and rules. Times in ms, loads as fractions.
 */

struct HeartbeatNumbers
{
    quint64 count = 0;
    std::optional<double> period; //!< as heard
    std::optional<double> jitter;
    std::optional<double> longestGap;
    std::optional<double> configured; //!< 1017h; 0: the node sends none
    quint64 late = 0;
    quint64 missed = 0;
    bool isLost = false;
};

struct SdoNumbers
{
    quint64 answers = 0;
    std::optional<double> smallest;
    std::optional<double> median; //!< of the last 512, as the next
    std::optional<double> most;   //!< 95 of 100 take no longer
    std::optional<double> longest;
    quint64 requests = 0;
    quint64 foreignRequests = 0; //!< of other clients
    quint64 unanswered = 0;
    quint64 aborts = 0;
    quint64 refusals = 0; //!< aborts that say more than that an object is not there
};

struct NodeNumbers
{
    quint8 id = 0;
    std::optional<CanOpen::NmtState> state; //!< empty without a heartbeat
    HeartbeatNumbers heartbeat;
    SdoNumbers sdo;
    quint64 restarts = 0;
    quint64 emergencies = 0;
    std::optional<quint16> lastEmergency;
    bool hasOpenError = false;
    quint64 frames = 0;
    bool isAway = false;        //!< heard before the bus was interrupted, and not since
    std::optional<double> load; //!< its share of the bus; empty while the bit rate is not known
};

struct KindNumbers
{
    quint64 count = 0;
    double perSecond = 0; //!< over all the time
    std::optional<double> lastSecond;
};

struct HealthNumbers
{
    double duration = 0; //!< ms
    int bitRate = 0;     //!< bit/s; 0: not known, and then there are no loads
    std::optional<double> meanLoad;
    std::optional<double> peakLoad; //!< of the busiest second, the mean at least
    std::optional<double> lastLoad; //!< of the last second
    quint64 frames = 0;
    double framesPerSecond = 0;
    std::array<KindNumbers, frameKinds> kinds;
    std::optional<int> longestBurst; //!< frames
    InterfaceHealth::State controller = InterfaceHealth::State::Unknown;
    std::optional<int> transmitErrors;
    std::optional<int> receiveErrors;
    quint64 overruns = 0;
    quint64 busErrors = 0;
    bool areErrorsTold = false; //!< error frames come when something is wrong, so that none is a good sign
    QVector<NodeNumbers> nodes; //!< those that were heard, or asked, by ID

    /*! Whether it shows that there are errors, or none. */
    bool areErrorsKnown() const;
    /*! Nodes that were heard, since the bus was interrupted last. */
    int heardNodes() const;
    /*! Nodes that other SDO clients asked. */
    QVector<quint8> nodesAskedByOthers() const;
};
