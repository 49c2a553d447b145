// SPDX-License-Identifier: MIT
#pragma once

#include "watchedvalues.h"

#include <cli/core/textcolumns.h>

#include <QCoreApplication>
#include <QJsonObject>

#include <vector>

/*! Says what watched values do: what is new since the last time, and at the end what they were. */
class WatchPrinter
{
    Q_DECLARE_TR_FUNCTIONS(WatchPrinter)

public:
    enum class Form { Text, Json };

    /*! All must outlive it. */
    WatchPrinter(const WatchedValues *values, const LiveBus *live, Form form)
        : m_values(values)
        , m_live(live)
        , m_form(form)
    {
    }

    /*! Prints a line for each value that has come since the last call, and for each that is late from now on or cannot be
     *  read. The lines of a table (CSV) that say the same.
     */
    QByteArray printNew();

    /*! The names of the table's columns: those of all values, and since when a value is late or why it cannot be read. */
    static QByteArray tableHead();

    /*! Prints the last, the smallest, the largest and the mean of each. */
    void printSummary() const;

    /*! Whether each had a value at least once. */
    bool isComplete() const;

private:
    struct Known
    {
        quint64 count = 0;
        bool isLate = false;
        QString reason;
    };

    void printValue(const LiveValue &value) const;
    QByteArray troubleLine(const WatchedValue &value, const QString &lateSince, const QString &reason) const;
    QDateTime lateSince(const WatchedValue &value) const;
    void printTrouble(const WatchedValue &value, const QString &text, const char *key) const;
    void printLate(const WatchedValue &value) const;
    QString label(const WatchedValue &value) const;
    QString padded(const QString &text) const;
    static QString number(double number);
    QStringList summaryRow(const WatchedValue &value) const;
    QJsonObject summaryJson(const WatchedValue &value) const;

    const WatchedValues *m_values;
    const LiveBus *m_live;
    Form m_form;
    std::vector<Known> m_known;
};
