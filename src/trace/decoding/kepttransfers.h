// SPDX-License-Identifier: MIT
#pragma once

#include <trace/transfers/sdotransfer.h>

#include <QByteArray>

#include <optional>
#include <vector>

/*! The transfers of a trace by their numbers, as small as they can be kept. */
class KeptTransfers
{
public:
    /*! One that has begun with a frame. */
    void begin(quint32 number, std::size_t firstFrame, CanOpen::ObjectKey object);
    /*! One that has ended. */
    void keep(const SdoTransfer &transfer);

    /*! Whether it has ended. */
    bool isKept(quint32 number) const;
    /*! Of a number that has begun. */
    std::size_t firstFrame(quint32 number) const { return m_transfers[number - 1].firstFrame; }
    CanOpen::ObjectKey object(quint32 number) const { return m_transfers[number - 1].object; }
    /*! Empty while it is under way. */
    std::optional<SdoTransfer> find(quint32 number) const;

private:
    struct Kept
    {
        qint64 begin = 0;
        qint64 end = 0;
        quint64 data = 0; // position in m_data
        quint32 firstFrame = 0;
        quint32 lastFrame = 0;
        quint32 size = 0;
        quint32 frames = 0; // 0: under way
        quint32 abortCode = 0;
        CanOpen::ObjectKey object;
        quint16 problems = 0;
        quint8 channel = 0;
        quint8 nodeId = 0;
        SdoTransfer::Protocol protocol = SdoTransfer::Protocol::Expedited;
        SdoTransfer::Outcome outcome = SdoTransfer::Outcome::Unfinished;
        quint8 isUpload = 0;
        quint8 isSent = 0;
        quint8 isSizeUnknown = 0;
    };

    std::vector<Kept> m_transfers; // by number, from 1
    std::vector<char> m_data;
};
