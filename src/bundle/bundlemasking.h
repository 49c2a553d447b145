// SPDX-License-Identifier: MIT
#pragma once

#include "supportbundle.h"

class Mask;

/*! Takes out of a bundle what tells whose vehicle it is. */
namespace BundleMasking {

/*! The same without serial numbers, names, notes and paths; each is replaced everywhere by the same, and nobody can tell
 *  by what. Takes a while for a long trace.
 */
SupportBundle masked(SupportBundle bundle);
/*! The same, with \a standIns of one's own; for tests. */
SupportBundle masked(SupportBundle bundle, const Mask &standIns);

} // namespace BundleMasking
