// SPDX-License-Identifier: MIT
#pragma once

#include "busaddress.h"

#include <QString>

#include <array>
#include <optional>

/*! How to open a bus. */
struct BusSettings
{
    BusAddress address;
    std::optional<int> bitRate; //!< bit/s; empty: the interface stays as it is configured
};

/*! The bit rates that are offered, in bit/s: those of CiA 301, and 100 kbit/s, which some vehicles use. */
constexpr std::array<int, 9> offeredBitRates{10000,  20000,  50000,  100000, 125000,
                                             250000, 500000, 800000, 1000000};

/*! The bit rate written as \a text, in bit/s from 0 to 1000000. 0 is for back ends that take it (the
 *  simulated bus runs without a pace then). Empty for anything else, with the reason in \a errorMessage (may
 *  be null).
 */
std::optional<int> parseBitRate(const QString &text, QString *errorMessage);
