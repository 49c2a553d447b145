// SPDX-License-Identifier: MIT
#pragma once

#include <QList>
#include <QMessageBox>

#include <array>

class NodeView;
class QAction;
class QWidget;

/*! What an information dialog shows of a node. */
enum class InformationDialog : quint8 {
    DeviceType,            //!< object 1000h
    ErrorRegister,         //!< object 1001h
    ErrorField,            //!< object 1003h
    SpecificationVersions, //!< object 600Eh
    SecurityStatus,        //!< object 6311h
};

/*! The information dialogs, and the actions that offer them in the context menu of a component.
 *
 *  Each dialog shows one object of a node in words. The actions do nothing by themselves: whoever owns them
 *  connects them.
 */
class InformationDialogs
{
public:
    static constexpr int count = 5;

    /*! Creates the actions as children of \a window, over which the dialogs open. */
    explicit InformationDialogs(QWidget &window);

    /*! Gives the actions their texts again, after a change of the language. */
    void retranslate();

    /*! The action that offers a dialog; owned by the window. */
    QAction *action(InformationDialog dialog) const;

    /*! The actions of the dialogs whose object \a node has, in the order of the menu. */
    QList<QAction *> offeredActions(const NodeView &node) const;

    /*! Shows a dialog until the user closes it. The error field is shown only when the node has it. */
    void show(InformationDialog dialog, const NodeView &node) const;

private:
    int showInformation(const QString &title, const QString &text, const QString &informativeText,
                        QMessageBox::StandardButtons buttons, int flag) const;

    QWidget &m_window;
    std::array<QAction *, count> m_actions = {};
};
