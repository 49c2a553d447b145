// SPDX-License-Identifier: MIT
#include "batterytexts.h"

#include <QCoreApplication>

namespace {

/*! The texts are the window's. */
struct OverviewTr
{
    Q_DECLARE_TR_FUNCTIONS(OverviewForm)
};

} // namespace

QString batteryTemperatureLabel(quint32 count)
{
    const quint32 pack = (count >> 4) & 0x0F;
    if ((count & 0x0E) == 0) {
        // Deliberate: the number of the pack is one higher than in the label of a sensor.
        return OverviewTr::tr("Battery Pack ") + QString::number(pack + 1)
               + OverviewTr::tr(" highest temperature");
    }
    return OverviewTr::tr("Battery Pack ") + QString::number(pack) + OverviewTr::tr(" sensor ")
           + QString::number((count - 1) & 0x0F) + OverviewTr::tr(" temperature");
}
