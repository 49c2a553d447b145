// SPDX-License-Identifier: MIT
#pragma once

#include "capturedframe.h"

#include <QString>

/*! What is wrong with a capture, a sentence each. */
namespace CaptureWords {

QString of(CapturedFrame::What what);
QString cut();
QString impossibleLength(quint32 size);
QString tooManyChannels(int most);
QString otherInterface(quint32 linkType);
QString otherInterface(const QString &name, quint32 linkType);

} // namespace CaptureWords
