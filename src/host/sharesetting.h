// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>

#include <functional>

class QWidget;

/*! How much of the bus a check-up may use, in percent: the user's choice, kept in the settings. */
class ShareSetting : public QObject
{
    Q_OBJECT

public:
    static constexpr int leastPercent = 5;
    static constexpr int mostPercent = 100;

    /*! What was chosen; the usual share when nothing sensible is there. */
    static int load();

    /*! Lets the user choose, beginning with \a percent; \a chosen is called with what was chosen, which is saved. Returns
     *  at once.
     */
    static void ask(int percent, QWidget *parent, const std::function<void(int)> &chosen);
};
