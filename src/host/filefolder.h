// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

/*! The folder in which file dialogs begin: that of the last file, as long as it is there. */
namespace FileFolder {

QString start();
void remember(const QString &fileName);

} // namespace FileFolder
