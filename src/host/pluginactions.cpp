// SPDX-License-Identifier: MIT
#include "pluginactions.h"

#include <QAbstractButton>
#include <QAction>
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
        m_buttons[i] = page != nullptr
                           ? page->findChild<QAbstractButton *>(QLatin1String(table[i].buttonName))
                           : nullptr;
    }
    updateActions();
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

void PluginActions::updateActions()
{
    for (const PluginAction &row : table) {
        const bool isAllowed = !m_isReading && (row.kind != Kind::Read || m_canRead);
        action(row.kind)->setEnabled(isAllowed && !m_buttons[static_cast<int>(row.kind)].isNull());
    }
}
