// SPDX-License-Identifier: MIT
#pragma once

#include "recordbytes.h"
#include "tracereader.h"

#include <QMap>

/*! Reads pcap: frames of Linux, with times to the us or to the ns, in either order of bytes.
 *
 *  Read here and not by libpcap, which needs a file of the C library and reads no pcapng with different interfaces.
 */
class PcapReader : public TraceReader
{
public:
    /*! Whether a file that begins with these four bytes is one. */
    static bool isIt(const QByteArray &beginning);

    explicit PcapReader(std::unique_ptr<ByteSource> source)
        : m_bytes(std::move(source))
    {
    }

    Step next(TraceFrame *frame) override;
    int bytesPerFrame() const override { return 32; }

private:
    bool readHead();
    Step end();
    Step stop(const QString &sentence);
    Step readRecord(const uchar *head, TraceFrame *frame);
    Step readPacket(qint64 time, quint32 size, TraceFrame *frame);
    quint32 numberAt(const uchar *bytes) const;
    int channelOf(quint32 interface);

    RecordBytes m_bytes;
    bool m_hasHead = false;
    bool m_hasEnded = false;
    bool m_isSwapped = false; // little-endian
    bool m_hasNanoseconds = false;
    bool m_hasFirst = false;
    quint32 m_linkType = 0;
    qint64 m_number = 0; // of the record
    QMap<quint32, int> m_channels;
};
