// SPDX-License-Identifier: MIT
#pragma once

#include "freespace.h"
#include "recordingfiles.h"

#include <trace/core/trace.h>
#include <trace/files/tracewriter.h>

#include <QString>
#include <QStringList>

#include <memory>

/*! Records frames into a file, or into one after the other, for as long as wanted.
 *
 *  What is older than a second is with the system, whatever happens to the program. On a disk that fills up a reserve is
 *  kept: the recording ends then, with a sentence. Nothing is removed unless it was asked for.
 *
 *  Times that are passed in are in us, of one clock that goes forward.
 */
class TraceRecording
{
public:
    struct Settings
    {
        QString path;                 //!< its suffix tells format and compression
        qint64 rotateSize = 0;        //!< bytes after which the next file begins; 0: never
        qint64 rotateTime = 0;        //!< us after which it does; 0: never
        int keep = 0;                 //!< the newest files of this recording; 0: all
        qint64 reserve = 200'000'000; //!< bytes that must stay free; 0: nobody looks
    };

    explicit TraceRecording(const Settings &settings, FreeSpace freeSpace = systemFreeSpace);
    ~TraceRecording();
    Q_DISABLE_COPY(TraceRecording)

    /*! Begins the first file. False with a sentence in errorString(). */
    bool begin(const TraceHead &head, qint64 now);
    /*! False when recording has ended. */
    bool add(const TraceFrame &frame, qint64 now);
    /*! To be called once a second or more often, also when no frames come. False when recording has ended. */
    bool advance(qint64 now);
    /*! Writes the end. False with a sentence when not everything could be written. */
    bool finish();

    bool isRecording() const { return m_writer != nullptr; }
    /*! How many frames were written, into all files. */
    quint64 frames() const { return m_frames; }
    /*! The files that are there. */
    QStringList files() const { return m_files.names(); }
    /*! Whether files() are more than are to be kept: one cannot be removed. With each file that begins it is tried again. */
    bool keepsTooMany() const { return m_settings.keep > 0 && files().size() > m_settings.keep; }
    /*! Why recording ended by itself. */
    QString errorString() const { return m_error; }

private:
    bool beginFile(qint64 now);
    bool endFile();
    bool rotate(qint64 now);
    bool isFull(qint64 now) const;
    bool hasSpace();
    bool stop(const QString &sentence);

    Settings m_settings;
    FreeSpace m_freeSpace;
    RecordingFiles m_files;
    TraceHead m_head;
    std::unique_ptr<TraceWriter> m_writer;
    qint64 m_fileBegin = 0; // us
    qint64 m_lastFlush = 0; // us
    qint64 m_nextLook = 0;  // size at which free space is asked for again
    quint64 m_frames = 0;
    QString m_error;
};
