// SPDX-License-Identifier: MIT
#pragma once

#include "frameencoder.h"

#include <system/amounts.h>

/*! Pcap with frames of Linux (CAN_SOCKETCAN) and times to the us. */
class PcapEncoder : public FrameEncoder
{
public:
    /*! In us since 1970: its seconds have 32 bits, which end in 2106. What is later is written as this. */
    static constexpr qint64 latest = (qint64(1) << 32) * Microseconds::ofSecond - 1;

    void begin(qint64 first, QByteArray *to) override;
    void write(const TraceFrame &frame, QByteArray *to) override;
};

/*! Pcapng with an interface for each channel. */
class PcapNgEncoder : public FrameEncoder
{
public:
    void begin(qint64 first, QByteArray *to) override;
    void write(const TraceFrame &frame, QByteArray *to) override;

private:
    void addInterface(const QByteArray &name, QByteArray *to);

    int m_interfaces = 0; // that were written
};
