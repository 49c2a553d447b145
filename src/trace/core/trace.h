// SPDX-License-Identifier: MIT
#pragma once

#include "traceframe.h"

#include <QString>
#include <QStringList>

#include <vector>

/*! What could not be read of a trace, with the place where it stands. */
struct TraceProblem
{
    qint64 line = 0; //!< from 1; of a file without lines: the number of the record
    QString text;    //!< a sentence
};

/*! What is known of a trace beside its frames. */
struct TraceHead
{
    QStringList channels; //!< their names, "can0"; a format that only numbers them: "1"
    /*! Whether times are us since 1970 (UTC); else they begin with the trace. */
    bool hasTimeOfDay = false;
};

/*! What a trace lacks of what it is made of, because there were more frames than fit. */
enum class MissingFrames : quint8 { None, Oldest, Newest };

/*! Frames of one or several buses, in the order in which they were recorded. Times may run backward. */
struct Trace
{
    TraceHead head;
    std::vector<TraceFrame> frames;
    std::vector<TraceProblem> problems; //!< the first ones
    quint64 unread = 0;                 //!< how many lines or records could not be read
    MissingFrames missing = MissingFrames::None;
};
