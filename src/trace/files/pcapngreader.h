// SPDX-License-Identifier: MIT
#pragma once

#include "recordbytes.h"
#include "tracereader.h"

#include <vector>

/*! Reads pcapng: frames of Linux from any number of interfaces, each a channel with its name. */
class PcapNgReader : public TraceReader
{
public:
    /*! Whether a file that begins with these four bytes is one. */
    static bool isIt(const QByteArray &beginning);

    explicit PcapNgReader(std::unique_ptr<ByteSource> source)
        : m_bytes(std::move(source))
    {
    }

    Step next(TraceFrame *frame) override;
    int bytesPerFrame() const override { return 56; }

private:
    /*! What a block says of an interface. */
    struct Interface
    {
        quint32 linkType = 0;
        QString name;
        qint64 perSecond = 1'000'000; //!< what its times count
        qint64 offset = 0;            //!< s
        int channel = -1;             //!< before its first frame
    };

    struct Option
    {
        quint16 code = 0;
        const uchar *value = nullptr;
        quint16 size = 0;
    };

    Step end();
    Step stop(const QString &sentence);
    Step readBlock(TraceFrame *frame);
    Step readBody(quint32 type, const uchar *body, size_t size, TraceFrame *frame);
    bool readSection();
    Step readInterface(const uchar *body, size_t size);
    Step readPacket(const uchar *body, size_t size, TraceFrame *frame);
    Step readFrame(Interface *interface, const uchar *bytes, size_t size, TraceFrame *frame);
    bool takeOption(const uchar **at, const uchar *end, Option *option) const;
    void setOption(const Option &option, Interface *interface) const;
    bool isSent(const uchar *at, const uchar *end) const;
    int channelOf(const QString &name);
    quint16 shortAt(const uchar *bytes) const;
    quint32 numberAt(const uchar *bytes) const;

    RecordBytes m_bytes;
    bool m_hasEnded = false;
    bool m_isSwapped = false; // little-endian
    bool m_hasFirst = false;
    qint64 m_number = 0; // of the block
    std::vector<Interface> m_interfaces;
};
