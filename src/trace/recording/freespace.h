// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <functional>

/*! How many bytes are left for the file \a path or its folder; -1 when nobody knows. */
using FreeSpace = std::function<qint64(const QString &path)>;

/*! As the system tells it. Of standard output ("-") nobody knows: it is on no disk. */
qint64 systemFreeSpace(const QString &path);
