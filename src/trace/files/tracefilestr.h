// SPDX-License-Identifier: MIT
#pragma once

#include <QCoreApplication>

/*! Translates the texts of all that reads and writes traces. */
struct TraceFilesTr
{
    Q_DECLARE_TR_FUNCTIONS(TraceFile)
};
