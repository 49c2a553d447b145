// SPDX-License-Identifier: MIT
// Nothing: only the headers that are compiled with it are of use.
