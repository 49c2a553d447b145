// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QStringList>

#include <functional>

class QWidget;

/*! The dialogs that ask for names of traces. They return at once and delete themselves. */
namespace TraceDialogs {

using Chosen = std::function<void(const QString &fileName)>;

/*! \a name: of the dialog as an object; \a suggested: a name without suffix. */
void askToSave(QWidget *parent, const char *name, const QString &title, const QString &folder,
               const QString &suggested, const Chosen &chosen);

void askToOpen(QWidget *parent, const char *name, const QString &title, const QString &folder,
               const QStringList &nameFilters, const Chosen &chosen);

} // namespace TraceDialogs
