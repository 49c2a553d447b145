// SPDX-License-Identifier: MIT
#pragma once

#include "datatype.h"
#include "objectkey.h"

#include <QCanBusFrame>
#include <QObject>
#include <QVariant>

#include <chrono>
#include <functional>

namespace CanOpen {

/*! Outcome of one upload. */
struct SdoOutcome
{
    enum class Kind {
        Value,   //!< value holds what was read
        Abort,   //!< the device refused; code is its abort code
        Error,   //!< the transfer failed on the client's side; code is the abort code that was sent for it
        Timeout, //!< the device did not answer, also after the repeats
        Cancelled //!< cancelled by cancelAll()
    };

    Kind kind = Kind::Timeout;
    quint8 nodeId = 0;
    ObjectKey key;
    QVariant value;
    quint32 code = 0;
    int repeats = 0; // how often the request was repeated
};

/*! How patient the client is with a node. */
struct SdoPatience
{
    std::chrono::milliseconds timeout{100}; //!< for the first answer and between segments
    int repeats = 2;                        //!< how often the whole upload is asked again after a time-out
    std::chrono::milliseconds longest{10000}; //!< bound of one upload in all
};

/*! SDO client of all nodes (CiA 301): one upload per node at a time, the nodes side by side, the rest in queues.
 *
 *  Knows no device: frames go out through the sender function and come in through handleFrame(). Every upload ends with
 *  exactly one finished(), never from within upload().
 */
class SdoClient : public QObject
{
    Q_OBJECT

public:
    using Sender = std::function<void(const QCanBusFrame &)>;

    explicit SdoClient(Sender sender, QObject *parent = nullptr);
    ~SdoClient() override;

    /*! The patience with every node that has none of its own. */
    void setDefaultPatience(const SdoPatience &patience);
    /*! The patience with one node (1 to 127). */
    void setPatience(quint8 nodeId, const SdoPatience &patience);

    /*! Reads an object. \a timeout, when positive, replaces the time-out of the patience for this upload, if that is
     *  shorter.
     */
    void upload(quint8 nodeId, ObjectKey key, DataType type,
                std::chrono::milliseconds timeout = std::chrono::milliseconds{0});

    /*! Ends every upload under way and in the queues with Kind::Cancelled, at once; nothing more is sent. */
    void cancelAll();

    /*! Whether an upload is under way or queued. */
    bool isBusy() const;

    /*! Takes a frame from the bus; what is not meant for this client is ignored. */
    void handleFrame(const QCanBusFrame &frame);

signals:
    void finished(const CanOpen::SdoOutcome &outcome);
    // the private part is the implementation's
};

} // namespace CanOpen
