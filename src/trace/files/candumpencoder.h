// SPDX-License-Identifier: MIT
#pragma once

#include "frameencoder.h"

/*! The log of candump, to the byte; behind frames that this computer sent stands " T". */
class CandumpEncoder : public FrameEncoder
{
public:
    void begin(qint64 first, QByteArray *to) override;
    void write(const TraceFrame &frame, QByteArray *to) override;
};
