// SPDX-License-Identifier: MIT
#pragma once

#include <canopen/datatype.h>
#include <canopen/objectkey.h>

#include <optional>

/*! The data type with which the read list asks for an object; of one that is asked for twice, the later one. Empty
 *  for objects that are not in the list.
 */
std::optional<CanOpen::DataType> readListType(CanOpen::ObjectKey key);
