// SPDX-License-Identifier: MIT
#pragma once

#include <cli/core/signs.h>
#include <live/health/healthjudgement.h>
#include <live/health/healthnumbers.h>

#include <QCoreApplication>
#include <QStringList>

/*! The health of a bus for people. */
class HealthListing
{
    Q_DECLARE_TR_FUNCTIONS(HealthListing)

public:
    /*! A line for each light, and what is found below it where that is more than its sentence. */
    static QString lights(const QVector<HealthLight> &lights, Signs::Style style);

    /*! All numbers. */
    static QString numbers(const HealthNumbers &numbers);

    /*! "-" for what is not known. */
    static QString percent(std::optional<double> load);
    static QString time(std::optional<double> milliseconds);
    static QString state(std::optional<CanOpen::NmtState> state);

private:
    static QVector<QStringList> busRows(const HealthNumbers &numbers);
    static QVector<QStringList> nodeRows(const HealthNumbers &numbers);
    static QString controller(const HealthNumbers &numbers);
};
