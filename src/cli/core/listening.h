// SPDX-License-Identifier: MIT
#pragma once

#include "commandarguments.h"
#include "datasheets.h"
#include "exitstatus.h"
#include "interruptibleloop.h"
#include "tracesteps.h"

#include <bus/busconnection.h>
#include <host/core/livebus.h>

#include <QCoreApplication>

#include <chrono>
#include <functional>
#include <optional>

/*! A bus that a command listens to for some time: the options --bus, --bitrate, --for and --eds, and the waiting. That
 *  ends also when a trace that is played as the bus is over.
 */
class Listening
{
    Q_DECLARE_TR_FUNCTIONS(Listening)

public:
    /*! \a usual: the time without --for; empty: until it is interrupted. */
    explicit Listening(std::optional<std::chrono::seconds> usual)
        : m_time(usual)
    {
    }

    void addOptions(CommandArguments &options) const;
    /*! An exit status after a complaint. */
    std::optional<ExitStatus> parse(const CommandArguments &options);

    /*! How often something is done, by \a option: 100 ms or more. Without the option *\a period stays as it is. An exit
     *  status after a complaint.
     */
    static std::optional<ExitStatus> parsePeriod(const CommandArguments &options, const QString &option,
                                                 std::chrono::milliseconds *period);

    /*! Opens the bus and begins; an exit status after a complaint that it cannot. */
    std::optional<ExitStatus> begin();
    /*! Waits until the time is over. The exit status of what came in between: a signal, a pipe that nobody reads any more,
     *  or a bus that is lost at the end; else success. \a atEnd is called before anything is said of it.
     */
    ExitStatus wait(const std::function<void()> &atEnd = {});

    /*! Devices of a trace that is played are asked: they answer also when it is over, so that is no end. */
    void outlastTraces() { m_isOutlasting = true; }

    /*! Ends wait() before its time. */
    void end() { m_loop.end(); }

    LiveBus &live() { return m_live; }
    BusConnection &bus() { return m_bus; }
    const DataSheets &dataSheets() const { return m_sheets; }

private:
    InterruptibleLoop m_loop;
    std::optional<std::chrono::milliseconds> m_time;
    BusSettings m_settings;
    DataSheets m_sheets;
    BusConnection m_bus;
    LiveBus m_live{&m_bus};
    TraceSteps m_steps{&m_bus};
    bool m_isOutlasting = false;
};
