// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QStringList>

#include <functional>

class QWidget;

/*! The dialogs that ask for names of traces. They return at once and delete themselves. */
namespace TraceDialogs {

using Chosen = std::function<void(const QString &fileName)>;

/*! \a name: of the dialog as an object; \a suggested: a name without suffix. A name that tells no format gets the suffix of the
 *  kind that is chosen; the dialog comes again to ask when there is such a file.
 */
void askToSave(QWidget *parent, const char *name, const QString &title, const QString &folder,
               const QString &suggested, const Chosen &chosen);

void askToOpen(QWidget *parent, const char *name, const QString &title, const QString &folder,
               const QStringList &nameFilters, const Chosen &chosen);

} // namespace TraceDialogs
