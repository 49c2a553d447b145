// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <functional>
#include <optional>

/*! Knows when a plug-in may be told that the bus has gone.
 *
 *  A plug-in that loses its SDO client in the middle of a read waits for ever: it finds no client at its next step and
 *  so never gets the answer that would end the run. While the host still holds the client in front of it, every request
 *  can be answered with the time-out code, and that ends the run. So the host keeps the bad news back until no run can
 *  be under way:
 *
 *  | the plug-in is                  | sign                                       | safe after                      |
 *  |---------------------------------|--------------------------------------------|---------------------------------|
 *  | idle                            | nothing asked                              | a few event loop turns          |
 *  | detecting nodes                 | asked for receivers                        | its 2000 ms, the timer's 5 %    |
 *  |                                 |                                            | and a margin, then as below     |
 *  | waiting for an upload           | the upload has not ended                   | its end, then as below          |
 *  | between an answer and a request | its request comes with the next loop turns | a few turns without a request   |
 *  | stopped by the time-out code    | sends one more request, which is answered  | a few turns without a request   |
 *
 *  Knows no event loop: the owner reports what happens and calls turnPassed() once for each turn of the loop.
 */
class DisconnectGuard
{
public:
    using Clock = std::function<std::chrono::milliseconds()>;

    /*! Detection takes 2000 ms with a timer that may be 5 % late. */
    static constexpr std::chrono::milliseconds detectionTime{2000 + 100 + 300};
    /*! The plug-in's next request comes one turn after an answer; the rest is margin. */
    static constexpr int quietTurnsNeeded = 10;

    explicit DisconnectGuard(const Clock &clock = steadyClock);

    void receiverAsked();
    void uploadStarted();
    void uploadEnded();

    /*! One turn of the event loop has passed. Turns count only while no detection and no upload is under way.
     */
    void turnPassed();

    /*! Starts to count turns anew; called when the bus goes away. */
    void restartCounting();

    bool isSafe() const;

    /*! How long the next turnPassed() may be put off: the rest of a detection, else 0. */
    std::chrono::milliseconds timeToWait() const;

private:
    static std::chrono::milliseconds steadyClock();

    Clock m_clock;
    std::optional<std::chrono::milliseconds> m_lastAsked; // when a receiver was asked for last
    int m_uploads = 0;                                    // that have not ended
    int m_quietTurns = 0;
};
