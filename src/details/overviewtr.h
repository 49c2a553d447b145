// SPDX-License-Identifier: MIT
#pragma once

#include <QCoreApplication>

/*! Translations of the window's helpers: their texts are in the window's own context. */
struct OverviewTr
{
    Q_DECLARE_TR_FUNCTIONS(OverviewForm)
};
