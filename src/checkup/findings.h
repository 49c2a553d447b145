// SPDX-License-Identifier: MIT
#pragma once

#include <canopen/objectkey.h>

#include <QString>
#include <QStringList>
#include <QVector>

/*! \file
 *  What a check-up finds: plain values for window, command line, archive and report.
 */

/*! How serious a finding is. */
enum class Severity : quint8 { Note, Warning, Fault };

/*! One thing that a rule found. */
struct Finding
{
    QString rule; //!< the rule's name: "cell-spread"
    Severity severity = Severity::Note;
    quint8 nodeId = 0;                   //!< 0: the vehicle as a whole
    QVector<CanOpen::ObjectKey> objects; //!< what it was found in
    QString instance; //!< which one of a rule that looks at several things: "1 10"; may be empty
    QString text;     //!< a sentence with values and units, in the language asked for
    QString advice;   //!< what to do, one or more sentences; may be empty
};

/*! The light of a component. The order is from the best to the worst, for sorting; NotChecked is never good. */
enum class ComponentState : quint8 { Good, Note, NotChecked, Warning, Fault };

/*! One device of the vehicle and what was found in it. */
struct CheckedComponent
{
    quint8 nodeId = 0;
    QString name; //!< see DeviceIdentity::displayName()
    /*! The worst of the findings; NotChecked when there is no warning or fault and a rule that concerns the component
     *  could not be judged.
     */
    ComponentState state = ComponentState::Good;
    QVector<Finding> findings; //!< the worst first
    /*! Why something could not be judged, sentences, each once; may be there beside findings. */
    QStringList notChecked;
    /*! Who it is was not read this time: the name is the one that the device on this node had in an earlier snapshot. */
    bool isNameEarlier = false;
};

/*! The vehicle in one word. Fault and Warning win over Incomplete, Incomplete over Note and Ok. */
enum class Verdict : quint8 { Ok, Note, Incomplete, Warning, Fault };

struct CheckupResult
{
    Verdict verdict = Verdict::Incomplete;
    QVector<CheckedComponent> components; //!< the worst first, then by node
    QVector<Finding> vehicleFindings;     //!< those of the vehicle as a whole
    /*! Rules of the vehicle as a whole that miss what they need of a node; their findings may not be all. */
    QStringList unjudgedRules;
    QString language; //!< that it was judged in: "de", "zh_CN"

    int count(Severity severity) const;
    const CheckedComponent *component(quint8 nodeId) const; //!< null when there is none on the node
    int notCheckedCount() const;                            //!< components with something that was not judged
};
