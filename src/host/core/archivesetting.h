// SPDX-License-Identifier: MIT
#pragma once

#include <archive/archiveaddress.h>

#include <QString>

#include <optional>

/*! Which archive the user has chosen: the environment variable DRAXEL_ARCHIVE, else the setting of the window, else the
 *  file in the user's data folder. Window and command line share it.
 */
namespace ArchiveSetting {

/*! Empty with a sentence in \a errorMessage when what was chosen is no address. */
std::optional<ArchiveAddress> load(QString *errorMessage);

/*! What was saved, as the user wrote it, password and all; empty for the file in the data folder. */
QString text();

/*! Chooses an address; an empty one is that of the file in the data folder. */
void save(const QString &text);

} // namespace ArchiveSetting
