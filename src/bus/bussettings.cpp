// SPDX-License-Identifier: MIT
#include "bussettings.h"

#include <QCoreApplication>

namespace {

constexpr int highestBitRate = 1000000; // of classical CAN, bit/s

} // namespace

std::optional<int> parseBitRate(const QString &text, QString *errorMessage)
{
    bool isNumber = false;
    const int bitRate = text.toInt(&isNumber);
    if (isNumber && bitRate >= 0 && bitRate <= highestBitRate)
        return bitRate;

    if (errorMessage != nullptr) {
        *errorMessage = QCoreApplication::translate(
                            "BusSettings", "\"%1\" is no bit rate. Give it in bit/s, for example 250000.")
                            .arg(text);
    }
    return std::nullopt;
}
