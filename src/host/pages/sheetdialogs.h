// SPDX-License-Identifier: MIT
#pragma once

#include <QCoreApplication>
#include <QString>

#include <functional>

class QWidget;

/*! What is asked around electronic data sheets. The dialogs return at once and delete themselves. */
class SheetDialogs
{
    Q_DECLARE_TR_FUNCTIONS(SheetDialogs)

public:
    /*! Whether the name is that of an EDS or a DCF. */
    static bool isSheet(const QString &fileName);
    /*! What such names look like, for a file dialog: "*.eds *.dcf", in both cases of letters. */
    static QString patterns();
    /*! Asks which node the data sheet \a fileName, which does not say it, is of. */
    static void askForNode(QWidget *parent, const QString &fileName,
                           const std::function<void(quint8 nodeId)> &chosen);
};
