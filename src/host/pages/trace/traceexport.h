// SPDX-License-Identifier: MIT
#pragma once

#include <trace/core/trace.h>

#include <QCoreApplication>
#include <QString>
#include <QStringList>

#include <vector>

struct TraceDocument;
class TraceRows;

/*! Traces that the user saves. */
class TraceExport
{
    Q_DECLARE_TR_FUNCTIONS(TraceExport)

public:
    struct Result
    {
        QString fileName;
        quint64 frames = 0;
        QString problem;      //!< a sentence when nothing was saved; else empty
        QStringList problems; //!< what the format could not hold or is missing, a sentence each
    };

    /*! The frames of the lines that are shown, in the order of the trace. */
    static Trace shown(const TraceDocument &document, const TraceRows &rows);

    /*! Its name tells format and compression. Takes long, and may run in any thread. */
    static Result save(const QString &fileName, const Trace &trace);

    /*! For a dialog: "candump log (*.log)" and so on. */
    static QStringList nameFilters();
    /*! "log.gz" of "candump log, compressed (*.log.gz)". */
    static QString suffixOf(const QString &nameFilter);
    /*! With \a suffix when the name tells no format. */
    static QString completeName(const QString &fileName, const QString &suffix);
};
