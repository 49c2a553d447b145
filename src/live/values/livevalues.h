// SPDX-License-Identifier: MIT
#pragma once

#include "pdodecoder.h"
#include "valuehistory.h"
#include "valuerecord.h"

#include <canopen/objectkey.h>
#include <canopen/pdomapping.h>
#include <canopen/pdoparameter.h>
#include <live/core/liveframe.h>

#include <QCoreApplication>
#include <QHash>
#include <QString>
#include <QStringList>
#include <QVector>

#include <array>
#include <memory>
#include <vector>

struct PdoSource;

/*! A value of a node that is heard or asked for, in the unit in which people read it. */
struct LiveValue
{
    quint8 nodeId = 0;
    CanOpen::ObjectKey object;
    QString name; //!< of the object table; its number when it has none
    QString unit; //!< may be empty
    double divisor = 1;
    ValueRecord record;
    std::shared_ptr<ValueHistory> history; //!< of those that are watched; else null
};

/*! Makes named values of PDOs, by the mappings that devices or their data sheets tell, and takes those that were asked
 *  for. Sends nothing. Times in us, of a FrameClock.
 *
 *  It is bounded: by 4096 values, of which only those that are watched have a history.
 */
class LiveValues
{
    Q_DECLARE_TR_FUNCTIONS(LiveValues)

public:
    static constexpr int mostValues = 4096;

    /*! Learns the transmit PDOs of a node, in place of what was known of it. What cannot be used of them is in problems().
     *  The values that there were stay, with their numbers.
     */
    void learn(const PdoSource &source);

    /*! Takes every frame. */
    void handle(const LiveFrame &frame);

    /*! A number that somebody asked the node for, in the object's raw unit. Its position; -1 when there is no room. */
    int note(quint8 nodeId, CanOpen::ObjectKey object, double number, qint64 time);

    const std::vector<LiveValue> &values() const { return m_values; }
    /*! The position of a value; -1 when there is none. */
    int find(quint8 nodeId, CanOpen::ObjectKey object) const;

    /*! Begins to keep the history of a value, or forgets it. */
    void setWatched(int position, bool isWatched);

    /*! Raised by each frame that carried values. */
    quint64 revision() const { return m_revision; }

    /*! What devices say of their PDOs and cannot be, and frames that are too short, in sentences. */
    QStringList problems() const;

private:
    struct Part
    {
        PdoDecoder decoder;
        int value; // position
    };

    struct Pdo
    {
        quint8 nodeId = 0;
        int number = 0; // from 1
        quint32 id = 0;
        bool isExtended = false;
        int bytes = 0; // that its mapping needs
        quint64 tooShort = 0;
        std::vector<Part> parts;
    };

    void learnPdo(const PdoSource &source, int number);
    void forget(quint8 nodeId);
    void addParts(const PdoSource &source, const CanOpen::PdoMapping &mapping, qint64 period, Pdo *pdo);
    void place(const Pdo &pdo);
    void index();
    Pdo *pdoOf(const LiveFrame &frame);
    int provide(quint8 nodeId, CanOpen::ObjectKey object);
    void add(int position, qint64 time, double number);
    void complain(quint8 nodeId, const QString &sentence);
    static QString wordsOf(CanOpen::PdoMapping::Problem problem);

    std::vector<LiveValue> m_values;
    QHash<quint32, int> m_positions; // of values, by node and object
    std::vector<Pdo> m_pdos;
    std::array<qint16, 0x800> m_standard = makeEmpty(); // positions of PDOs by identifier; -1: none
    QHash<quint32, int> m_extended;
    QHash<quint8, QStringList> m_problems; // by node
    QStringList m_collisions;
    quint64 m_revision = 0;

    static std::array<qint16, 0x800> makeEmpty();
};
