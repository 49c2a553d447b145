// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QStringList>

#include <optional>

/*! How a trace is written down. */
enum class TraceFormat : quint8 {
    Candump, //!< what candump prints: its log (-l, -L), and its screen, which is read only
    Asc,     //!< Vector
    Trc11,   //!< PEAK
    Trc21,   //!< PEAK; read: all versions
    Pcap,
    PcapNg,
};

enum class Compression : quint8 { None, Gzip, Zstd };

/*! Formats by name, suffix and content. */
namespace TraceFormats {

/*! What a file name says: "ride.asc.gz". The format is empty when its suffix is of none. */
struct OfName
{
    std::optional<TraceFormat> format;
    Compression compression = Compression::None;
};
OfName ofName(const QString &fileName);

/*! Its name for programs and people: "candump", "asc", "trc" (2.1), "trc-1.1", "pcap", "pcapng". */
QString nameOf(TraceFormat format);
/*! One that can be written, by that name. */
std::optional<TraceFormat> writable(const QString &name);
/*! The names of those that can be written. */
QStringList writableNames();

/*! What there is in a trace that not every format can hold. */
enum class Detail : quint8 {
    ChannelNames, //!< "can0", where a format only numbers channels
    Channels,     //!< more than one
    ErrorDetails, //!< what an error frame says beside that it is one
    Sender,       //!< frames that this computer sent
    FineTimes,    //!< finer than 100 us
    EarlyTimes,   //!< before 1970
    LateTimes,    //!< of more seconds since 1970 than 32 bits count
};

/*! Whether it can be kept in a format. */
bool canHold(TraceFormat format, Detail detail);
/*! What it is, a piece of a sentence. */
QString textOf(Detail detail);

} // namespace TraceFormats
