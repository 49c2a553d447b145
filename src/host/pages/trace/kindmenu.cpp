// SPDX-License-Identifier: MIT
#include "kindmenu.h"

#include <QAction>
#include <QEvent>
#include <QKeyEvent>
#include <QMenu>
#include <QMouseEvent>

#include <array>

namespace {

struct Words
{
    const char *name;
    const char *shortName;
};

// In the order of FrameKind
constexpr std::array<Words, frameKinds> words{{
    {QT_TRANSLATE_NOOP("KindMenu", "Commands (NMT)"), "NMT"},
    {QT_TRANSLATE_NOOP("KindMenu", "Synchronisation (SYNC)"), "SYNC"},
    {QT_TRANSLATE_NOOP("KindMenu", "Time (TIME)"), "TIME"},
    {QT_TRANSLATE_NOOP("KindMenu", "Emergencies (EMCY)"), "EMCY"},
    {QT_TRANSLATE_NOOP("KindMenu", "Process data (PDO)"), "PDO"},
    {QT_TRANSLATE_NOOP("KindMenu", "Objects read and written (SDO)"), "SDO"},
    {QT_TRANSLATE_NOOP("KindMenu", "Heartbeats"), QT_TRANSLATE_NOOP("KindMenu", "Heartbeats")},
    {QT_TRANSLATE_NOOP("KindMenu", "Other frames"), QT_TRANSLATE_NOOP("KindMenu", "Other frames")},
    {QT_TRANSLATE_NOOP("KindMenu", "Errors of the bus"), QT_TRANSLATE_NOOP("KindMenu", "Errors of the bus")},
}};

/*! Stays open when something is chosen that can be chosen with more; Esc or a click beside it closes it. */
class StayingMenu : public QMenu
{
public:
    using QMenu::QMenu;

protected:
    void mouseReleaseEvent(QMouseEvent *event) override
    {
        if (!choose(actionAt(event->pos())))
            QMenu::mouseReleaseEvent(event);
    }
    void keyPressEvent(QKeyEvent *event) override
    {
        const bool chooses = event->key() == Qt::Key_Space || event->key() == Qt::Key_Return
                             || event->key() == Qt::Key_Enter;
        if (!chooses || !choose(activeAction()))
            QMenu::keyPressEvent(event);
    }

private:
    static bool choose(QAction *action)
    {
        if (action == nullptr || !action->isCheckable())
            return false;
        action->trigger();
        return true;
    }
};

const Words &wordsOf(FrameKind kind)
{
    return words[static_cast<std::size_t>(kind)];
}

} // namespace

KindMenu::KindMenu(QWidget *parent)
    : QToolButton(parent)
{
    setPopupMode(InstantPopup);
    setFocusPolicy(Qt::StrongFocus);
    auto *menu = new StayingMenu(this);
    m_all = menu->addAction(QString());
    connect(m_all, &QAction::triggered, this, [this] {
        setKinds({});
        emit changed();
    });
    menu->addSeparator();
    for (int kind = 0; kind < frameKinds; ++kind) {
        QAction *action = menu->addAction(QString());
        action->setObjectName(QLatin1String(frameKindName(static_cast<FrameKind>(kind))));
        action->setCheckable(true);
        connect(action, &QAction::triggered, this, [this] {
            showChoice();
            emit changed();
        });
        m_actions.append(action);
    }
    setMenu(menu);
    retranslate();
}

std::bitset<frameKinds> KindMenu::kinds() const
{
    std::bitset<frameKinds> kinds;
    for (int kind = 0; kind < frameKinds; ++kind)
        kinds.set(static_cast<std::size_t>(kind), m_actions.at(kind)->isChecked());
    return kinds;
}

void KindMenu::setKinds(const std::bitset<frameKinds> &kinds)
{
    for (int kind = 0; kind < frameKinds; ++kind)
        m_actions.at(kind)->setChecked(kinds.test(static_cast<std::size_t>(kind)));
    showChoice();
}

QString KindMenu::nameOf(FrameKind kind)
{
    return tr(wordsOf(kind).name);
}

QString KindMenu::shortNameOf(FrameKind kind)
{
    return tr(wordsOf(kind).shortName);
}

void KindMenu::showChoice()
{
    constexpr int mostNamed = 2;
    QStringList names;
    for (int kind = 0; kind < frameKinds; ++kind) {
        if (m_actions.at(kind)->isChecked())
            names << shortNameOf(static_cast<FrameKind>(kind));
    }
    if (names.isEmpty())
        setText(tr("All kinds"));
    else if (names.size() <= mostNamed)
        setText(names.join(QStringLiteral(", ")));
    else
        setText(tr("%n kind(s)", nullptr, names.size()));
}

void KindMenu::changeEvent(QEvent *event)
{
    if (event->type() == QEvent::LanguageChange)
        retranslate();
    QToolButton::changeEvent(event);
}

void KindMenu::retranslate()
{
    m_all->setText(tr("All kinds"));
    for (int kind = 0; kind < frameKinds; ++kind)
        m_actions.at(kind)->setText(nameOf(static_cast<FrameKind>(kind)));
    setToolTip(tr("Which kinds of frames are shown"));
    showChoice();
}
