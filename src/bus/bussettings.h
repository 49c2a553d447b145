// SPDX-License-Identifier: MIT
#pragma once

#include "busaddress.h"

#include <QString>

#include <optional>

/*! How to open a bus. */
struct BusSettings
{
    BusAddress address;
    std::optional<int> bitRate; //!< bit/s; empty: the interface stays as it is configured
};

/*! The bit rate written as \a text, in bit/s from 0 to 1000000. 0 is for back ends that take it (the
 *  simulated bus runs without a pace then). Empty for anything else, with the reason in \a errorMessage (may
 *  be null).
 */
std::optional<int> parseBitRate(const QString &text, QString *errorMessage);
