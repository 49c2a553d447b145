// SPDX-License-Identifier: MIT
#pragma once

#include <QVariantMap>

class QDockWidget;
class QMainWindow;

/*! Size and place of the window and of its docks: at first, as they were left, and as at first again. Always
 *  such that the window lies on the screen.
 */
class WindowLayout
{
public:
    /*! Used, not owned. */
    WindowLayout(QMainWindow *window, QDockWidget *dock)
        : m_window(window)
        , m_dock(dock)
    {
    }

    /*! What is missing or broken leaves the window as at first. */
    void restore(const QVariantMap &settings);
    void save(QVariantMap *settings) const;
    void reset();

private:
    void takeFirstPlace();
    void fitToScreen();

    QMainWindow *m_window;
    QDockWidget *m_dock;
};
