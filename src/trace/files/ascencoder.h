// SPDX-License-Identifier: MIT
#pragma once

#include "frameencoder.h"

/*! Vector's asc, hexadecimal, with absolute times. */
class AscEncoder : public FrameEncoder
{
public:
    void begin(qint64 first, QByteArray *to) override;
    void write(const TraceFrame &frame, QByteArray *to) override;
    void end(QByteArray *to) override;

private:
    qint64 m_begin = 0; // us; whole ms, as a date has
};
