// SPDX-License-Identifier: MIT
#pragma once

#include <QCoreApplication>
#include <QDateTime>
#include <QString>

#include <optional>

struct TraceFrame;

/*! Single frames in CANopen's words (CiA 301), as far as they need no knowledge of a device. */
class FrameWords
{
    Q_DECLARE_TR_FUNCTIONS(FrameWords)

public:
    /*! A line; never empty. */
    static QString line(const TraceFrame &frame);

    /*! "01 02 03"; of a remote frame the number of bytes that it asks for. */
    static QString bytes(const TraceFrame &frame);

    /*! "182h", of 29 bits "18FF1234h". */
    static QString identifier(const TraceFrame &frame);

    /*! "start"; unknown ones by their number. */
    static QString command(quint8 code);
    /*! "Operational"; likewise. Bit 7 does not count. */
    static QString state(quint8 code);
    /*! What an error frame says, in words and separated by semicolons. */
    static QString errors(const TraceFrame &frame);

    /*! TIME_OF_DAY: bytes 0 to 3 ms since midnight (28 bits), bytes 4 and 5 days since 1984-01-01. Empty when it is none. */
    static std::optional<QDateTime> timeOfDay(const TraceFrame &frame);

    /*! What byte 0 of a request of an SDO client says, or of an answer of a server; block segments have no command. */
    static QString sdoCommand(const TraceFrame &frame);

private:
    static QString ofRemote(const TraceFrame &frame);
    static QString ofNmt(const TraceFrame &frame);
    static QString ofSync(const TraceFrame &frame);
    static QString ofTime(const TraceFrame &frame);
    static QString ofEmergency(const TraceFrame &frame);
    static QString ofPdo(const TraceFrame &frame);
    static QString ofSdo(const TraceFrame &frame);
    static QString ofHeartbeat(const TraceFrame &frame);
    static QString ofOther(const TraceFrame &frame);
    static QString malformed(const QString &what, const TraceFrame &frame);
};
