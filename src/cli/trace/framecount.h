// SPDX-License-Identifier: MIT
#pragma once

#include <QCoreApplication>
#include <QString>

/*! How many frames, in words. */
class FrameCount
{
    Q_DECLARE_TR_FUNCTIONS(FrameCount)

public:
    /*! "1 frame", "4 frames" */
    static QString text(quint64 frames) { return frames == 1 ? tr("1 frame") : tr("%1 frames").arg(frames); }
};
