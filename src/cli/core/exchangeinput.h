// SPDX-License-Identifier: MIT
#pragma once

class NodeStore;
class QString;

/*! Fills an empty store from an exchange file. Returns false for a file that cannot be read or is no good
 *  exchange file, with a sentence in \a errorMessage; the store stays as it was then.
 */
bool loadNodeStore(const QString &fileName, NodeStore &store, QString *errorMessage);
