// SPDX-License-Identifier: MIT
#pragma once

#include "framedetails.h"
#include "tracemodel.h"
#include "tracemoment.h"

#include <QDateTime>
#include <QPair>
#include <QString>
#include <QVector>
#include <QWidget>

#include <functional>
#include <optional>

class CopyTable;
class FilterBar;
class FindBar;
class QLabel;
class QStackedWidget;
class QToolButton;
class TraceSession;
class TraceTable;
class TraceToolbar;

/*! The page "Trace": what was on the bus, line by line in words, while it is heard and from files. Only arranges what the
 *  session knows. Follows at most ten times a second, and not while it is hidden.
 */
class TracePage : public QWidget
{
    Q_OBJECT

public:
    /*! \a session must outlive the page. */
    explicit TracePage(TraceSession *session, QWidget *parent = nullptr);

    /*! The keys of the page, for people, and what each does. */
    static QVector<QPair<QString, QString>> keyList();

    /*! The folder in which file dialogs begin. */
    void setFolder(const std::function<QString()> &folder);

    /*! Whether there are events of a file that is shown; there are always some of what is heard. */
    void setHasEvents(const std::function<bool()> &hasEvents);

    /*! Shows what was heard around a moment. */
    void showMoment(const TraceMoment &moment);
    /*! Shows what was on the bus around a moment in what is shown, be it heard or of a file. */
    void showMomentHere(const TraceMoment &moment);

    TraceModel &model() { return m_model; }

signals:
    /*! The user wants the events around a time. */
    void eventsRequested(const QDateTime &time);
    /*! Something worth a message; what the session tells is not repeated. */
    void told(const QString &sentence);

protected:
    void changeEvent(QEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void showEvent(QShowEvent *event) override;

private:
    enum class Going : quint8 { Choose, Scroll };
    /*! A line that is to be seen. */
    struct Wanted
    {
        std::size_t line = 0;
        Going going = Going::Choose;
    };
    /*! Where the user is. */
    struct Place
    {
        std::optional<std::size_t> chosen; // frame
        std::optional<std::size_t> top;    // frame of the uppermost line
        bool isFollowing = false;
    };

    QWidget *buildTop();
    QWidget *buildCentre();
    QWidget *buildBottom();
    QToolButton *makeButton(const char *name, void (TracePage::*pressed)());
    void addKeys();
    void connectParts();
    void connectSession();

    void showDocument();
    void takeGrown();
    void takeShortened(std::size_t frames);
    void relearn();
    void takeOtherWords();
    void takeFilter();
    void goToLine(std::size_t line, Going going = Going::Choose);
    void goBack(const Place &place);
    void goToWanted();
    Place place() const;
    void chooseRow(int row);
    void showChosen();
    void showDetails();
    void showCounts();
    void showHint();
    void showProblem();
    void showSelection();
    void setFollowing(bool follows);
    void exportShown();
    void exportLookedAt();
    void giveExportUp();
    void askForEvents();
    void toggleFollowing();
    QString documentText() const;
    QString documentProblems() const;
    void retranslate();

    TraceSession *m_session;
    TraceModel m_model;
    FrameDetails m_details;
    TraceToolbar *m_toolbar = nullptr;
    FilterBar *m_filter = nullptr;
    FindBar *m_find = nullptr;
    QLabel *m_count = nullptr;
    QLabel *m_problem = nullptr;
    QStackedWidget *m_centre = nullptr;
    QLabel *m_empty = nullptr;
    TraceTable *m_table = nullptr;
    CopyTable *m_parts = nullptr;
    QToolButton *m_copy = nullptr;
    QToolButton *m_export = nullptr;
    QToolButton *m_events = nullptr;
    QToolButton *m_follow = nullptr;
    QLabel *m_selection = nullptr;
    std::function<QString()> m_folder;
    std::function<bool()> m_hasEvents;   // of a file
    std::optional<std::size_t> m_chosen; // frame of the document whose line is chosen
    std::optional<Wanted> m_wanted;      // to go to as soon as it was looked at
    QString m_exportName;   // for when all lines were looked at; empty: nothing is to be exported
    bool m_isGoing = false; // another filter or document is being taken in
};
