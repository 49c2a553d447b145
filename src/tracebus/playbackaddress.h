// SPDX-License-Identifier: MIT
#pragma once

#include <trace/playback/recordedvehicle.h>
#include <trace/playback/traceplayer.h>

#include <QCoreApplication>
#include <QString>

#include <optional>

/*! What is to be played back, and how: the interface name of the back end "trace".
 *
 *  The name of a file, and after a question mark settings with ampersands between them:
 *
 *  | Setting            |                                                                                       |
 *  |--------------------|---------------------------------------------------------------------------------------|
 *  | `speed=2`          | so many times as fast, 0.01 to 1000; `max`: without pauses; `step`: by StepKey only   |
 *  | `answers=past`     | what the devices answer only later in the trace is not known yet; usual is `nearest`  |
 *  | `channel=can1`     | the frames of this channel; else of the one that the first frame is of                |
 *  | `repeat=yes`       | begins anew when it is over                                                           |
 *
 *  A file whose own name ends like this counts as a file when it is there.
 */
struct PlaybackAddress
{
    Q_DECLARE_TR_FUNCTIONS(PlaybackAddress)

public:
    QString fileName;
    double speed = 1.0;
    TracePlayer::Pace pace = TracePlayer::Pace::Recorded;
    RecordedVehicle::Knowledge knowledge = RecordedVehicle::Knowledge::Nearest;
    QString channel; //!< empty: that of the first frame
    bool isRepeated = false;

    /*! Empty with a sentence in \a errorMessage. Does not look whether the file can be read. */
    static std::optional<PlaybackAddress> parse(const QString &interfaceName, QString *errorMessage);
};
