// SPDX-License-Identifier: MIT
#pragma once

#include <QCoreApplication>

/*! All parts of the service report share one translation context. */
struct ReportTr
{
    Q_DECLARE_TR_FUNCTIONS(ServiceReport)
};
