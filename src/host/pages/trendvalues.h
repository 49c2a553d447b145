// SPDX-License-Identifier: MIT
#pragma once

#include <canopen/objectkey.h>

#include <QCoreApplication>
#include <QString>
#include <QVariant>

/*! The values that are worth being followed over visits. */
class TrendValues
{
    Q_DECLARE_TR_FUNCTIONS(TrendValues)

public:
    static int count();
    static CanOpen::ObjectKey key(int position);
    /*! Translated: "State of health (%)". */
    static QString title(int position);
    /*! The number to draw, in the unit of the title. */
    static double number(int position, const QVariant &value);
};
