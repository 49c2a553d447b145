// SPDX-License-Identifier: MIT
#include "windowplace.h"

QRect WindowPlace::fit(const QRect &wanted, const QRect &available, const QMargins &frame)
{
    const QRect room = available.marginsRemoved(frame);
    if (room.isEmpty())
        return wanted;
    QRect place(wanted.topLeft(), wanted.size().boundedTo(room.size()));
    place.moveLeft(qBound(room.left(), place.left(), room.right() + 1 - place.width()));
    place.moveTop(qBound(room.top(), place.top(), room.bottom() + 1 - place.height()));
    return place;
}

QRect WindowPlace::centred(const QSize &size, const QRect &available, const QMargins &frame)
{
    QRect place(QPoint(), size);
    place.moveCenter(available.center());
    return fit(place, available, frame);
}
