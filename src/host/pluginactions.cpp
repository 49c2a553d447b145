// SPDX-License-Identifier: MIT
#include "pluginactions.h"

#include <QAbstractButton>
#include <QAction>
#include <QEvent>
#include <QSignalBlocker>
#include <QTimer>

#include <iterator>

namespace {

struct PluginAction
{
    PluginActions::Kind kind;
    const char *buttonName;
    const char *actionName;
};

constexpr PluginAction table[] = {
    {PluginActions::Kind::Read, "btnRead", "actionRead"},
    {PluginActions::Kind::Open, "btnImport", "actionOpen"},
    {PluginActions::Kind::Export, "btnExport", "actionExport"},
    {PluginActions::Kind::SaveReport, "btnSavePdf", "actionSaveReport"},
};

constexpr bool isInOrder()
{
    for (std::size_t i = 0; i < std::size(table); ++i) {
        if (static_cast<std::size_t>(table[i].kind) != i)
            return false;
    }
    return true;
}
static_assert(isInOrder(), "the kind is the index");

} // namespace

PluginActions::PluginActions(QObject *parent)
    : QObject(parent)
{
    static_assert(std::size(table) == kindCount);
    for (int i = 0; i < kindCount; ++i) {
        m_actions[i] = new QAction(this);
        m_actions[i]->setObjectName(QLatin1String(table[i].actionName));
    }
    updateActions();
}

void PluginActions::setPage(const QWidget *page)
{
    for (int i = 0; i < kindCount; ++i) {
        setButton(i, page != nullptr ? page->findChild<QAbstractButton *>(QLatin1String(table[i].buttonName))
                                     : nullptr);
    }
    updateActions();
}

void PluginActions::setButton(int kind, QAbstractButton *button)
{
    if (m_buttons[kind] == button)
        return;
    if (!m_buttons[kind].isNull()) {
        m_buttons[kind]->removeEventFilter(this);
        m_buttons[kind]->disconnect(this);
    }
    m_buttons[kind] = button;
    if (button == nullptr)
        return;
    button->installEventFilter(this);
    if (kind == static_cast<int>(Kind::SaveReport)) {
        // Connected after the plug-in's own slot, so the second one comes when that has returned.
        connect(button, &QAbstractButton::released, this, &PluginActions::reportButtonReleased);
        connect(button, &QAbstractButton::clicked, this, &PluginActions::reportButtonClicked);
    }
}

QAction *PluginActions::action(Kind kind) const
{
    return m_actions[static_cast<int>(kind)];
}

void PluginActions::setBusState(bool canRead, bool isReading)
{
    m_canRead = canRead;
    m_isReading = isReading;
    updateActions();
}

void PluginActions::press(Kind kind) const
{
    QAbstractButton *button = m_buttons[static_cast<int>(kind)];
    // Not in place: the click may not return before a read is over.
    if (button != nullptr)
        QTimer::singleShot(0, button, &QAbstractButton::click);
}

bool PluginActions::eventFilter(QObject *object, QEvent *event)
{
    if (event->type() != QEvent::MouseButtonRelease && event->type() != QEvent::KeyRelease)
        return QObject::eventFilter(object, event);
    for (int i = 0; i < kindCount; ++i) {
        if (object == m_buttons[i] && m_buttons[i]->isDown() && m_actions[i]->isEnabled()) {
            handleRelease(i, event);
            return true;
        }
    }
    return QObject::eventFilter(object, event);
}

// The button itself decides whether it is a click, and its look changes with it; only its signals stay away.
void PluginActions::handleRelease(int kind, QEvent *event)
{
    QAbstractButton *button = m_buttons[kind];
    {
        const QSignalBlocker blocker(button);
        static_cast<QObject *>(button)->event(event);
    }
    if (!button->isDown())
        m_actions[kind]->trigger();
}

void PluginActions::updateActions()
{
    for (const PluginAction &row : table) {
        const bool isAllowed = !m_isReading && (row.kind != Kind::Read || m_canRead);
        action(row.kind)->setEnabled(isAllowed && !m_buttons[static_cast<int>(row.kind)].isNull());
    }
}
