// SPDX-License-Identifier: MIT
#pragma once

#include <canopen/objectkey.h>
#include <canopen/sdoabort.h>
#include <canopen/sdoframe.h>

#include <QByteArray>
#include <QVector>

#include <functional>

/*! The server's side of SDO uploads, reduced to what a client can tell: one transfer at a time, answers in
 *  the order of the requests.
 */
class ModelServer
{
public:
    /*! The bytes of an object at the time of an initiate request; null when it does not exist. */
    using Read = std::function<QByteArray(CanOpen::ObjectKey)>;

    explicit ModelServer(Read read)
        : m_read(std::move(read))
    {
    }

    /*! Set: a server that is in a transfer refuses all that is not its continuation, until it is aborted.
     */
    void setStubborn(bool stubborn) { m_stubborn = stubborn; }

    /*! The answer to a request; null when there is none. */
    QByteArray answer(const QByteArray &request)
    {
        using namespace CanOpen;
        const ObjectKey key = sdoKeyOf(request);
        switch (sdoRequestOf(request)) {
        case SdoRequest::InitiateUpload:
            if (m_stubborn && m_open)
                return makeSdoAbort(key, static_cast<quint32>(SdoAbort::GeneralError));
            return initiate(key);
        case SdoRequest::UploadSegment:
            return m_open ? segment(sdoToggleOf(request))
                          : makeSdoAbort({}, static_cast<quint32>(SdoAbort::CommandSpecifierUnknown));
        case SdoRequest::Abort:
            m_open = false;
            return {};
        default:
            return makeSdoAbort(key, static_cast<quint32>(SdoAbort::CommandSpecifierUnknown));
        }
    }

    bool isTransferOpen() const { return m_open; }

private:
    QByteArray initiate(CanOpen::ObjectKey key)
    {
        using namespace CanOpen;
        m_open = false;
        m_key = key;
        m_rest = m_read(key);
        if (m_rest.isNull())
            return makeSdoAbort(key, static_cast<quint32>(SdoAbort::ObjectDoesNotExist));
        if (!m_rest.isEmpty() && m_rest.size() <= sdoExpeditedSize)
            return makeSdoExpeditedUploadResponse(key, m_rest);
        m_open = true;
        m_toggle = false;
        return makeSdoSegmentedUploadResponse(key, static_cast<quint32>(m_rest.size()));
    }

    QByteArray segment(bool toggle)
    {
        using namespace CanOpen;
        if (toggle != m_toggle) {
            m_open = false;
            return makeSdoAbort(m_key, static_cast<quint32>(SdoAbort::ToggleBitNotAlternated));
        }
        const QByteArray part = m_rest.left(sdoSegmentSize);
        m_rest.remove(0, part.size());
        m_toggle = !m_toggle;
        m_open = !m_rest.isEmpty();
        return makeSdoUploadSegmentResponse(toggle, !m_open, part);
    }

    Read m_read;
    CanOpen::ObjectKey m_key;
    QByteArray m_rest; // of the value, still to be sent
    bool m_open = false;
    bool m_toggle = false;
    bool m_stubborn = false;
};
