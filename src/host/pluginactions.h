// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <QPointer>

class QAbstractButton;
class QAction;
class QWidget;

/*! Actions that the host offers for what a plug-in's window has, by object name.
 *
 *  Host and plug-in share no code, so the host looks for push buttons with known object names and presses them
 *  in the user's place. A plug-in without such a button has a disabled action.
 *
 *  | action         | object name of the button |
 *  |----------------|---------------------------|
 *  | Read all data  | btnRead                   |
 *  | Open           | btnImport                 |
 *  | Export         | btnExport                 |
 *  | Save report    | btnSavePdf                |
 *
 *  And the other way round: when the user presses such a button, its action is triggered in its place, so that
 *  the host can ask first. Only a button whose action is disabled, and one that is pressed by a program, goes
 *  straight to the plug-in.
 */
class PluginActions : public QObject
{
    Q_OBJECT

public:
    enum class Kind { Read, Open, Export, SaveReport };

    explicit PluginActions(QObject *parent = nullptr);

    /*! Looks into \a page, the plug-in's window, for the buttons; null when no plug-in is shown. */
    void setPage(const QWidget *page);

    /*! The action without text; pressing the button is up to press(). */
    QAction *action(Kind kind) const;

    /*! Whether a read can be started, and whether one runs: it must not be mixed with a file. */
    void setBusState(bool canRead, bool isReading);

    /*! Presses the button, from the event loop; nothing happens when there is none, or none enabled. */
    void press(Kind kind) const;

    bool eventFilter(QObject *object, QEvent *event) override;

signals:
    /*! Whoever pressed it: before the plug-in writes its report. A press that is not carried out may have been
     *  reported, too.
     */
    void reportButtonReleased();
    /*! And after it. */
    void reportButtonClicked();

private:
    static constexpr int kindCount = 4;

    void updateActions();
    void setButton(int kind, QAbstractButton *button);
    void handleRelease(int kind, QEvent *event);

    QAction *m_actions[kindCount];
    QPointer<QAbstractButton> m_buttons[kindCount];
    bool m_canRead = false;
    bool m_isReading = false;
};
