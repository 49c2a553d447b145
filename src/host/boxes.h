// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QStringList>

#include <functional>

class QWidget;

/*! The window's message boxes. They return at once, as a read may be under way below the call. */
namespace Boxes {

void showError(QWidget *parent, const QString &sentence);

/*! Says what stands in the way of a read; \a read follows when the user wants it all the same. */
void askToReadAnyway(QWidget *parent, const QStringList &obstacles, const std::function<void()> &read);

} // namespace Boxes
