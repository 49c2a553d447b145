// SPDX-License-Identifier: MIT
#pragma once

#include "tracedocument.h"

#include <canopen/objectkey.h>

#include <map>
#include <memory>
#include <utility>

/*! What is heard, as a trace that grows and stays bounded: when it is full, its older half leaves.
 *
 *  That happens beside it: the newer half is sorted into lines again, some at a time, and then stands in its place.
 */
class LiveTrace
{
public:
    /*! Frames; for a while there may be an eighth more. */
    static constexpr std::size_t usualMost = 1000000;

    explicit LiveTrace(std::size_t most = usualMost);

    /*! Begins anew, with another document of which nothing was told. */
    void begin(const TraceHead &head);
    void add(const TraceFrame &frame);
    /*! Makes lines of frames that have come, of no more than \a most of them. Whether some are left. */
    bool advance(std::size_t most);

    /*! What is known of the devices beside what is heard. */
    void tell(const TraceDevices &devices);

    const std::shared_ptr<TraceDocument> &document() const { return m_document; }

private:
    using Values = std::map<std::pair<quint8, CanOpen::ObjectKey>, quint32>;

    void beginNext();
    void rememberMappings(std::size_t frames);
    void tell(TraceDocument *document, const TraceDevices &devices) const;
    bool advanceNext(std::size_t most);

    std::size_t m_most;
    std::shared_ptr<TraceDocument> m_document;
    std::shared_ptr<TraceDocument> m_next; // null: there is room
    std::size_t m_nextBegin = 0;           // where it begins in m_document
    Values m_mappings;                     // that frames which have left told: objects 1400h to 1BFFh
};
