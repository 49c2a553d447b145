// SPDX-License-Identifier: MIT
#pragma once

#include "tracerecording.h"

#include <QObject>
#include <QThreadPool>

#include <memory>
#include <vector>

/*! A TraceRecording that another thread writes: who adds frames never waits for a disk.
 *
 *  Frames wait in memory until advance() hands them over; while a disk stands still they go on waiting, up to a bound.
 *  Times that are passed in are in us, of one clock that goes forward.
 */
class BackgroundRecording : public QObject
{
    Q_OBJECT

public:
    /*! So many frames wait at most, four minutes of a full bus of 1 Mbit/s (64 MB); then the recording ends. */
    static constexpr std::size_t usualMostWaiting = 2'000'000;

    explicit BackgroundRecording(const TraceRecording::Settings &settings,
                                 const FreeSpace &freeSpace = systemFreeSpace,
                                 std::size_t mostWaiting = usualMostWaiting);
    /*! Waits until all is written. */
    ~BackgroundRecording() override;

    /*! Begins the first file, at once. False with a sentence in errorString(). */
    bool begin(const TraceHead &head, qint64 now);
    void add(const TraceFrame &frame, qint64 now);
    /*! To be called ten times a second or more often, also when no frames come. */
    void advance(qint64 now);
    /*! No more frames come: when all is written, ended() is told. */
    void finish();

    /*! The name that was given; of a recording that rotates no file has it. */
    QString path() const { return m_path; }
    /*! How many frames were added. */
    quint64 added() const { return m_added; }
    /*! How many of them were written, as far as the other thread has told. */
    quint64 written() const { return m_state.frames; }
    /*! The files that are there, likewise. */
    QStringList files() const { return m_state.files; }
    /*! Why recording ended by itself; empty when it has not. */
    QString errorString() const { return m_state.error; }

signals:
    /*! Nothing more is written: after finish(), or by itself. Comes once, from the event loop. */
    void ended();

private:
    struct Waiting
    {
        TraceFrame frame;
        qint64 time; // when it was added
    };
    /*! What the other thread has come to. */
    struct State
    {
        bool isGoing = true;
        quint64 frames = 0;
        QStringList files;
        QString error;
    };

    static State write(TraceRecording *recording, const std::vector<Waiting> &frames, qint64 now,
                       bool isLast);
    void start();
    void take(const State &state);
    void giveUp();

    QString m_path;
    std::size_t m_mostWaiting;
    std::shared_ptr<TraceRecording> m_recording; // of the other thread while it writes
    QThreadPool m_pool;                          // its own: nobody else keeps it waiting
    std::vector<Waiting> m_waiting;
    State m_state;
    quint64 m_added = 0;
    qint64 m_now = 0;
    bool m_isWriting = false;
    bool m_isFinishing = false;
    bool m_hasEnded = false;
};
