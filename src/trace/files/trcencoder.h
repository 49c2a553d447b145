// SPDX-License-Identifier: MIT
#pragma once

#include "frameencoder.h"

/*! PEAK's trc; the base of its versions. */
class TrcEncoder : public FrameEncoder
{
protected:
    /*! Writes the lines up to that of the version's own columns. */
    void beginWith(const QByteArray &version, qint64 first, QByteArray *to);

    qint64 sinceBegin(const TraceFrame &frame) const { return frame.time - m_begin; }
    quint64 nextNumber() { return ++m_number; }
    static void addId(const TraceFrame &frame, QByteArray *to);
    /*! The kind of an error, as both versions have it in the place of the identifier. */
    static QByteArray errorKind(const TraceFrame &frame);

private:
    qint64 m_begin = 0; // us
    quint64 m_number = 0;
};

/*! Version 1.1: one channel, times of 100 us. */
class Trc11Encoder : public TrcEncoder
{
public:
    void begin(qint64 first, QByteArray *to) override;
    void write(const TraceFrame &frame, QByteArray *to) override;
};

class Trc21Encoder : public TrcEncoder
{
public:
    void begin(qint64 first, QByteArray *to) override;
    void write(const TraceFrame &frame, QByteArray *to) override;
};
