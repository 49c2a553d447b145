// SPDX-License-Identifier: MIT
#pragma once

#include <canopen/datatype.h>

#include <QString>
#include <QStringList>

#include <optional>

/*! Data types as they are written on the command line: the names of CiA 301, and short ones. */
namespace DataTypeName {

/*! The type that \a name names, "UNSIGNED16" or "u16", in upper or lower case; empty for none. */
std::optional<CanOpen::DataType> parse(const QString &name);

/*! All short names. */
QStringList shortNames();

} // namespace DataTypeName
