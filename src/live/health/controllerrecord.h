// SPDX-License-Identifier: MIT
#pragma once

#include <live/core/liveframe.h>

#include <optional>

/*! What error frames tell of the controller in the adapter. InterfaceHealth follows its state. */
class ControllerRecord
{
public:
    void handle(const LiveFrame &frame);

    /*! The adapter was away: its counters begin anew, what it had reported stays. */
    void interrupt();

    /*! Errors on the bus that the driver reports; without those that only tell a state. */
    quint64 busErrors() const { return m_busErrors; }
    /*! Reports that received frames were dropped. */
    quint64 overruns() const { return m_overruns; }
    /*! The controller's error counters as told last; empty while the driver does not tell. */
    std::optional<int> transmitErrors() const { return m_transmitErrors; }
    std::optional<int> receiveErrors() const { return m_receiveErrors; }

private:
    quint64 m_busErrors = 0;
    quint64 m_overruns = 0;
    std::optional<int> m_transmitErrors;
    std::optional<int> m_receiveErrors;
};
