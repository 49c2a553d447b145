// SPDX-License-Identifier: MIT
#include "windowlayout.h"

#include <host/core/hostsettings.h>
#include <host/core/windowplace.h>

#include <QDockWidget>
#include <QGuiApplication>
#include <QMainWindow>
#include <QScreen>
#include <QWindow>

namespace {

constexpr QSize firstSize(1000, 760);
constexpr int heightForMessages = 560; // of a screen; on a smaller one the values have all the room at first
constexpr int layoutVersion = 1;       // of the saved places of the docks

/*! Where windows may lie on the screen of \a window; empty when there is no screen. */
QRect availableFor(const QWidget &window)
{
    const QScreen *screen = QGuiApplication::screenAt(window.frameGeometry().center());
    if (screen == nullptr)
        screen = QGuiApplication::primaryScreen();
    return screen != nullptr ? screen->availableGeometry() : QRect();
}

/*! The frame as the window manager made it, or as it usually is. */
QMargins frameOf(const QWidget &window)
{
    const QWindow *handle = window.windowHandle();
    return handle != nullptr && handle->isVisible() ? handle->frameMargins() : WindowPlace::usualFrame;
}

} // namespace

void WindowLayout::restore(const QVariantMap &settings)
{
    takeFirstPlace();
    m_window->restoreGeometry(settings.value(HostSettings::geometry).toByteArray());
    m_window->restoreState(settings.value(HostSettings::windowState).toByteArray(), layoutVersion);
    fitToScreen();
}

void WindowLayout::save(QVariantMap *settings) const
{
    settings->insert(HostSettings::geometry, m_window->saveGeometry());
    settings->insert(HostSettings::windowState, m_window->saveState(layoutVersion));
}

void WindowLayout::reset()
{
    m_dock->setFloating(false);
    m_window->addDockWidget(Qt::BottomDockWidgetArea, m_dock);
    m_window->showNormal();
    takeFirstPlace();
    m_window->resizeDocks({m_dock}, {m_dock->widget()->sizeHint().height()}, Qt::Vertical);
}

void WindowLayout::takeFirstPlace()
{
    const QRect available = availableFor(*m_window);
    m_window->setGeometry(WindowPlace::centred(firstSize, available, frameOf(*m_window)));
    m_dock->setVisible(available.isEmpty() || available.height() >= heightForMessages);
}

void WindowLayout::fitToScreen()
{
    if (m_window->isMaximized() || m_window->isFullScreen())
        return;
    m_window->setGeometry(
        WindowPlace::fit(m_window->geometry(), availableFor(*m_window), frameOf(*m_window)));
}
