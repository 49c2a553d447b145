// SPDX-License-Identifier: MIT
#include "capturewords.h"

#include "tracefilestr.h"

QString CaptureWords::of(CapturedFrame::What what)
{
    if (what == CapturedFrame::What::FlexibleDataRate)
        return TraceFilesTr::tr("A CAN FD frame; only classic frames are read.");
    return TraceFilesTr::tr("The packet is no frame of a CAN bus.");
}

QString CaptureWords::cut()
{
    return TraceFilesTr::tr("The file is cut: its end is missing.");
}

QString CaptureWords::impossibleLength(quint32 size)
{
    return TraceFilesTr::tr("A length of %1 bytes cannot be: the rest is not read.").arg(size);
}

QString CaptureWords::tooManyChannels(int most)
{
    return TraceFilesTr::tr("There are more than %1 channels.").arg(most);
}

QString CaptureWords::otherInterface(quint32 linkType)
{
    return TraceFilesTr::tr("The packets are not of a CAN bus (link type %1).").arg(linkType);
}

QString CaptureWords::otherInterface(const QString &name, quint32 linkType)
{
    return TraceFilesTr::tr("The packets of interface %1 are not of a CAN bus (link type %2).")
        .arg(name)
        .arg(linkType);
}
