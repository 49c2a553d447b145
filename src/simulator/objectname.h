// SPDX-License-Identifier: MIT
#pragma once

#include <canopen/objectkey.h>

#include <QString>

#include <optional>

namespace Simulator {

/*! An object as vehicle files name it: "6164sub2", or "1000" for sub-index 0 (hexadecimal, any case). */
std::optional<CanOpen::ObjectKey> parseObjectKey(const QString &text);

/*! The same the other way. */
QString objectKeyText(CanOpen::ObjectKey key);

} // namespace Simulator
