// SPDX-License-Identifier: MIT
#pragma once

#include <trace/core/trace.h>
#include <trace/decoding/pdobook.h>

class Masking;
struct Snapshot;

/*! The secrets of a trace, in the frames themselves: SDO transfers of every kind, PDOs, and what sets up devices (LSS,
 *  CiA 305). Frames keep their number, their times and their lengths; transfers are as whole as they were.
 */
class TraceMasking
{
public:
    /*! What the PDOs of a vehicle carry that the trace itself does not tell. Before learn(). */
    void tell(const Snapshot &snapshot);

    void learn(const Trace &trace, Masking *masking);
    void mask(Trace *trace, Masking *masking) const;

private:
    PdoBook m_pdos;
};
