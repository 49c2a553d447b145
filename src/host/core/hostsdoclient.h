// SPDX-License-Identifier: MIT
#pragma once

#include <canopen/objectkey.h>
#include <canopen/sdoclient.h>
#include <interface/sdoclient.h>

#include <QObject>
#include <QVariant>
#include <QVector>

class BusConnection;

/*! The SDO client that plug-ins are given: uploads over whatever bus is connected at the time.
 *
 *  Lives as long as the host, over every connection and loss. An upload always ends with exactly one
 *  resultReceived() or errorReceived(), never from within upload(): a value as result, aborts and transfer
 *  errors with their code, silence and a bus that is not there with FFFFFFFFh. The patience with slow nodes
 *  is that of the connection's client.
 */
class HostSdoClient : public QObject, public ::SdoClient
{
    Q_OBJECT

public:
    /*! How an upload ended, in more detail than a plug-in is told. */
    enum class Ending {
        Value,
        Refused,  //!< SDO abort or transfer error
        HeldUp,   //!< failed, because another client used the node
        MixedUp,  //!< failed, because the answers could not be told from late or foreign ones
        Silent,   //!< no answer, also after the repeats
        NotSent,  //!< the request could not be put on the bus; nothing is known of the node
        Refusing, //!< nothing was asked: the host uses the bus for itself
        NoBus     //!< the bus was not connected or went away meanwhile, or the user cancelled the run
    };
    Q_ENUM(Ending)

    static constexpr quint32 timeoutCode = 0xFFFFFFFF;

    /*! \a bus must outlive the client. */
    explicit HostSdoClient(BusConnection *bus, QObject *parent = nullptr);
    ~HostSdoClient() override;

    /*! \a timeout in ms; 0 and less stand for the patience's own. A node ID outside 1 to 127 and an unknown
     *  data type are refused with the abort code 0800 0000h, so that the caller goes on to its next object.
     */
    void upload(quint8 nodeId, quint16 index, quint8 subIndex, quint16 dataType, int timeout) override;

    QObject *getQObject() override { return this; }

    /*! Ends the run of a plug-in: the uploads that have not ended, and all that follow until endCancelling(),
     *  are answered with FFFFFFFFh from the event loop. A transfer that is under way on the bus is aborted, so
     *  that the next request to the node need not wait for it.
     */
    void cancelRun();
    void endCancelling() { m_isCancelling = false; }
    bool isCancelling() const { return m_isCancelling; }

    /*! While the host uses the bus for itself, all uploads are answered with FFFFFFFFh, from the event loop: two who
     *  read at the same time would hold each other up.
     */
    void setRefusing(bool isRefusing) { m_isRefusing = isRefusing; }
    bool isRefusing() const { return m_isRefusing; }

    /*! Uploads that have not ended yet. */
    int pendingUploads() const { return m_pending.size(); }

signals:
    // The signatures are the contract with plug-ins, which connect to them by text.
    void resultReceived(quint8 nodeId, quint16 index, quint8 subIndex, QVariant value);
    void errorReceived(quint8 nodeId, quint16 index, quint8 subIndex, quint32 errorCode);

    // For the host itself.
    void uploadStarted(quint8 nodeId, CanOpen::ObjectKey key);
    /*! Just before the plug-in is told; \a code as in errorReceived(), 0 for a value. */
    void uploadEnded(quint8 nodeId, CanOpen::ObjectKey key, HostSdoClient::Ending ending, quint32 code);

private:
    struct Pending
    {
        quint64 number = 0;
        quint8 nodeId = 0;
        CanOpen::ObjectKey key;
        CanOpen::SdoTicket ticket = 0; // of the connection's client, which ends it; 0: is being answered here
    };

    template<typename Predicate>
    QVector<Pending>::iterator find(Predicate matches);
    void endLater(quint64 number, Ending ending, quint32 code);
    void handleOutcome(const CanOpen::SdoOutcome &outcome);
    void end(const Pending &pending, Ending ending, quint32 code, const QVariant &value = QVariant());

    BusConnection *m_bus;
    QVector<Pending> m_pending; // oldest first
    bool m_isCancelling = false;
    bool m_isRefusing = false;
    quint64 m_lastNumber = 0;
};
