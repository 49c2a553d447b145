// SPDX-License-Identifier: MIT
#pragma once

#include "signs.h"

#include <checkup/findings.h>

#include <QCoreApplication>
#include <QString>
#include <QStringList>

/*! What a check-up has found, for people. */
class CheckupListing
{
    Q_DECLARE_TR_FUNCTIONS(CheckupListing)

public:
    /*! The worst first, the good components in one line, a line for all at the end. Names and texts are without anything
     *  that acts on a terminal; the signs may be coloured.
     */
    static QString toText(const CheckupResult &result, Signs::Style style);

private:
    static QStringList linesOf(const CheckedComponent &component, const Signs &signs);
    static QStringList linesOf(const QVector<Finding> &findings, const Signs &signs, const QString &margin);
    static QString goodLine(const CheckupResult &result, const Signs &signs);
    static QString lastLine(const CheckupResult &result);
};
