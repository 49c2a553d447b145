// SPDX-License-Identifier: MIT
#pragma once

#include "frameencoder.h"

/*! Pcap with frames of Linux (CAN_SOCKETCAN) and times to the us. */
class PcapEncoder : public FrameEncoder
{
public:
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
