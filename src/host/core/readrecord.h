// SPDX-License-Identifier: MIT
#pragma once

#include <canopen/objectkey.h>
#include <canopen/sdooutcome.h>

#include <QCoreApplication>
#include <QList>
#include <QMap>
#include <QString>
#include <QVector>

#include <optional>

/*! How the reading of one object ended. */
struct ReadResult
{
    enum class Kind {
        Value,
        NotThere, //!< the device says that it does not have the object or the sub-index
        Refused,  //!< refused for another reason, or failed as a transfer; code says why
        HeldUp,   //!< failed, because another client used the node
        MixedUp,  //!< failed, because the answers could not be told from late or foreign ones
        NoAnswer, //!< also after the repeats
        NotSent   //!< the request could not be put on the bus
    };

    Kind kind = Kind::Value;
    quint32 code = 0; //!< SDO abort code (CiA 301) of Refused, HeldUp and MixedUp

    static ReadResult value() { return {Kind::Value, 0}; }
    /*! From an abort code: 0602 0000h and 0609 0011h say that the object is not there, and no other does. */
    static ReadResult refusal(quint32 code);
    /*! Of an upload that was not cancelled. */
    static ReadResult of(const CanOpen::SdoOutcome &outcome);
    static ReadResult noAnswer() { return {Kind::NoAnswer, 0}; }
    static ReadResult notSent() { return {Kind::NotSent, 0}; }

    bool isFailure() const { return kind != Kind::Value && kind != Kind::NotThere; }
};

/*! How the objects of one node, or of several together, were read. Each object counts once. */
struct ReadCounts
{
    int values = 0;
    int missing = 0; //!< objects that the device does not have
    int failed = 0;  //!< objects that may be there and whose value is not known

    int objects() const { return values + missing + failed; }
};

/*! An object whose value could not be read. */
struct FailedObject
{
    Q_DECLARE_TR_FUNCTIONS(FailedObject)

public:
    quint8 nodeId = 0;
    CanOpen::ObjectKey key;
    ReadResult result;

    /*! Why, in words: "The toggle bit did not alternate (0503 0000h)". */
    QString reason() const;

    /*! With node and object, a line without an end: "Node 7, object 6000h sub-index 1: No answer" */
    QString toString() const;
};

/*! What became of every object that was asked for in one read, by node.
 *
 *  An object may be asked for more than once, in another size for instance. A value then wins over every other
 *  result, and that the object is not there over a failure: the device was clear about it once.
 */
class ReadRecord
{
public:
    void note(quint8 nodeId, CanOpen::ObjectKey key, const ReadResult &result);
    void clear() { m_nodes.clear(); }

    /*! What became of one object; empty when it was not asked for. */
    std::optional<ReadResult> result(quint8 nodeId, CanOpen::ObjectKey key) const;

    /*! The nodes of which anything is recorded, ascending. */
    QList<quint8> nodes() const { return m_nodes.keys(); }

    ReadCounts counts(quint8 nodeId) const;
    ReadCounts total() const;

    /*! What failed, by node and object. */
    QVector<FailedObject> failures() const;

private:
    using Results = QMap<CanOpen::ObjectKey, ReadResult>;

    QMap<quint8, Results> m_nodes;
};
