// SPDX-License-Identifier: MIT
#pragma once

#include <QPair>
#include <QString>
#include <QStringList>
#include <QVector>

class QWidget;

/*! The boxes of the help menu. They return at once, as a read may be under way below the call. */
namespace HelpBoxes {

/*! Version, licence and Qt; \a plugins as "name version". */
void showAbout(QWidget *parent, const QStringList &plugins);

/*! \a keys as "Ctrl+K" and what it does. */
void showKeyList(QWidget *parent, const QVector<QPair<QString, QString>> &keys);

} // namespace HelpBoxes
