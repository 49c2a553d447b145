// SPDX-License-Identifier: MIT
#pragma once

#include "tracemark.h"

#include <QString>

/*! A line of a trace in words. */
struct TraceText
{
    TraceMark mark = TraceMark::Plain;
    QString text;   //!< "read 6164h.2 Relative battery Wh capacity = 84.00 %"
    QString detail; //!< of transfers: "2 frames, 0.9 ms"; else empty
};
