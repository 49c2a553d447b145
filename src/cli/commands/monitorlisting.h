// SPDX-License-Identifier: MIT
#pragma once

#include <cli/core/signs.h>
#include <cli/core/terminal.h>
#include <live/health/healthjudgement.h>

#include <QCoreApplication>
#include <QDateTime>
#include <QStringList>
#include <QVector>

/*! What a monitor shows at one time. */
struct MonitorView
{
    struct Event
    {
        Severity severity = Severity::Note;
        QString text; //!< with its time
    };

    QString bus;     //!< its address
    QString trouble; //!< why it is not there now; empty: it is
    QDateTime time;
    HealthNumbers numbers;
    QVector<HealthLight> lights;
    QVector<Event> events; //!< the newest last
};

/*! The health of a bus and its last events on one screen, or as a block of lines. */
class MonitorListing
{
    Q_DECLARE_TR_FUNCTIONS(MonitorListing)

public:
    /*! Not more lines than \a size has, and none that is longer: lights on top, nodes below, the last events at the end. Where
     *  not all nodes have room, those with findings come first.
     */
    static QStringList screen(const MonitorView &view, Terminal::Size size, Signs::Style style);

    /*! All of it, for what is no terminal; without the nodes. */
    static QStringList block(const MonitorView &view, Signs::Style style);

private:
    static QString title(const MonitorView &view);
    static QStringList lightLines(const MonitorView &view, Signs::Style style, int columns);
    static QStringList nodeLines(const MonitorView &view, int lines, int columns);
    static QStringList row(const NodeNumbers &node, const QVector<HealthLight> &lights);
    static QString signedLine(const QString &sign, const QString &text, int columns);
};
