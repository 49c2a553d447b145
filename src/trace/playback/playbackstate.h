// SPDX-License-Identifier: MIT
#pragma once

#include <QCanBusDevice>
#include <QDateTime>
#include <QVariantMap>

#include <optional>

/*! How far a trace is played, and how: what the device of the back end "trace" tells of itself in its property
 *  "playback", and what it takes as configuration keys while it is connected.
 */
struct PlaybackState
{
    /*! They act at once. */
    enum Key {
        StepKey = QCanBusDevice::UserKey, //!< int: plays so many frames more and pauses
        PauseKey,                         //!< bool: pauses, or goes on
        SpeedKey,   //!< double: so many times as fast; 0: as fast as somebody takes the frames
        RestartKey, //!< of any value: plays it from the beginning
        RepeatKey,  //!< bool: begins anew when it is over
    };

    qint64 played = 0; //!< frames
    qint64 frames = 0; //!< that there are
    qint64 time = 0;   //!< us; of the frame that was played last, as it was recorded
    bool hasTimeOfDay = false;
    bool isPaused = false;
    bool isOver = false; //!< and is not repeated
    bool isRepeated = false;
    double speed = 1; //!< 0: as fast as somebody takes the frames

    /*! The time of day of the frame that was played last; invalid when the trace does not tell. */
    QDateTime timeOfDay() const;

    QVariantMap toMap() const;

    /*! Of \a device, which may be null; empty when it plays no trace. */
    static std::optional<PlaybackState> of(const QCanBusDevice *device);
};
